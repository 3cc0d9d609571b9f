pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: root

    required property GaugeView gauge
    property real u: 1

    readonly property real dim: gauge.old ? 0.35 : 1

    clip: true

    Accessible.role: Accessible.StaticText
    Accessible.name: gauge.sensorName + (gauge.inWarning ? ", warning" : "")
    Accessible.description: gauge.old ? "no live value" : String(gauge.valueView.value)

    GaugeScaleItem {
        anchors.fill: parent
        visible: !root.gauge.tile
        gauge: root.gauge
    }

    Picture {
        readonly property rect room: root.gauge.nameFrame

        u: root.u
        frame: Qt.rect(room.x, room.y, Math.min(room.width, root.width / root.u - 2 * room.x), room.height)
        name: root.gauge.name === "" ? ""
              : "label/" + (root.gauge.inWarning && !root.gauge.old ? "yellow/" : "grey/") + encodeURIComponent(root.gauge.name)
    }

    ReadOut {
        u: root.u
        view: root.gauge.valueView
        opacity: root.dim
    }

    Picture {
        u: root.u
        frame: root.gauge.unitFrame
        name: root.gauge.unit
        opacity: root.dim
    }

    Picture {
        u: root.u
        frame: root.gauge.iconFrame
        name: root.gauge.icon
        opacity: root.dim
    }

    // A warning shows by more than its colour: beside the unit, or in a tile's corner.
    Picture {
        u: root.u
        frame: root.gauge.tile ? Qt.rect(root.width / root.u - 19, root.height / root.u - 19, 14, 14)
                               : Qt.rect(root.gauge.unitFrame.x - 16, root.gauge.unitFrame.y, 14, 14)
        name: root.gauge.inWarning ? "picture/ICON_WARNING.png" : ""
        opacity: root.dim
    }

    Picture {
        id: needle

        u: root.u
        frame: root.gauge.needleFrame
        name: root.gauge.needle
        opacity: root.gauge.old ? 0.5 : 1
        smooth: true
        antialiasing: true
        Component.onCompleted: frames.follow()
    }

    FrameAnimation {
        id: frames

        function follow() {
            needle.rotation = root.gauge.needleAngle();
            running = !root.gauge.needleAtRest();
        }

        onTriggered: follow()
    }

    Connections {
        target: root.gauge.tile ? null : root.gauge
        function onNeedleAimed() { frames.follow(); }
    }
}
