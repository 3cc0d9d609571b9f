pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: display

    required property DigitalDisplayView view
    property real u: 1

    x: Math.round(view.frame.x * u)
    y: Math.round(view.frame.y * u)

    Repeater {
        model: 5

        Picture {
            required property int index

            readonly property string glyph: display.view.glyphs[index]

            u: display.u
            asynchronous: false
            name: glyph === "" ? "" : "glyph/" + glyph
            frame: Qt.rect(display.view.offsets[index] + (display.view.cellSize.width - display.view.glyphSize.width) / 2,
                           2, display.view.glyphSize.width, display.view.glyphSize.height)
        }
    }
}
