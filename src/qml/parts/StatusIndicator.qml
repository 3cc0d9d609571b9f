import QtQuick
import iTorv
import iTorv.Screens

Row {
    id: indicator

    required property LinkStatus status
    property real u: 1

    signal touched

    spacing: 6 * u
    Accessible.role: Accessible.Button
    Accessible.name: status.text
    Accessible.description: "Opens the page about the connection"
    Accessible.onPressAction: touched()

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

    TapHandler {
        margin: 16 * indicator.u  // as high as a finger needs
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: indicator.touched()
    }
}
