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

    // Lengths are points on a stage 320 high, scaled to the window's own height; one held upright is 320 wide.
    Item {
        readonly property real points: Math.max(Math.min(window.width, window.height), 1) / 320

        width: window.width / points
        height: window.height / points
        scale: points
        transformOrigin: Item.TopLeft

        NavigationScreen {
            anchors.fill: parent
            navigation: window.stage.navigation
            status: window.stage.status
        }

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
