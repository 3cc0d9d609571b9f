pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Dashboards

Item {
    id: root

    required property DashboardViewController screen
    required property PageView picker
    property real u: 1
    property string pressed

    x: Math.round(picker.frame.x * u)
    y: Math.round(picker.frame.y * u)
    width: Math.round(picker.frame.width * u)
    height: Math.round(picker.frame.height * u)
    clip: true

    Behavior on y {
        enabled: root.picker.animating
        NumberAnimation { duration: 500; easing.type: Easing.InOutQuad }
    }
    Behavior on height {
        enabled: root.picker.animating
        NumberAnimation { duration: 500; easing.type: Easing.InOutQuad }
    }

    Picture {
        u: root.u
        frame: Qt.rect(0, 0, 480, 80)
        name: root.picker.image
        opacity: root.picker.warningOld ? 0.5 : 1
    }

    PageDots {
        u: root.u
        control: root.picker.pageControl
    }

    Item {
        readonly property rect room: root.picker.scrollView.frame

        x: Math.round(room.x * root.u)
        y: Math.round(room.y * root.u)
        width: Math.round(room.width * root.u)
        height: Math.round(room.height * root.u)
        clip: true
        visible: root.height > y
        // Made when the drawer is first opened, to keep the start short.
        onVisibleChanged: if (visible) items.model = Qt.binding(() => root.picker.items)

        Text {
            anchors.centerIn: parent
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideRight
            text: root.screen.stripNote
            color: Theme.faint
            font.pixelSize: Math.max(Math.round(12 * root.u), 1)
        }

        Item {
            id: content

            x: -root.picker.scrollView.contentOffset * root.u

            Behavior on x {
                enabled: root.picker.scrollView.offsetAnimated
                NumberAnimation { duration: 300; easing.type: Easing.OutCubic }
            }

            Repeater {
                id: items

                Indicator {
                    required property IndicatorView modelData

                    indicator: modelData
                    u: root.u
                    visible: x + width > -content.x && x < -content.x + content.parent.width
                }
            }
        }
    }

    function press(frame: rect) {
        screen.pressAt(picker.frame.x + frame.x + frame.width / 2, picker.frame.y + frame.y + frame.height / 2);
    }

    Item {
        // The handle on the tab.
        x: Math.round(230 * root.u)
        width: Math.round(20 * root.u)
        height: Math.round(8 * root.u)
        Accessible.role: Accessible.Button
        Accessible.name: root.picker.expanded ? "Close the strip of sensors" : "Open the strip of sensors"
        Accessible.onPressAction: root.press(Qt.rect(230, 0, 20, 4))
    }
    Picture {
        Accessible.role: Accessible.Button
        Accessible.name: "Previous sensors"
        Accessible.ignored: !root.picker.expanded
        Accessible.onPressAction: root.press(frame)
        u: root.u
        frame: root.picker.previousButtonFrame
        name: "picture/PREVIOUS_IMAGE.png"
        opacity: root.picker.pageControl.currentPage === 0 ? 0.25 : root.pressed === "previous" ? 0.6 : 1
    }
    Picture {
        Accessible.role: Accessible.Button
        Accessible.name: "Next sensors"
        Accessible.ignored: !root.picker.expanded
        Accessible.onPressAction: root.press(frame)
        u: root.u
        frame: root.picker.nextButtonFrame
        name: "picture/NEXT_IMAGE.png"
        opacity: root.picker.pageControl.currentPage >= root.picker.pageControl.numberOfPages - 1 ? 0.25
                 : root.pressed === "next" ? 0.6 : 1
    }
}
