pragma Singleton
import QtQuick

QtObject {
    readonly property color accent: Qt.rgba(0.996, 0.682, 0.086, 1)
    readonly property color alarm: "#ff4b3e"
    readonly property color calm: "#53c26b"
    readonly property color ground: "#101214"
    readonly property color bar: "#191c1f"
    readonly property color row: "#1e2226"
    readonly property color pressed: "#2c3238"
    readonly property color selected: "#3a3122"
    readonly property color line: "#2f353b"
    readonly property color text: "#f3f4f5"
    readonly property color faint: "#98a1a9"

    // Told apart also by who sees no red or no green: they differ in brightness too.
    readonly property list<color> curves: ["#feae16", "#4fc3f7", "#f3f4f5", "#e57fb8", "#53c26b", "#9d8cff"]

    readonly property string digits: segments.name
    // Digits of segments fill the size of their font; so much of it makes them as high as capitals of that size.
    readonly property real digitSize: 0.8
    readonly property FontLoader segments: FontLoader { source: "qrc:/fonts/DSEG7Classic-Bold.ttf" }

    readonly property int touch: 44  // points that a finger can hit
}
