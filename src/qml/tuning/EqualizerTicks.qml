pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Tuning

// A scale of an equalizer, with or without numbers.
Item {
    id: scale

    property real u: 1
    property real room: 0  // points to the left of it that numbers may take
    property list<equalizerTick> ticks

    Repeater {
        model: scale.ticks

        Rectangle {
            id: tick

            required property equalizerTick modelData

            x: Math.round(modelData.frame.x * scale.u)
            y: Math.round(modelData.frame.y * scale.u)
            width: Math.round(modelData.frame.width * scale.u)
            height: Math.max(Math.round(modelData.frame.height * scale.u), 1)
            color: modelData.highlighted ? "#00ff00" : "#ffffff"

            Text {
                x: Math.round((tick.modelData.labelFrame.x - tick.modelData.frame.x - scale.room) * scale.u)
                y: Math.round((tick.modelData.labelFrame.y - tick.modelData.frame.y) * scale.u)
                width: Math.round((tick.modelData.labelFrame.width + scale.room) * scale.u)
                height: Math.round(tick.modelData.labelFrame.height * scale.u)
                visible: text !== ""
                horizontalAlignment: Text.AlignRight
                verticalAlignment: Text.AlignVCenter
                textFormat: Text.PlainText
                text: tick.modelData.label
                color: Theme.text
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: 1
                font.family: Theme.digits
                font.pixelSize: Math.max(Math.round(12 * Theme.digitSize * scale.u), 1)
            }
        }
    }
}
