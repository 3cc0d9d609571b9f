pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

Item {
    id: overlay

    required property AlertView alert

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: 0.55

        // Touches stop here.
        MouseArea { anchors.fill: parent }
    }

    Rectangle {
        anchors.centerIn: parent
        width: 280
        height: Math.min(content.implicitHeight, overlay.height - 20)
        radius: 10
        color: Theme.row
        border.width: 1
        border.color: Theme.line

        Column {
            id: content

            width: parent.width
            topPadding: 14
            spacing: 8

            Text {
                x: 16
                width: parent.width - 32
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: overlay.alert.title
                color: Theme.text
                font.pixelSize: 15
                font.bold: true
            }

            Text {
                x: 16
                width: parent.width - 32
                visible: text !== ""
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                text: overlay.alert.message
                color: Theme.faint
                font.pixelSize: 12
            }

            Row {
                width: parent.width

                Repeater {
                    model: overlay.alert.buttons

                    BarButton {
                        required property int index
                        required property string modelData

                        width: content.width / overlay.alert.buttons.length
                        height: 40
                        text: modelData
                        onTouched: overlay.alert.touchButton(index)
                    }
                }
            }
        }
    }
}
