pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

Window {
    id: window

    // None at first: the first frame is the bare ground, which is there long before a page.
    property Stage stage: null

    width: 1136
    height: 640
    minimumWidth: 320
    minimumHeight: 200
    visible: true
    color: Theme.ground
    title: "iTorv"

    onStageChanged: content.show()

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

    // Lengths of what is no dashboard are points on a stage 320 high, scaled to the window's own height; one held
    // upright is 320 wide.
    Item {
        readonly property real points: Math.max(Math.min(window.width, window.height), 1) / 320

        width: window.width / points
        height: window.height / points
        scale: points
        transformOrigin: Item.TopLeft

        OnDemand {
            anchors.fill: parent
            shown: window.stage ? window.stage.progress : null
            look: "../screens/ProgressOverlay.qml"
            parameters: progress => ({ "progress": progress })
        }

        OnDemand {
            anchors.fill: parent
            shown: window.stage ? window.stage.alert : null
            look: "../screens/AlertOverlay.qml"
            parameters: alert => ({ "alert": alert })
        }
    }
}
