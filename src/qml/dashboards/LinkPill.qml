import QtQuick
import iTorv
import iTorv.Screens

Rectangle {
    id: root

    required property LinkStatus status
    property real u: 1

    width: words.width + 10 * u
    height: 15 * u
    radius: height / 2
    color: "#e0101214"

    Row {
        id: words

        anchors.centerIn: parent
        spacing: 4 * root.u

        Picture {
            anchors.verticalCenter: parent.verticalCenter
            u: root.u
            frame: Qt.rect(0, 0, 6, 6)
            name: "picture/SELECTED_DOT.png"
        }
        Text {
            text: root.status.text
            color: Theme.text
            font.pixelSize: Math.max(Math.round(9 * root.u), 1)
        }
    }
}
