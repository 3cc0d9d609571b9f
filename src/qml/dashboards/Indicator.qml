import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: root

    required property IndicatorView indicator
    property real u: 1

    x: Math.round(indicator.frame.x * u)
    y: Math.round(indicator.frame.y * u)
    width: Math.round(indicator.frame.width * u)
    height: Math.round(indicator.frame.height * u)
    opacity: indicator.alpha
    clip: true
    Accessible.role: Accessible.ListItem
    Accessible.name: indicator.name + (indicator.inWarning ? ", warning" : "")
    Accessible.description: "hold and drag it onto a place"

    Picture {
        u: root.u
        frame: root.indicator.iconFrame
        name: root.indicator.icon
    }

    ReadOut {
        u: root.u
        view: root.indicator.digitalDisplayView
        opacity: root.indicator.old ? 0.35 : 1
    }

    // Fills its frame and keeps its shape, so that a long one runs over the sides.
    Picture {
        readonly property rect room: root.indicator.unitFrame
        readonly property size natural: root.indicator.unitSize
        readonly property real factor: natural.width > 0 && room.width > 0
                                       ? Math.max(room.width / natural.width, room.height / natural.height) : 0

        u: root.u
        frame: Qt.rect(room.x, room.y + (room.height - natural.height * factor) / 2, natural.width * factor,
                       natural.height * factor)
        name: factor > 0 ? root.indicator.unit : ""
        opacity: root.indicator.old ? 0.35 : 1
    }

    // The name as text, because many icons look alike.
    Text {
        x: 2 * root.u
        y: 32 * root.u
        width: root.width - 4 * root.u
        elide: Text.ElideRight
        textFormat: Text.PlainText
        text: root.indicator.name
        color: Theme.faint
        font.pixelSize: Math.max(Math.round(7.5 * root.u), 1)
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    // A warning shows by more than its colour.
    Picture {
        u: root.u
        frame: Qt.rect(22, 1, 12, 12)
        name: root.indicator.inWarning ? "picture/ICON_WARNING.png" : ""
    }
}
