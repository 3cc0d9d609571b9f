pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

// Over everything, with the keyboard's focus: no key reaches what lies under it.
FocusScope {
    id: overlay

    required property AlertView alert
    property real u: 1

    focus: true
    Component.onCompleted: forceActiveFocus()
    Keys.onPressed: event => {
        event.accepted = true;
        if (event.key === Qt.Key_Escape || event.key === Qt.Key_Back) {
            alert.touchButton(0);
        } else if (event.key === Qt.Key_Left || event.key === Qt.Key_Backtab) {
            buttons.move(-1);
        } else if (event.key === Qt.Key_Right || event.key === Qt.Key_Tab) {
            buttons.move(1);
        } else if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space)
                   && !event.isAutoRepeat) {
            alert.touchButton(buttons.current);
        }
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: 0.6

        // Touches stop here.
        MouseArea {
            anchors.fill: parent
            onWheel: wheel => wheel.accepted = true
        }
    }

    Rectangle {
        anchors.centerIn: parent
        width: Math.round(Math.min(300 * overlay.u, overlay.width - 20 * overlay.u))
        height: Math.round(Math.min(words.implicitHeight + 44 * overlay.u, overlay.height - 16 * overlay.u))
        radius: 10 * overlay.u
        color: Theme.row
        border.width: Math.max(Math.round(overlay.u), 1)
        border.color: Theme.line

        Accessible.role: Accessible.AlertMessage
        Accessible.name: overlay.alert.title
        Accessible.description: overlay.alert.message

        // A long message scrolls; its buttons stay.
        Flickable {
            width: parent.width
            anchors.top: parent.top
            anchors.bottom: buttons.top
            contentHeight: words.implicitHeight
            interactive: contentHeight > height
            clip: true

            Column {
                id: words

                width: parent.width
                topPadding: 14 * overlay.u
                bottomPadding: 10 * overlay.u
                spacing: 8 * overlay.u

                Text {
                    x: 16 * overlay.u
                    width: parent.width - 2 * x
                    visible: text !== ""
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    textFormat: Text.PlainText
                    text: overlay.alert.title
                    color: Theme.text
                    font.pixelSize: Math.max(Math.round(16 * overlay.u), 1)
                    font.bold: true
                }

                Text {
                    x: 16 * overlay.u
                    width: parent.width - 2 * x
                    visible: text !== ""
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    textFormat: Text.PlainText
                    text: overlay.alert.message
                    color: Theme.faint
                    font.pixelSize: Math.max(Math.round(13 * overlay.u), 1)
                }
            }
        }

        Row {
            id: buttons

            property int current: overlay.alert.buttons.length - 1

            function move(step: int) {
                const count = overlay.alert.buttons.length;
                current = (current + step + count) % count;
            }

            anchors.bottom: parent.bottom
            width: parent.width

            Repeater {
                model: overlay.alert.buttons

                BarButton {
                    id: button

                    required property int index
                    required property string modelData

                    width: buttons.width / overlay.alert.buttons.length
                    u: overlay.u
                    activeFocusOnTab: false
                    text: modelData
                    onTouched: overlay.alert.touchButton(index)

                    FocusRing {
                        anchors.margins: 3 * overlay.u
                        u: overlay.u
                        shown: buttons.current === button.index && overlay.alert.buttons.length > 1
                        opacity: 0.5
                    }
                }
            }
        }
    }
}
