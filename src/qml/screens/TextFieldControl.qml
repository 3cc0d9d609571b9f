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

        property bool typed: false  // since it got the focus

        anchors.fill: parent
        anchors.rightMargin: clear.visible ? clear.width : 0
        verticalAlignment: TextInput.AlignVCenter
        text: control.cell.value
        color: Theme.text
        selectionColor: "#60feae16"
        selectedTextColor: Theme.text
        selectByMouse: true
        echoMode: control.cell.secure ? TextInput.Password : TextInput.Normal
        inputMethodHints: control.cell.inputHints
        font.pixelSize: Math.max(Math.round(17 * control.u), 1)
        Accessible.name: control.cell.text !== "" ? control.cell.text : control.cell.placeholder

        // Typing takes the place of the old text, also after a touch into it.
        onActiveFocusChanged: {
            if (activeFocus) {
                typed = false;
                if (control.cell.clearsOnBeginEditing) selectAll();
                control.cell.editingBegun();
            } else {
                control.cell.editingEnded(text);
            }
        }
        onReleased: if (!typed && control.cell.clearsOnBeginEditing) selectAll()
        onTextEdited: {
            typed = true;
            control.cell.textEdited(text);
        }
        onAccepted: control.cell.returnPressed(text)
        Component.onCompleted: if (control.cell.firstResponder) forceActiveFocus()

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
            function onFirstResponderChanged() {
                if (control.cell.firstResponder) {
                    field.forceActiveFocus();
                } else {
                    Qt.inputMethod.commit();  // qmllint disable type
                    field.focus = false;
                }
            }
            function onFieldChanged() { field.text = control.cell.value; }
        }
    }

    BarButton {
        id: clear

        visible: field.activeFocus && field.text !== ""
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        activeFocusOnTab: false
        u: control.u
        icon: "picture/CLOSE.png"
        text: "Clear"
        onTouched: control.cell.clearTouched()
    }
}
