import QtQuick

Item {
    id: root

    required property var gear
    property real u: 1

    x: Math.round(gear.frame.x * u)
    opacity: gear.old ? 0.35 : 1

    DigitalDisplayView {
        u: root.u
        view: root.gear.currentGear
    }
}
