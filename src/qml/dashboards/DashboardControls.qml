pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards

// What of a page is touched: made after the gauges, as values come first.
Item {
    id: root

    required property DashboardViewController screen
    property real u: 1

    Repeater {
        model: root.screen.places

        Picture {
            required property DroppableView modelData

            u: root.u
            frame: Qt.rect(modelData.frame.x + modelData.clearButtonFrame.x,
                           modelData.frame.y + modelData.clearButtonFrame.y,
                           modelData.clearButtonFrame.width, modelData.clearButtonFrame.height)
            name: modelData.clearButtonShown ? "picture/CLOSE.png" : ""
        }
    }

    OnDemand {
        shown: root.screen.controls
        look: "../dashboards/Strip.qml"
        parameters: strip => ({ "strip": strip, "u": Qt.binding(() => root.u) })
    }

    Repeater {
        model: root.screen.buttons

        Picture {
            required property var modelData

            u: root.u
            frame: modelData.frame
            name: modelData.image
            opacity: root.screen.pressedButton === modelData.name ? 0.6 : 1
        }
    }

    Picker {
        u: root.u
        picker: root.screen.pageView
        pressed: root.screen.pressedButton
    }
}
