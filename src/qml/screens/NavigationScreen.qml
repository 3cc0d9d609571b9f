pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

Item {
    id: whole

    required property NavigationController screen
    required property Stage stage

    readonly property real points: Math.max(Math.min(width, height), 1) / 320

    Item {
        id: screen

        readonly property NavigationController navigation: whole.screen
        readonly property LinkStatus status: whole.stage.status

        width: whole.width / whole.points
        height: whole.height / whole.points
        scale: whole.points
        transformOrigin: Item.TopLeft

        Rectangle {
            id: bar

            width: parent.width
            height: 36
            color: Theme.bar

            BarButton {
                id: back

                visible: screen.navigation.depth > 1
                anchors.left: parent.left
                height: parent.height
                text: "‹ " + screen.navigation.backTitle
                onTouched: screen.navigation.touchBack()
            }

            BarButton {
                id: left

                readonly property BarButtonItem item: screen.navigation.topViewController.leftBarButton

                visible: item !== null && !back.visible
                anchors.left: parent.left
                height: parent.height
                text: item ? item.title : ""
                enabled: item ? item.enabled : false
                onTouched: item.touch()
            }

            Text {
                anchors.centerIn: parent
                width: Math.min(implicitWidth, parent.width - 2 * Math.max(indicator.width + 24, back.width + 8))
                elide: Text.ElideRight
                text: screen.navigation.topViewController.title
                color: Theme.text
                font.pixelSize: 15
                font.bold: true
            }

            StatusIndicator {
                id: indicator

                visible: !right.visible
                anchors.right: parent.right
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                status: screen.status
            }

            BarButton {
                id: right

                readonly property BarButtonItem item: screen.navigation.topViewController.rightBarButton

                visible: item !== null
                anchors.right: parent.right
                height: parent.height
                text: item ? item.title : ""
                enabled: item ? item.enabled : false
                onTouched: item.touch()
            }

            Rectangle {
                anchors.bottom: parent.bottom
                width: parent.width
                height: 1
                color: Theme.accent
                opacity: 0.6
            }
        }

        Loader {
            id: content

            anchors.top: bar.bottom
            anchors.bottom: parent.bottom
            width: parent.width

            function show() {
                const screenModel = screen.navigation.topViewController;
                setSource("../" + screenModel.look, { "screen": screenModel });
            }

            Component.onCompleted: show()

            Connections {
                target: screen.navigation
                function onStackChanged() { content.show(); }
            }
        }
    }
}
