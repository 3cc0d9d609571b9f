pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards
import iTorv.Screens

Item {
    id: page

    required property DashboardViewController screen
    required property Stage stage

    // Pixels for each point of a page 320 high, on which a stage 480 wide has its room.
    readonly property real u: Math.max(Math.min(width / 480, height / 320), 0.1)
    readonly property list<int> keys: [Qt.Key_Escape, Qt.Key_Left, Qt.Key_Right, Qt.Key_Down, Qt.Key_Plus, Qt.Key_Minus, Qt.Key_Space]

    focus: true
    Keys.onPressed: event => {
        event.accepted = keys.includes(event.key);
        if (event.accepted && !event.isAutoRepeat) screen.touchKey(event.key);
    }

    Binding {
        target: page.stage
        property: "viewSize"
        value: Qt.size(page.width / page.u, 320)
    }

    Picture {
        frame: Qt.rect(0, 0, page.width, page.height)
        name: Theme.contrast ? "" : page.screen.background
    }

    Item {
        id: view

        y: Math.round((page.height - height) / 2)
        width: page.width
        height: 320 * page.u
        clip: page.height > height + 1

        Repeater {
            model: page.screen.backdrops

            Picture {
                required property pagePicture modelData

                u: page.u
                frame: modelData.frame
                name: modelData.image
                z: modelData.layer
            }
        }

        Repeater {
            model: page.screen.places

            Place {
                required property DroppableView modelData

                place: modelData
                u: page.u
            }
        }

        Loader {
            z: 10
            asynchronous: true
            Component.onCompleted: setSource("DashboardControls.qml",
                                             { "screen": page.screen, "u": Qt.binding(() => page.u) })
        }

        OnDemand {
            z: 14
            shown: page.screen.touchingView
            look: "../dashboards/CarriedSensor.qml"
            parameters: view => ({ "view": view, "u": page.u })
        }

        // One line in the strip's style while nothing stands on the page.
        OnDemand {
            z: 5
            anchors.centerIn: parent
            shown: page.screen.advice !== "" ? page.screen : null
            look: "../dashboards/Words.qml"
            parameters: screen => ({ "words": Qt.binding(() => screen.advice), "u": Qt.binding(() => page.u) })
        }

        OnDemand {
            z: 14
            anchors.horizontalCenter: parent.horizontalCenter
            y: 4 * page.u
            shown: page.screen.notice !== "" ? page.screen : null
            look: "../dashboards/Words.qml"
            parameters: screen => ({ "words": Qt.binding(() => screen.notice), "u": Qt.binding(() => page.u),
                                     "ink": Theme.alarm })
        }

        // Which of the pages this is.
        Row {
            z: 13
            anchors.right: parent.right
            anchors.rightMargin: 8 * page.u
            y: 8 * page.u
            spacing: 3 * page.u
            Accessible.role: Accessible.Indicator
            Accessible.name: "Page " + page.screen.number + " of 3"

            Repeater {
                model: 3

                Rectangle {
                    required property int index

                    width: Math.round(9 * page.u)
                    height: Math.round(2.5 * page.u)
                    color: index + 1 === page.screen.number ? Theme.accent : "#60808890"
                }
            }
        }

        OnDemand {
            z: 15
            x: page.screen.toastFrame.x * page.u
            y: page.screen.toastFrame.y * page.u
            width: page.screen.toastFrame.width * page.u
            height: page.screen.toastFrame.height * page.u
            shown: page.screen.toast !== "" ? page.screen : null
            look: "../dashboards/Toast.qml"
            parameters: screen => ({ "screen": screen, "u": Qt.binding(() => page.u) })
        }
    }

    // The state of the link, while it is not what it should be: along the lowest edge, where on every page there
    // is no dial, no button and no dot; over an open strip. On a screen that is higher it is below the stage.
    OnDemand {
        readonly property bool below: view.y >= 15 * page.u

        z: 1  // over what takes the page's touches
        x: 4 * page.u
        y: page.screen.pageView.expanded && !below ? view.y + page.screen.pageView.frame.y * page.u - height
                                                   : page.height - height - (below ? 2 * page.u : 0)
        shown: page.stage.status.missing ? page.stage.status : null
        look: "../dashboards/LinkPill.qml"
        parameters: status => ({ "status": status, "stage": page.stage, "u": Qt.binding(() => page.u),
                                 "flat": Qt.binding(() => view.y < 35 * page.u),
                                 "room": Qt.binding(() => page.width / page.u - 8) })
    }

    MultiPointTouchArea {
        function point(touch) { return Qt.point(touch.x / page.u, (touch.y - view.y) / page.u); }
        function tell(what, touches) {
            for (const touch of touches) {
                const place = point(touch);
                what.call(page.screen, touch.pointId, place.x, place.y);
            }
        }

        anchors.fill: parent
        onPressed: touches => tell(page.screen.touchBegan, touches)
        onUpdated: touches => tell(page.screen.touchMoved, touches)
        onReleased: touches => tell(page.screen.touchEnded, touches)
        onCanceled: page.screen.touchCancelled()
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        orientation: Qt.Vertical
        onWheel: event => page.screen.touchWheel(event.angleDelta.y)
    }
}
