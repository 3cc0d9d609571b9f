import QtQuick
import iTorv
import iTorv.Screens

Rectangle {
    id: root

    required property LinkStatus status
    property real u: 1
    property real room: 150  // points up to the power button
    property bool flat: false  // in one line

    width: words.width + 12 * u
    height: words.height + 5 * u
    radius: 6 * u
    color: "#e0101214"

    Row {
        id: words

        readonly property real most: (root.room - 26) * root.u

        anchors.centerIn: parent
        spacing: 4 * root.u

        Picture {
            anchors.verticalCenter: parent.verticalCenter
            u: root.u
            frame: Qt.rect(0, 0, 6, 6)
            name: "picture/SELECTED_DOT.png"
        }
        Grid {
            columns: root.flat ? 2 : 1
            columnSpacing: 6 * root.u

            Text {
                width: Math.min(implicitWidth, words.most)
                wrapMode: Text.Wrap
                text: root.status.text
                Accessible.role: Accessible.StaticText
                Accessible.name: text + " " + root.status.hint
                color: Theme.text
                font.pixelSize: Math.max(Math.round(9 * root.u), 1)
            }
            Text {
                width: Math.min(implicitWidth, words.most)
                visible: text !== ""
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                text: root.status.hint
                color: Theme.faint
                font.pixelSize: Math.max(Math.round(8 * root.u), 1)
            }
        }
    }
}
