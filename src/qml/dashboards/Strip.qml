pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: root

    required property ControlStrip strip
    property real u: 1

    x: Math.round(strip.frame.x * u)
    y: Math.round(strip.frame.y * u)

    PowerLevel {
        u: root.u
        power: root.strip.powerLevelView
    }

    Picture {
        u: root.u
        frame: root.strip.turboFrame
        name: root.strip.turbo
    }

    WarningLamp {
        u: root.u
        alert: root.strip.warningView
    }

    Repeater {
        model: [root.strip.torqueLockView, root.strip.sootView, root.strip.soxView]

        Lamp {
            required property LampView modelData

            u: root.u
            lamp: modelData
        }
    }

    Gear {
        u: root.u
        gear: root.strip.gearView
    }
}
