pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Tuning

// Bands side by side, and the scale that they share.
FocusScope {
    id: equalizer

    required property EqualizerViewController screen
    property real u: 1

    focus: true
    function layOut() {
        if (screen) screen.setHeight(height / u);  // null while this is being destroyed
    }

    onHeightChanged: layOut()
    onUChanged: layOut()
    Component.onCompleted: layOut()

    Picture {
        frame: Qt.rect(0, 0, equalizer.width, equalizer.height)
        name: "picture/BG_BASE.png"
    }
    // Words keep the plain face: the digits' font has no letters that could be read.
    Text {
        y: Math.round(32 * equalizer.u)
        width: Math.round(30 * equalizer.u)
        horizontalAlignment: Text.AlignHCenter
        textFormat: Text.PlainText
        text: equalizer.screen.unit
        color: Theme.text
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 1
        font.pixelSize: Math.max(Math.round(18 * equalizer.u), 1)
    }
    // From 10 and 18 wide; the digits may take what is free to the left, so that all numbers are of one size.
    Text {
        y: Math.round(58 * equalizer.u)
        width: Math.round(28 * equalizer.u)
        horizontalAlignment: Text.AlignRight
        textFormat: Text.PlainText
        text: equalizer.screen.maximum
        color: Theme.text
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 1
        font.family: Theme.digits
        font.pixelSize: Math.max(Math.round(12 * Theme.digitSize * equalizer.u), 1)
    }
    EqualizerTicks {
        x: Math.round(equalizer.screen.scaleFrame.x * equalizer.u)
        y: Math.round(equalizer.screen.scaleFrame.y * equalizer.u)
        u: equalizer.u
        room: equalizer.screen.scaleFrame.x
        ticks: equalizer.screen.ticks
    }
    ListView {
        id: strip

        property bool keysUsed: false

        anchors.fill: parent
        anchors.leftMargin: Math.round(30 * equalizer.u)
        anchors.topMargin: Math.round(32 * equalizer.u)
        orientation: ListView.Horizontal
        rightMargin: Math.round(16 * equalizer.u)
        boundsBehavior: Flickable.DragAndOvershootBounds
        cacheBuffer: 0
        clip: true
        focus: true
        highlightMoveDuration: 100
        model: equalizer.screen.knobs
        delegate: EqualizerBand {
            required property int index
            required property EqualizerKnobView modelData

            knob: modelData
            u: equalizer.u
            height: strip.height
            focused: ListView.isCurrentItem && strip.keysUsed && strip.activeFocus
            onTouched: {
                strip.keysUsed = false;
                strip.currentIndex = index;
            }
        }
        Keys.onPressed: event => {
            const knob = currentItem as EqualizerBand;
            keysUsed = true;
            event.accepted = knob !== null;
            if (!knob) return;
            if (event.key === Qt.Key_Left) decrementCurrentIndex();
            else if (event.key === Qt.Key_Right) incrementCurrentIndex();
            else if (event.key === Qt.Key_Up) knob.knob.step(1);
            else if (event.key === Qt.Key_Down) knob.knob.step(-1);
            else if (event.key === Qt.Key_PageUp) knob.knob.step(10);
            else if (event.key === Qt.Key_PageDown) knob.knob.step(-10);
            else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) knob.knob.touchValue();
            else event.accepted = false;
        }
    }
    Rectangle {
        // Over the first two points of the strip.
        x: Math.round(30 * equalizer.u)
        width: Math.max(Math.round(2 * equalizer.u), 1)
        height: parent.height
        color: "#ffffff"
    }
}
