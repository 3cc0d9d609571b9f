import QtQuick

Item {
    id: root

    required property var strip
    property real u: 1

    readonly property var power: strip.powerLevelView

    x: Math.round(strip.frame.x * u)
    y: Math.round(strip.frame.y * u)

    Item {
        x: Math.round(root.power.frame.x * root.u)
        opacity: root.power.old ? 0.35 : 1

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
        DigitalDisplayView {
            u: root.u
            view: root.power.powerLevelNumber
        }
    }

    Picture {
        u: root.u
        frame: root.strip.turboFrame
        name: root.strip.turbo
    }

    Picture {
        u: root.u
        frame: root.strip.warningView.frame
        name: root.strip.warningView.warning ? root.strip.warningView.image : ""
    }

    Repeater {
        model: [root.strip.torqueLockView, root.strip.sootView, root.strip.soxView]

        Picture {
            required property var modelData

            u: root.u
            frame: modelData.frame
            name: modelData.image
            opacity: modelData.old ? 0.35 : 1
        }
    }

    Item {
        x: Math.round(root.strip.gearView.frame.x * root.u)
        opacity: root.strip.gearView.old ? 0.35 : 1

        DigitalDisplayView {
            u: root.u
            view: root.strip.gearView.currentGear
        }
    }
}
