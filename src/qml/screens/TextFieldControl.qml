import QtQuick
import QtQuick.Templates as T
import iTorv
import iTorv.Screens

Item {
    id: control

    required property TextValueGetterTableViewCell cell
    property real u: 1
    property real room: 0  // pixels that it may take

    implicitWidth: Math.max(room - 14 * u, 1)
    implicitHeight: Math.round(Theme.touch * u)

    T.TextField {
        id: field

        anchors.fill: parent
        verticalAlignment: TextInput.AlignVCenter
        text: control.cell.value
        color: Theme.text
        selectionColor: "#60feae16"
        selectedTextColor: Theme.text
        selectByMouse: true
        echoMode: control.cell.secure ? TextInput.Password : TextInput.Normal
        inputMethodHints: control.cell.digitsOnly ? Qt.ImhFormattedNumbersOnly : Qt.ImhNoPredictiveText
        font.pixelSize: Math.max(Math.round(17 * control.u), 1)
        Accessible.name: control.cell.text !== "" ? control.cell.text : control.cell.placeholder

        // Typing takes the place of the old text.
        onActiveFocusChanged: {
            if (activeFocus) {
                selectAll();
            } else {
                control.cell.editingEnded(text);
            }
        }
        onTextEdited: control.cell.textEdited(text)
        onAccepted: control.cell.returnPressed(text)

        Text {
            anchors.fill: parent
            visible: field.text === "" && field.preeditText === ""
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            textFormat: Text.PlainText
            text: control.cell.placeholder
            color: Theme.faint
            font: field.font
        }

        Connections {
            target: control.cell
            function onFocusWanted(wanted) {
                if (wanted) {
                    field.forceActiveFocus();
                } else {
                    field.focus = false;
                }
            }
            function onFieldChanged() { field.text = control.cell.value; }
        }
    }
}
