pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: root

    required property CustomPageControl control
    property real u: 1

    x: control.frame.x * u
    y: control.frame.y * u
    visible: !control.hidden
    Accessible.role: Accessible.PageTabList
    Accessible.name: "Sensors, page " + (control.currentPage + 1) + " of " + control.dotFrames.length

    Repeater {
        model: root.control.dotFrames

        Picture {
            required property int index
            required property rect modelData

            u: root.u
            frame: Qt.rect(modelData.x + 2.5, modelData.y + 2.5, modelData.width - 5, modelData.height - 5)
            name: index === root.control.currentPage ? "picture/SELECTED_DOT.png" : "picture/NORMAL_DOT.png"
        }
    }
}
