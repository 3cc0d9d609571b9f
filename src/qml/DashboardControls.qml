import QtQuick

// What of a page is touched: made after the gauges, as values come first.
Item {
    id: root

    required property var screen
    property real u: 1

    Repeater {
        model: root.screen.places

        Picture {
            required property var modelData

            u: root.u
            frame: Qt.rect(modelData.frame.x + modelData.clearButtonFrame.x,
                           modelData.frame.y + modelData.clearButtonFrame.y,
                           modelData.clearButtonFrame.width, modelData.clearButtonFrame.height)
            name: modelData.clearButtonShown ? "picture/CLOSE.png" : ""
        }
    }

    Loader {
        active: root.screen.controls !== null
        sourceComponent: ControlStrip {
            strip: root.screen.controls
            u: root.u
        }
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

    PageView {
        u: root.u
        picker: root.screen.pageView
        pressed: root.screen.pressedButton
    }
}
