import QtQuick
import iTorv
import iTorv.Screens

Row {
    id: indicator

    required property LinkStatus status
    property real u: 1

    spacing: 6 * u

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 8 * indicator.u
        height: width
        radius: width / 2
        color: indicator.status.connected ? Theme.calm : "transparent"
        border.width: 1.5 * indicator.u
        border.color: indicator.status.connected ? Theme.calm : Theme.accent
    }

    Text {
        anchors.verticalCenter: parent.verticalCenter
        textFormat: Text.PlainText
        text: indicator.status.text
        color: Theme.faint
        font.pixelSize: Math.max(Math.round(11 * indicator.u), 1)
    }
}
