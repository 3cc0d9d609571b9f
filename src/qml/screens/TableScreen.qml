pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

Item {
    id: table

    required property TableViewController screen

    ListView {
        id: list

        anchors.fill: parent
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        clip: true
        boundsBehavior: Flickable.DragAndOvershootBounds
        model: table.screen.rows
        delegate: TableRow {
            width: list.width
            onTouched: table.screen.touchRow(section, row)
            onAccessoryTouched: table.screen.touchAccessory(section, row)
        }
        footer: Item { width: 1; height: 10 }
    }

    Rectangle {
        // How far the list has been drawn; appears while it moves.
        visible: list.contentHeight > list.height
        anchors.right: parent.right
        anchors.rightMargin: 4
        y: list.visibleArea.yPosition * list.height
        width: 3
        radius: 1.5
        height: Math.max(20, list.visibleArea.heightRatio * list.height)
        color: Theme.faint
        opacity: list.moving ? 0.8 : 0.25
    }

    Text {
        anchors.centerIn: parent
        visible: list.count === 0
        text: table.screen.emptyText
        color: Theme.faint
        font.pixelSize: 14
    }
}
