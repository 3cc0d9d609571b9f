pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.DataLog

// Curves over one time axis, and beside them their names and numbers.
FocusScope {
    id: view

    required property GraphViewController screen
    property real u: 1

    function layOut() {
        if (screen) screen.setRoom(width / u, height / u);  // null while this is being destroyed
    }

    focus: true
    onWidthChanged: layOut()
    onHeightChanged: layOut()
    onUChanged: layOut()
    Component.onCompleted: layOut()

    Keys.onPressed: event => {
        event.accepted = true;
        if (event.key === Qt.Key_Left) screen.step(-0.125);
        else if (event.key === Qt.Key_Right) screen.step(0.125);
        else if (event.key === Qt.Key_Plus || event.key === Qt.Key_Up) screen.zoom(width / u / 2, 1);
        else if (event.key === Qt.Key_Minus || event.key === Qt.Key_Down) screen.zoom(width / u / 2, -1);
        else if (event.key === Qt.Key_Home) screen.showAll();
        else event.accepted = false;
    }

    GraphItem {
        anchors.fill: parent
        graph: view.screen
        u: view.u
        colours: Theme.curves
        Accessible.role: Accessible.Graphic
        Accessible.name: view.screen.title
    }
    MultiPointTouchArea {
        id: fingers

        function tell() {
            const places = [];
            for (const finger of [first, second]) {
                if (finger.pressed) places.push(finger.x / view.u);
            }
            view.screen.setFingers(places);
        }

        anchors.fill: parent
        maximumTouchPoints: 2
        touchPoints: [
            TouchPoint { id: first },
            TouchPoint { id: second }
        ]
        onPressed: {
            view.forceActiveFocus();
            tell();
        }
        onUpdated: tell()
        onReleased: tell()
        onCanceled: tell()
    }
    HoverHandler {
        acceptedDevices: PointerDevice.Mouse
        onPointChanged: if (!first.pressed) view.screen.point(point.position.x / view.u)
    }
    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        target: null
        onWheel: event => view.screen.zoom(event.x / view.u, event.angleDelta.y / 120)
    }

    Grid {
        anchors.bottom: parent.bottom
        width: parent.width
        columns: 3

        Repeater {
            model: view.screen.legend

            Item {
                id: entry

                required property graphLegend modelData

                width: Math.floor(view.width / 3)
                height: Math.round(30 * view.u)
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.name + " " + modelData.now + " " + modelData.summary

                Rectangle {
                    id: mark

                    x: Math.round(8 * view.u)
                    y: Math.round(4 * view.u)
                    width: Math.round(3 * view.u)
                    height: Math.round(22 * view.u)
                    color: Theme.curves[entry.modelData.colour]
                }
                Text {
                    id: now

                    anchors.right: parent.right
                    anchors.rightMargin: Math.round(6 * view.u)
                    anchors.top: mark.top
                    textFormat: Text.PlainText
                    text: entry.modelData.now
                    color: Theme.curves[entry.modelData.colour]
                    font.bold: true
                    font.pixelSize: Math.max(Math.round(11 * view.u), 1)
                }
                Text {
                    anchors.left: mark.right
                    anchors.leftMargin: Math.round(5 * view.u)
                    anchors.right: now.left
                    anchors.rightMargin: Math.round(4 * view.u)
                    anchors.top: mark.top
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    text: entry.modelData.name
                    color: Theme.text
                    font.pixelSize: Math.max(Math.round(11 * view.u), 1)
                }
                Text {
                    anchors.left: mark.right
                    anchors.leftMargin: Math.round(5 * view.u)
                    anchors.right: parent.right
                    anchors.bottom: mark.bottom
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    text: entry.modelData.summary
                    color: Theme.faint
                    font.pixelSize: Math.max(Math.round(9 * view.u), 1)
                }
            }
        }
    }
    Rectangle {
        // The moment at the cursor.
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round(2 * view.u)
        visible: moment.text !== ""
        width: moment.width + Math.round(12 * view.u)
        height: moment.height + Math.round(4 * view.u)
        radius: height / 2
        color: Theme.pressed

        Text {
            id: moment

            anchors.centerIn: parent
            textFormat: Text.PlainText
            text: view.screen.time
            color: Theme.text
            font.pixelSize: Math.max(Math.round(11 * view.u), 1)
        }
    }
    Text {
        anchors.centerIn: parent
        visible: text !== ""
        textFormat: Text.PlainText
        text: view.screen.emptyText
        color: Theme.faint
        font.pixelSize: Math.max(Math.round(15 * view.u), 1)
    }
}
