import QtQuick
import iTorv

// A number in the digits of the dials, its unit in plain letters, and a word of warning behind them: all on one line,
// as high as the digits.
Item {
    id: value

    property real u: 1
    property string number
    property string unit
    property string note
    property color color: Theme.accent
    property real size: 15  // of the digits, in points
    property real room: 0  // pixels that it may take

    implicitWidth: warning.x + warning.width
    implicitHeight: Math.round(size * u)

    Text {
        id: digits

        anchors.baseline: parent.bottom
        visible: text !== ""
        width: visible ? implicitWidth + 6 * value.u : 0
        textFormat: Text.PlainText
        text: value.number
        color: value.color
        font.family: Theme.digits
        font.bold: true
        font.pixelSize: Math.max(Math.round(value.size * value.u), 1)
    }
    Text {
        id: words

        anchors.baseline: parent.bottom
        x: digits.width
        width: Math.min(implicitWidth, Math.max(value.room - x, 0))
        elide: Text.ElideRight
        maximumLineCount: 1
        textFormat: Text.PlainText
        text: value.unit
        color: value.color
        font.pixelSize: Math.max(Math.round(13 * value.u), 1)
    }
    Text {
        id: warning

        anchors.baseline: parent.bottom
        x: words.x + words.width + (visible ? 12 * value.u : 0)
        visible: text !== ""
        width: visible ? Math.min(implicitWidth, Math.max(value.room - x, 0)) : 0
        elide: Text.ElideRight
        maximumLineCount: 1
        textFormat: Text.PlainText
        text: value.note === "" ? "" : "⚠ " + value.note
        color: Theme.alarm
        font.pixelSize: Math.max(Math.round(12 * value.u), 1)
    }
}
