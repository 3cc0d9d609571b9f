import QtQuick

Item {
    id: root

    required property var strip
    property real u: 1

    x: Math.round(strip.frame.x * u)
    y: Math.round(strip.frame.y * u)

    PowerLevelView {
        u: root.u
        power: root.strip.powerLevelView
    }

    Picture {
        u: root.u
        frame: root.strip.turboFrame
        name: root.strip.turbo
    }

    WarningView {
        u: root.u
        alert: root.strip.warningView
    }

    Repeater {
        model: [root.strip.torqueLockView, root.strip.sootView, root.strip.soxView]

        LampView {
            required property var modelData

            u: root.u
            lamp: modelData
        }
    }

    GearView {
        u: root.u
        gear: root.strip.gearView
    }
}
