import QtQuick
import iTorv
import iTorv.Screens

// Something runs on the screen below, and holds it.
FocusScope {
    id: overlay

    required property ProgressHUD progress
    property real u: 1

    Component.onCompleted: if (progress.swallowsTouches && !progress.inBackground) forceActiveFocus()
    Keys.onPressed: event => {
        event.accepted = progress.swallowsTouches && !progress.inBackground;
        if (event.accepted && event.key === Qt.Key_Escape) progress.touchCancel();
    }

    Rectangle {
        anchors.fill: parent
        visible: !overlay.progress.inBackground
        color: "black"
        opacity: overlay.progress.swallowsTouches ? 0.55 : 0.15  // gauges stay bright enough to read

        MouseArea {
            anchors.fill: parent
            enabled: overlay.progress.swallowsTouches && !overlay.progress.inBackground
        }
    }

    Rectangle {
        visible: !overlay.progress.inBackground
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

            BarButton {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: overlay.progress.backgroundOffered
                u: overlay.u
                text: "Continue in background"
                onTouched: overlay.progress.touchBackground()
            }
        }
    }

    // In the background it is a pill with the same words.
    Rectangle {
        visible: overlay.progress.inBackground
        anchors.horizontalCenter: parent.horizontalCenter
        y: 6 * overlay.u
        width: pill.width + 16 * overlay.u
        height: Math.round((overlay.progress.cancellable ? Theme.touch : 30) * overlay.u)
        radius: height / 2
        color: Theme.row
        border.width: Math.max(Math.round(overlay.u), 1)
        border.color: Theme.line

        Row {
            id: pill

            anchors.centerIn: parent
            spacing: 8 * overlay.u

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                u: overlay.u * 0.7
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                textFormat: Text.PlainText
                text: overlay.progress.labelText + " · " + overlay.progress.detailsLabelText
                color: Theme.text
                Accessible.role: Accessible.ProgressBar
                Accessible.name: text
                font.pixelSize: Math.max(Math.round(11 * overlay.u), 1)
            }
            BarButton {
                visible: overlay.progress.cancellable
                u: overlay.u
                text: "Cancel"
                onTouched: overlay.progress.touchCancel()
            }
        }
    }
}
