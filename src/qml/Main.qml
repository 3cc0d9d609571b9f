pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

Window {
    id: window

    // None at first: the first frame is the bare ground, which is there long before a page.
    property Stage stage: null
    property int turn: 0  // degrees
    property real shift: 0  // pixels up, out of the way of a keyboard on the screen
    // Pixels for each point of what is no dashboard: a stage 320 high, or 320 wide where it stands upright.
    readonly property real u: Math.max(Math.min(width, height), 1) / 320

    width: 1136
    height: 640
    minimumWidth: 320
    minimumHeight: 200
    visible: true
    color: Theme.ground
    title: "iTorv"

    onStageChanged: content.show()

    Binding {
        target: Theme
        property: "contrast"
        value: window.stage ? window.stage.display.contrast : false
    }

    // Turned by a quarter where an upright window shows a landscape screen; touches turn with it.
    Item {
        id: room

        anchors.centerIn: parent
        anchors.verticalCenterOffset: -window.shift
        width: window.turn === 0 ? window.width : window.height
        height: window.turn === 0 ? window.height : window.width
        rotation: window.turn

        // What no screen, field or list has use for.
        Keys.onPressed: event => {
            event.accepted = event.key === Qt.Key_N && event.modifiers === Qt.NoModifier && window.stage !== null;
            if (event.accepted && !event.isAutoRepeat) window.stage.touchBrightness();
        }

        Loader {
            id: content

            anchors.fill: parent
            focus: true

            function show() {
                const top = window.stage.top;
                setSource(top.look, { "screen": top, "stage": window.stage });
            }
            function dissolve() {
                show();
                appearing.restart();
            }

            NumberAnimation {
                id: appearing

                target: content
                property: "opacity"
                from: 0
                to: 1
                duration: 200
            }
            Connections {
                target: window.stage
                function onTopChanged() { content.dissolve(); }
            }
        }

        Row {
            // Above the buttons in the corner.
            x: Math.round(6 * window.u)
            y: Math.round(window.u)
            spacing: Math.round(4 * window.u)

            Repeater {
                model: window.stage ? window.stage.marks : []

                Rectangle {
                    id: mark

                    required property string modelData

                    width: word.width + Math.round(8 * window.u)
                    height: word.height + Math.round(2 * window.u)
                    radius: Math.round(2 * window.u)
                    color: Theme.alarm

                    Text {
                        id: word

                        anchors.centerIn: parent
                        textFormat: Text.PlainText
                        text: mark.modelData
                        color: Theme.text
                        font.bold: true
                        font.pixelSize: Math.max(Math.round(8 * window.u), 1)
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                    }
                }
            }
        }

        OnDemand {
            anchors.fill: parent
            shown: window.stage ? window.stage.progress : null
            look: "../screens/ProgressOverlay.qml"
            parameters: progress => ({ "progress": progress, "u": Qt.binding(() => window.u) })
            onGone: content.forceActiveFocus()

            Connections {
                target: window.stage ? window.stage.progress : null
                function onBackgroundChanged() {
                    if (window.stage.progress.inBackground) content.forceActiveFocus();
                }
            }
        }

        OnDemand {
            anchors.fill: parent
            shown: window.stage ? window.stage.alert : null
            look: "../screens/AlertOverlay.qml"
            parameters: alert => ({ "alert": alert, "u": Qt.binding(() => window.u) })
            onGone: content.forceActiveFocus()
        }
    }

    // Takes light away from all of it, so that the instrument does not blind at night.
    Rectangle {
        anchors.fill: parent
        visible: opacity > 0
        color: "black"
        opacity: window.stage ? window.stage.display.shade : 0
    }
}
