import QtQuick
import iTorv
import iTorv.Tuning

// One band: its name, a rail with a handle, and its number, which is also the way to an exact one.
Item {
    id: band

    required property EqualizerKnobView knob
    property real u: 1
    property bool focused: false
    readonly property int handleWidth: Math.round(20 * u)
    readonly property int handleHeight: Math.round(22 * u)

    signal touched

    width: Math.round(40 * u)

    component Rail: Rectangle {
        required property rect frame
        required property real u

        x: Math.round(frame.x * u)
        y: Math.round(frame.y * u)
        width: Math.max(Math.round(frame.width * u), 1)
        height: Math.round(frame.height * u)
    }

    Text {
        x: Math.round(12 * band.u)
        y: Math.round(8 * band.u)
        width: Math.round(36 * band.u)
        horizontalAlignment: Text.AlignHCenter
        textFormat: Text.PlainText
        elide: Text.ElideRight
        maximumLineCount: 1
        text: band.knob.name
        color: band.focused ? Theme.accent : Theme.text
        font.pixelSize: Math.max(Math.round(12 * band.u), 1)
    }
    EqualizerTicks {
        x: Math.round(band.knob.scaleFrame.x * band.u)
        y: Math.round(band.knob.scaleFrame.y * band.u)
        u: band.u
        ticks: band.knob.ticks
    }
    Item {
        id: slider

        x: Math.round(band.knob.sliderFrame.x * band.u)
        y: Math.round(band.knob.sliderFrame.y * band.u)
        width: Math.round(band.knob.sliderFrame.width * band.u)
        height: Math.round(band.knob.sliderFrame.height * band.u)

        Picture {
            // As wide as the handle is high.
            frame: Qt.rect((band.knob.sliderFrame.width - 22) / 2, 0, 22, band.knob.sliderFrame.height)
            u: band.u
            name: "picture/bar.png"
        }
        Rail {
            frame: band.knob.upperRed
            u: band.u
            color: Theme.alarm
        }
        Rail {
            frame: band.knob.lowerRed
            u: band.u
            color: Theme.alarm
        }
        Rail {
            frame: band.knob.green
            u: band.u
            color: Theme.calm
        }
        Picture {
            frame: Qt.rect(0, band.knob.handleCenter - 11, 20, 22)
            u: band.u
            name: "picture/slider.png"
        }
        FocusRing {
            u: band.u
            shown: band.focused || band.knob.sliderHandleSelected
            anchors.fill: undefined
            x: 0
            y: Math.round((band.knob.handleCenter - 11) * band.u)
            width: band.handleWidth
            height: band.handleHeight
        }
    }
    MouseArea {
        // A finger that has taken the handle keeps it; any other may scroll the bands.
        x: 0
        width: Math.round(40 * band.u)
        y: slider.y
        height: slider.height
        onPressed: mouse => {
            band.touched();
            preventStealing = band.knob.beginTracking(mouse.x / band.u - 20, mouse.y / band.u);
            mouse.accepted = preventStealing;
        }
        onPositionChanged: mouse => band.knob.continueTracking(mouse.y / band.u)
        onReleased: band.knob.endTracking()
        onCanceled: band.knob.endTracking()
        Accessible.role: Accessible.Slider
        Accessible.name: band.knob.name + " " + band.knob.value
        Accessible.onIncreaseAction: band.knob.step(1)
        Accessible.onDecreaseAction: band.knob.step(-1)
    }
    Rectangle {
        // It stands out beyond the band by eight points; kept as it is.
        x: Math.round(12 * band.u)
        y: band.height - Math.round(27 * band.u)
        width: Math.round(36 * band.u)
        height: Math.round(19 * band.u)
        radius: 3 * band.u
        color: "#0b0c0d"
        border.width: Math.max(Math.round(band.u), 1)
        border.color: valueTouch.pressed ? Theme.accent : Theme.line

        Picture {
            // A value out of range shows by more than its colour.
            u: band.u
            frame: Qt.rect(-7, -7, 12, 12)
            name: band.knob.outOfRange ? "picture/ICON_WARNING.png" : ""
        }
        Text {
            anchors.fill: parent
            anchors.margins: 3 * band.u
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            textFormat: Text.PlainText
            text: band.knob.value
            color: band.knob.outOfRange ? Theme.alarm : Theme.accent
            font.family: Theme.digits
            font.bold: true
            font.pixelSize: Math.max(Math.round(18 * Theme.digitSize * band.u), 1)
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 1
        }
        MouseArea {
            id: valueTouch

            anchors.fill: parent
            anchors.margins: -8 * band.u
            anchors.leftMargin: 0
            anchors.rightMargin: 0
            onClicked: {
                band.touched();
                band.knob.touchValue();
            }
            Accessible.role: Accessible.Button
            Accessible.name: "Type " + band.knob.name
            Accessible.onPressAction: band.knob.touchValue()
        }
    }
}
