import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: root

    required property DroppableView place
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

    OnDemand {
        anchors.fill: parent
        shown: root.place.gauge
        look: "../dashboards/Gauge.qml"
        parameters: gauge => ({ "gauge": gauge, "u": Qt.binding(() => root.u) })
    }
}
