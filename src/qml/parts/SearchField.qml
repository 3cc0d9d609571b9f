import QtQuick
import QtQuick.Templates as T
import iTorv

// Finds rows by what is typed into it.
Item {
    id: search

    property real u: 1
    property alias text: field.text

    signal edited(string text)
    signal finished

    height: Math.round((Theme.touch + 6) * u)

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: Math.round(6 * search.u)
        radius: 8 * search.u
        color: Theme.ground
        border.width: Math.max(Math.round(search.u), 1)
        border.color: field.activeFocus ? Theme.accent : Theme.line

        T.TextField {
            id: field

            anchors.fill: parent
            anchors.leftMargin: 14 * search.u
            anchors.rightMargin: clear.visible ? clear.width : 14 * search.u
            verticalAlignment: TextInput.AlignVCenter
            color: Theme.text
            selectionColor: "#60feae16"
            selectedTextColor: Theme.text
            selectByMouse: true
            inputMethodHints: Qt.ImhNoPredictiveText
            font.pixelSize: Math.max(Math.round(15 * search.u), 1)
            Accessible.name: "Search"
            onTextChanged: search.edited(text)
            onAccepted: search.finished()
            Keys.onDownPressed: search.finished()

            Text {
                anchors.fill: parent
                visible: field.text === "" && field.preeditText === ""
                verticalAlignment: Text.AlignVCenter
                textFormat: Text.PlainText
                text: "Search"
                color: Theme.faint
                font: field.font
            }
        }

        BarButton {
            id: clear

            visible: field.text !== ""
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            activeFocusOnTab: false
            u: search.u
            icon: "picture/CLOSE.png"
            text: "Clear"
            onTouched: field.clear()
        }
    }
}
