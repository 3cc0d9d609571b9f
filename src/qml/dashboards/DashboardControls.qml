pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards

// The parts of a page that are touched. Made after the gauges, because values come first.
Item {
    id: root

    required property DashboardViewController screen
    property real u: 1

    Repeater {
        model: root.screen.places

        Picture {
            id: clear

            required property DroppableView modelData

            u: root.u
            frame: Qt.rect(modelData.frame.x + modelData.clearButtonFrame.x,
                           modelData.frame.y + modelData.clearButtonFrame.y,
                           modelData.clearButtonFrame.width, modelData.clearButtonFrame.height)
            name: modelData.clearButtonShown ? "picture/CLOSE.png" : ""
            Accessible.role: Accessible.Button
            Accessible.name: "Clear " + (modelData.gauge ? modelData.gauge.sensorName : "")
            Accessible.ignored: !modelData.clearButtonShown
            Accessible.onPressAction: root.screen.pressAt(clear.frame.x + 22, clear.frame.y + 22)
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
            id: button

            required property pagePicture modelData

            u: root.u
            frame: modelData.frame
            name: modelData.image
            opacity: root.screen.pressedButton === modelData.name ? 0.6 : 1
            Accessible.role: Accessible.Button
            Accessible.name: modelData.label
            Accessible.onPressAction: root.screen.pressAt(button.frame.x + button.frame.width / 2,
                                                          button.frame.y + button.frame.height / 2)
        }
    }

    Picker {
        u: root.u
        screen: root.screen
        picker: root.screen.pageView
        pressed: root.screen.pressedButton
    }
}
