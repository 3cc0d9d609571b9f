import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: root

    required property GearView gear
    property real u: 1

    x: Math.round(gear.frame.x * u)
    opacity: gear.old ? 0.35 : 1

    ReadOut {
        u: root.u
        view: root.gear.currentGear
    }
}
