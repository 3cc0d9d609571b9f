import QtQuick
import iTorv
import iTorv.Screens

Rectangle {
    id: root

    required property LinkStatus status
    required property Stage stage
    property real u: 1
    property real room: 150  // points that it may be wide
    property bool flat: false  // in one line, in letters as small as that takes

    width: words.width + 8 * u
    height: words.height + (flat ? 1 : 5) * u
    radius: (flat ? 3 : 6) * u
    color: "#e0101214"
    Accessible.role: Accessible.Button
    Accessible.name: status.text + " " + status.hint
    Accessible.onPressAction: stage.touchStatus()

    TapHandler {
        margin: 14 * root.u  // as high as a finger needs
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.stage.touchStatus()
    }

    TextMetrics {
        id: whole

        font.pixelSize: Math.max(Math.round(8 * root.u), 1)
        text: root.status.text + "  " + root.status.hint
    }

    Row {
        id: words

        readonly property real most: (root.room - 18) * root.u
        readonly property real size: Math.max(Math.floor(whole.font.pixelSize * (root.flat ? Math.min(most / Math.max(whole.advanceWidth, 1), 1) : 1)), 1)

        anchors.centerIn: parent
        spacing: 4 * root.u

        Picture {
            anchors.verticalCenter: parent.verticalCenter
            u: root.u
            frame: Qt.rect(0, 0, 6, 6)
            name: "picture/SELECTED_DOT.png"
        }
        Grid {
            columns: root.flat ? 2 : 1
            columnSpacing: Math.round(words.size / 2)

            Text {
                width: root.flat ? implicitWidth : Math.min(implicitWidth, words.most)
                wrapMode: root.flat ? Text.NoWrap : Text.Wrap
                text: root.status.text
                color: Theme.text
                font.pixelSize: words.size
            }
            Text {
                width: root.flat ? implicitWidth : Math.min(implicitWidth, words.most)
                visible: text !== ""
                wrapMode: root.flat ? Text.NoWrap : Text.Wrap
                textFormat: Text.PlainText
                text: root.status.hint
                color: Theme.faint
                font.pixelSize: words.size
            }
        }
    }
}
