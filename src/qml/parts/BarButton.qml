import QtQuick
import iTorv

Item {
    id: button

    property alias text: label.text

    signal touched

    implicitWidth: label.implicitWidth + 24
    width: implicitWidth

    Text {
        id: label

        anchors.centerIn: parent
        color: Theme.accent
        opacity: !button.enabled ? 0.4 : area.pressed ? 0.6 : 1
        font.pixelSize: 13
    }

    TapHandler {
        id: area

        onTapped: button.touched()
    }
}
