pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

Item {
    id: overlay

    required property ProgressHUD progress
    property bool swallowsTouches: true

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: 0.55

        MouseArea {
            anchors.fill: parent
            enabled: overlay.swallowsTouches
        }
    }

    Rectangle {
        anchors.centerIn: parent
        width: 200
        height: content.implicitHeight + 28
        radius: 10
        color: Theme.row

        Column {
            id: content

            anchors.centerIn: parent
            width: parent.width - 32
            spacing: 8

            Item {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 28
                height: 28

                Repeater {
                    model: 8

                    Rectangle {
                        id: ray

                        required property int index

                        x: 12.5
                        width: 3
                        height: 8
                        radius: 1.5
                        color: Theme.accent
                        opacity: 0.2 + index / 10
                        transform: Rotation { origin.x: 1.5; origin.y: 14; angle: ray.index * 45 }
                    }
                }
                RotationAnimation on rotation {
                    running: true
                    from: 0
                    to: 360
                    duration: 900
                    loops: Animation.Infinite
                }
            }

            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: overlay.progress.labelText
                color: Theme.text
                font.pixelSize: 14
            }

            Text {
                width: parent.width
                visible: text !== ""
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: overlay.progress.detailsLabelText
                color: Theme.faint
                font.pixelSize: 11
            }

            BarButton {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: overlay.progress.cancellable
                height: 30
                text: "Cancel"
                onTouched: overlay.progress.touchCancel()
            }
        }
    }
}
