pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: display

    required property DigitalDisplayView view
    property real u: 1

    x: view ? Math.round(view.frame.x * u) : 0
    y: view ? Math.round(view.frame.y * u) : 0

    Repeater {
        model: display.view ? 5 : 0  // none once the page has gone

        Picture {
            required property int index

            readonly property DigitalDisplayView view: display.view
            readonly property string glyph: view ? view.glyphs[index] : ""

            u: display.u
            asynchronous: false
            name: glyph === "" ? "" : "glyph/" + glyph
            frame: view ? Qt.rect(view.offsets[index] + (view.cellSize.width - view.glyphSize.width) / 2, 2,
                                  view.glyphSize.width, view.glyphSize.height) : Qt.rect(0, 0, 0, 0)
        }
    }
}
