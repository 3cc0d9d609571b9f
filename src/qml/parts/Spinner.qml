pragma ComponentBehavior: Bound
import QtQuick
import iTorv

// Something is under way.
Item {
    id: spinner

    property real u: 1

    implicitWidth: Math.round(24 * u)
    implicitHeight: implicitWidth

    Repeater {
        model: 8

        Rectangle {
            id: ray

            required property int index

            x: spinner.width / 2 - width / 2
            width: Math.max(Math.round(2.6 * spinner.u), 1)
            height: 7 * spinner.u
            radius: width / 2
            antialiasing: true
            color: Theme.accent
            opacity: 0.2 + index / 10
            transform: Rotation { origin.x: ray.width / 2; origin.y: spinner.height / 2; angle: ray.index * 45 }
        }
    }

    RotationAnimation on rotation {
        running: spinner.visible
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
    }
}
