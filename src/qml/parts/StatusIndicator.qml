import QtQuick
import iTorv
import iTorv.Screens

Row {
    id: indicator

    required property LinkStatus status

    spacing: 6

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 8
        height: 8
        radius: 4
        color: indicator.status.connected ? Theme.calm : "transparent"
        border.width: 1.5
        border.color: indicator.status.connected ? Theme.calm : Theme.accent
    }

    Text {
        anchors.verticalCenter: parent.verticalCenter
        text: indicator.status.text
        color: Theme.faint
        font.pixelSize: 11
    }
}
