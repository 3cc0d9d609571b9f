import QtQuick
import iTorv
import iTorv.Screens

// Something runs on the screen below, and holds it.
FocusScope {
    id: overlay

    required property ProgressHUD progress
    property real u: 1

    Component.onCompleted: if (progress.swallowsTouches) forceActiveFocus()
    Keys.onPressed: event => {
        event.accepted = progress.swallowsTouches;
        if (event.accepted && event.key === Qt.Key_Escape) progress.touchCancel();
    }

    Rectangle {
        anchors.fill: parent
        color: "black"
        opacity: 0.55

        MouseArea {
            anchors.fill: parent
            enabled: overlay.progress.swallowsTouches
        }
    }

    Rectangle {
        anchors.centerIn: parent
        width: Math.round(220 * overlay.u)
        height: Math.round(content.implicitHeight + 28 * overlay.u)
        radius: 10 * overlay.u
        color: Theme.row

        Column {
            id: content

            anchors.centerIn: parent
            width: parent.width - 32 * overlay.u
            spacing: 8 * overlay.u

            Spinner {
                anchors.horizontalCenter: parent.horizontalCenter
                u: overlay.u * 1.2
            }

            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                text: overlay.progress.labelText
                color: Theme.text
                font.pixelSize: Math.max(Math.round(15 * overlay.u), 1)
                Accessible.role: Accessible.ProgressBar
                Accessible.name: text + " " + overlay.progress.detailsLabelText
            }

            Text {
                width: parent.width
                visible: text !== ""
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                text: overlay.progress.detailsLabelText
                color: Theme.faint
                font.pixelSize: Math.max(Math.round(12 * overlay.u), 1)
            }

            BarButton {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: overlay.progress.cancellable
                u: overlay.u
                text: "Cancel"
                onTouched: overlay.progress.touchCancel()
            }
        }
    }
}
