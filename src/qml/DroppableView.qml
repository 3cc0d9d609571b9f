import QtQuick

Item {
    id: root

    required property var place
    property real u: 1

    x: Math.round(place.frame.x * u)
    y: Math.round(place.frame.y * u)
    width: Math.round(place.frame.width * u)
    height: Math.round(place.frame.height * u)
    z: place.layer
    opacity: place.alpha
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation { duration: 300 }
    }

    Picture {
        u: root.u
        frame: Qt.rect(0, 0, root.place.frame.width, root.place.frame.height)
        name: root.place.image
    }

    Loader {
        id: gauge

        anchors.fill: parent

        function show() {
            if (root.place.gauge) {
                setSource("GaugeView.qml", { "gauge": root.place.gauge, "u": Qt.binding(() => root.u) });
            } else {
                source = "";
            }
        }

        Component.onCompleted: show()

        Connections {
            target: root.place
            function onGaugeChanged() { gauge.show(); }
        }
    }
}
