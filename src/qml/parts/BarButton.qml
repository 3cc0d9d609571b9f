import QtQuick
import iTorv

// A word or a sign that is touched; never smaller than a finger.
Item {
    id: button

    property real u: 1
    property string text
    property string icon
    property color color: Theme.accent

    signal touched

    implicitWidth: Math.max((icon !== "" ? 22 * u : label.implicitWidth) + 24 * u, Theme.touch * u)
    implicitHeight: Theme.touch * u
    activeFocusOnTab: visible && enabled

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: if (enabled) touched()
    Keys.onSpacePressed: touched()
    Keys.onReturnPressed: touched()
    Keys.onEnterPressed: touched()

    Text {
        id: label

        anchors.centerIn: parent
        visible: button.icon === ""
        width: Math.min(implicitWidth, parent.width)
        elide: Text.ElideRight
        textFormat: Text.PlainText
        text: button.text
        color: button.color
        opacity: !button.enabled ? 0.4 : area.pressed ? 0.6 : 1
        font.pixelSize: Math.max(Math.round(14 * button.u), 1)
    }

    Picture {
        x: Math.round((button.width - width) / 2)
        y: Math.round((button.height - height) / 2)
        u: button.u
        frame: Qt.rect(0, 0, 22, 22)
        name: button.icon
        opacity: label.opacity
    }

    FocusRing {
        anchors.margins: 3 * button.u
        u: button.u
        shown: button.activeFocus
    }

    TapHandler {
        id: area

        gesturePolicy: TapHandler.ReleaseWithinBounds  // no row or other button below hears of it
        onTapped: button.touched()
    }
}
