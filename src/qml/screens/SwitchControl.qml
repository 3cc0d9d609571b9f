import QtQuick
import QtQuick.Templates as T
import iTorv
import iTorv.Screens

Item {
    id: control

    required property SwitchTableViewCell cell
    property real u: 1
    property real room: 0  // pixels that it may take

    // The offset counts from the row's right edge, so the width of what stands between is taken off.
    readonly property int taken: cell.accessory === TableViewCell.None ? 12
                                : cell.accessory === TableViewCell.Disclosure ? 28 : 64

    implicitWidth: toggle.width + Math.max(cell.offsetFromRight - taken, 0) * u
    implicitHeight: toggle.height

    T.Switch {
        id: toggle

        width: Math.round(54 * control.u)
        height: Math.round(Theme.touch * control.u)
        focusPolicy: Qt.NoFocus
        checkable: false  // the logic says what it shows
        enabled: control.cell.enabled
        opacity: enabled ? 1 : 0.45
        Accessible.name: control.cell.text
        Accessible.checkable: true
        Accessible.checked: control.cell.on
        onClicked: control.cell.touchSwitch()

        Rectangle {
            id: rail

            anchors.centerIn: parent
            width: Math.round(50 * control.u)
            height: Math.round(28 * control.u)
            radius: height / 2
            color: control.cell.on ? Theme.accent : Theme.ground
            border.width: Math.max(Math.round(control.u), 1)
            border.color: control.cell.on ? Theme.accent : Theme.line
            Behavior on color { ColorAnimation { duration: 150 } }

            Rectangle {
                x: control.cell.on ? parent.width - width - 3 * control.u : 3 * control.u
                y: 3 * control.u
                width: parent.height - 6 * control.u
                height: width
                radius: width / 2
                color: toggle.pressed ? "#d0d3d6" : "#f6f7f8"
                border.width: Math.max(Math.round(control.u), 1)
                border.color: "#40000000"
                Behavior on x { NumberAnimation { duration: 150; easing.type: Easing.OutCubic } }
            }
        }
    }
}
