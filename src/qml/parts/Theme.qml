pragma Singleton
import QtQuick

QtObject {
    readonly property color accent: Qt.rgba(0.996, 0.682, 0.086, 1)
    readonly property color alarm: "#ff4b3e"
    readonly property color calm: "#53c26b"
    property bool contrast: false  // for sunlight

    readonly property color ground: contrast ? "#000000" : "#101214"
    readonly property color bar: contrast ? "#000000" : "#191c1f"
    readonly property color row: contrast ? "#000000" : "#1e2226"
    readonly property color pressed: "#2c3238"
    readonly property color selected: "#3a3122"
    readonly property color line: contrast ? "#8a949c" : "#2f353b"
    readonly property color text: contrast ? "#ffffff" : "#f3f4f5"
    readonly property color faint: contrast ? "#d5dce1" : "#98a1a9"

    // The colours of curves differ in brightness too, for those who can't tell red from green.
    readonly property list<color> curves: ["#feae16", "#4fc3f7", "#f3f4f5", "#e57fb8", "#53c26b", "#9d8cff"]

    readonly property string digits: segments.name
    // Digits of segments fill the size of their font; so much of it makes them as high as capitals of that size.
    readonly property real digitSize: 0.8
    readonly property FontLoader segments: FontLoader { source: "qrc:/fonts/DSEG7Classic-Bold.ttf" }

    readonly property int touch: 44  // points that a finger can hit
}
