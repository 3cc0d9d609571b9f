import QtQuick
import iTorv
import iTorv.Screens

Item {
    id: control

    required property TappableLabelTableViewCell cell
    property real u: 1
    property real room: 0  // pixels that it may take

    // Where the words end, counted from the row's edge over what stands between.
    readonly property int taken: cell.accessory === TableViewCell.None ? 12
                                : cell.accessory === TableViewCell.Disclosure ? 28 : 64
    readonly property real margin: Math.max(40 - taken, 0) * u

    implicitWidth: Math.max(Math.min(label.implicitWidth, room * 0.5) + 8 * u + margin, Theme.touch * u)
    implicitHeight: Math.round(Theme.touch * u)

    Accessible.role: Accessible.Button
    Accessible.name: cell.text + ": " + cell.additionalLabel
    Accessible.onPressAction: cell.touchLabel()

    Text {
        id: label

        anchors.right: parent.right
        anchors.rightMargin: control.margin
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, control.width - control.margin)
        elide: Text.ElideRight
        maximumLineCount: 1
        textFormat: Text.PlainText
        text: control.cell.additionalLabel
        color: Theme.accent
        style: Text.Raised
        styleColor: "black"
        opacity: !control.cell.enabled ? 0.4 : tap.pressed ? 0.6 : 1
        font.pixelSize: Math.max(Math.round(14 * control.u), 1)
    }

    TapHandler {
        id: tap

        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: control.cell.touchLabel()
    }
}
