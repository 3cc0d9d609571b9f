import QtQuick
import iTorv

// Where the keyboard is.
Rectangle {
    property real u: 1
    property bool shown: false

    anchors.fill: parent
    visible: shown
    color: "transparent"
    radius: 6 * u
    border.width: Math.max(Math.round(2 * u), 1)
    border.color: Theme.accent
}
