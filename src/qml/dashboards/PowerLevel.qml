import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: root

    required property PowerLevelView power
    property real u: 1

    x: Math.round(power.frame.x * u)
    opacity: power.old ? 0.35 : 1

    Picture {
        u: root.u
        frame: Qt.rect(0, 0, root.power.shownBarWidth, root.power.barSize.height)
        name: root.power.bar
    }
    Picture {
        u: root.u
        frame: Qt.rect(0, 0, root.power.barSize.width, root.power.barSize.height)
        name: root.power.overlay
    }
    ReadOut {
        u: root.u
        view: root.power.powerLevelNumber
    }
    // Behind the number, whose room is wider than its digits.
    Picture {
        u: root.u
        frame: Qt.rect(root.power.powerLevelNumber.frame.x + root.power.powerLevelNumber.frame.width, 2, 13, 13)
        name: root.power.inWarning ? "picture/ICON_WARNING.png" : ""
    }
}
