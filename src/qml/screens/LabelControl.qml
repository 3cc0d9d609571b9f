import QtQuick
import iTorv
import iTorv.Screens

Item {
    id: control

    required property TappableLabelTableViewCell cell
    property real u: 1
    property real room: 0  // pixels that it may take

    implicitWidth: Math.max(Math.min(label.implicitWidth, room * 0.5) + 16 * u, Theme.touch * u)
    implicitHeight: Math.round(Theme.touch * u)

    Accessible.role: Accessible.Button
    Accessible.name: cell.text + ": " + cell.additionalLabel
    Accessible.onPressAction: cell.touchLabel()

    Text {
        id: label

        anchors.centerIn: parent
        width: Math.min(implicitWidth, control.width - 8 * control.u)
        elide: Text.ElideRight
        maximumLineCount: 1
        textFormat: Text.PlainText
        text: control.cell.additionalLabel
        color: Theme.accent
        style: Text.Raised
        styleColor: "black"
        opacity: !control.cell.enabled ? 0.4 : tap.pressed ? 0.6 : 1
        font.pixelSize: Math.max(Math.round(14 * control.u), 1)
        font.bold: true
    }

    TapHandler {
        id: tap

        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: control.cell.touchLabel()
    }
}
