pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

// A stack of screens: the bar above with the ways back and on, the topmost screen, and its own bar below.
FocusScope {
    id: whole

    required property NavigationController screen
    required property Stage stage

    // Pixels for each point of a stage 320 high, or 320 wide where it stands upright.
    readonly property real u: Math.max(Math.min(width, height), 1) / 320
    readonly property ViewController shown: screen.topViewController

    focus: true
    Keys.onEscapePressed: screen.touchEscape()
    Keys.onBackPressed: screen.touchEscape()

    Rectangle {
        anchors.fill: parent
        color: Theme.ground
    }

    Rectangle {
        id: bar

        width: parent.width
        height: Math.round(Theme.touch * whole.u)
        color: Theme.bar

        BarButton {
            id: back

            visible: whole.screen.depth > 1
            anchors.left: parent.left
            width: Math.min(implicitWidth, parent.width * 0.3)
            u: whole.u
            text: "‹ " + whole.screen.backTitle
            onTouched: whole.screen.touchBack()
        }

        BarButton {
            id: left

            readonly property BarButtonItem item: whole.shown.leftBarButton

            visible: item !== null && !back.visible
            anchors.left: parent.left
            width: Math.min(implicitWidth, parent.width * 0.3)
            u: whole.u
            text: item ? item.title : ""
            icon: item ? item.icon : ""
            enabled: item ? item.enabled : false
            onTouched: item.touch()
        }

        Text {
            readonly property real beside: Math.max(back.visible ? back.width : left.visible ? left.width : 0,
                                                    right.visible ? right.width : indicator.width + 12 * whole.u)

            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 2 * beside - 16 * whole.u)
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideRight
            textFormat: Text.PlainText
            text: whole.shown.title
            color: Theme.text
            font.pixelSize: Math.max(Math.round(16 * whole.u), 1)
            font.bold: true
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        StatusIndicator {
            id: indicator

            visible: !right.visible
            anchors.right: parent.right
            anchors.rightMargin: 12 * whole.u
            anchors.verticalCenter: parent.verticalCenter
            u: whole.u
            status: whole.stage.status
            onTouched: whole.stage.touchStatus()
        }

        Row {
            id: right

            visible: whole.shown.rightBarButtons.length > 0
            anchors.right: parent.right

            Repeater {
                model: whole.shown.rightBarButtons

                BarButton {
                    required property BarButtonItem modelData

                    width: Math.min(implicitWidth, bar.width * 0.3)
                    u: whole.u
                    text: modelData.title
                    icon: modelData.icon
                    enabled: modelData.enabled
                    onTouched: modelData.touch()
                }
            }
        }

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: Math.max(Math.round(whole.u), 1)
            color: Theme.accent
            opacity: 0.6
        }
    }

    Loader {
        id: content

        function show() {
            const screenModel = whole.shown;
            setSource("../" + screenModel.look, { "screen": screenModel, "u": Qt.binding(() => whole.u) });
        }

        anchors.top: bar.bottom
        anchors.bottom: toolbar.top
        width: parent.width
        focus: true
        Component.onCompleted: show()

        Connections {
            target: whole.screen
            function onStackChanged() { content.show(); }
        }
    }

    Rectangle {
        id: toolbar

        anchors.bottom: parent.bottom
        width: parent.width
        height: whole.shown.toolbarItems.length > 0 ? Math.round(Theme.touch * whole.u) : 0
        visible: height > 0
        color: Theme.bar

        Rectangle {
            width: parent.width
            height: Math.max(Math.round(whole.u), 1)
            color: Theme.line
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 12 * whole.u

            Repeater {
                model: whole.shown.toolbarItems

                BarButton {
                    required property BarButtonItem modelData

                    u: whole.u
                    text: modelData.title
                    icon: modelData.icon
                    enabled: modelData.enabled
                    onTouched: modelData.touch()
                }
            }
        }
    }
}
