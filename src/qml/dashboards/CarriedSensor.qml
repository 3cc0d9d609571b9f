import QtQuick
import iTorv
import iTorv.Dashboards

Image {
    required property DraggableIndicatorView view
    property real u: 1

    x: view.frame.x * u
    y: view.frame.y * u
    width: view.frame.width * u
    height: view.frame.height * u
    opacity: view.alpha
    scale: view.scale
    sourceSize: Qt.size(width * 3, height * 3)  // qmllint disable type
    source: view.icon === "" ? "" : "image://iTorv/" + view.icon

    Behavior on scale {
        NumberAnimation { duration: 500; easing.type: Easing.OutQuad }
    }
}
