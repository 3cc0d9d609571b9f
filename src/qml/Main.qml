import QtQuick

Window {
    id: window

    required property var stage

    width: 1136
    height: 640
    minimumWidth: 320
    minimumHeight: 200
    visible: true
    color: Theme.ground
    title: "iTorv"

    // The first frame is the bare ground, for it comes soonest; the screen follows at once.
    property bool painted: false
    onFrameSwapped: painted = true

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
            enabled: window.painted
            function onTopChanged() { content.dissolve(); }
        }
        Connections {
            target: window
            function onPaintedChanged() { content.show(); }
        }
    }

    // Lengths of what is no dashboard are points on a stage 320 high, scaled to the window's own height; one held
    // upright is 320 wide.
    Item {
        readonly property real points: Math.max(Math.min(window.width, window.height), 1) / 320

        width: window.width / points
        height: window.height / points
        scale: points
        transformOrigin: Item.TopLeft

        ProgressOverlay {
            anchors.fill: parent
            progress: window.stage.progress
        }

        AlertOverlay {
            anchors.fill: parent
            alert: window.stage.alert
        }
    }
}
