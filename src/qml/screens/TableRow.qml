pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

Item {
    id: delegate

    required property TableViewCell cell
    required property string sectionTitle
    required property int section
    required property int row
    required property bool isFirst
    required property bool isLast

    readonly property bool subtitle: cell.style === 2
    readonly property real headerHeight: !isFirst ? 0 : sectionTitle !== "" ? 50 : 10

    signal touched
    signal accessoryTouched

    height: headerHeight + body.height

    Text {
        visible: delegate.isFirst && delegate.sectionTitle !== ""
        x: 8  // 20 from the edge of the screen
        height: 50
        width: delegate.width - 40
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
            maximumLineCount: 1
            textFormat: Text.PlainText
        text: delegate.sectionTitle
        color: "white"
        font.pixelSize: 16
        font.bold: true
    }

    Item {
        id: body

        y: delegate.headerHeight
        width: parent.width
        height: delegate.subtitle ? 46 : 36

        // Rounded where a section begins and ends.
        Rectangle {
            anchors.fill: parent
            radius: 8
            color: tap.pressed ? Theme.pressed : Theme.row
        }
        Rectangle {
            visible: !delegate.isFirst
            width: parent.width
            height: 10
            color: tap.pressed ? Theme.pressed : Theme.row
        }
        Rectangle {
            visible: !delegate.isLast
            anchors.bottom: parent.bottom
            width: parent.width
            height: 10
            color: tap.pressed ? Theme.pressed : Theme.row
        }
        Rectangle {
            visible: !delegate.isLast
            anchors.bottom: parent.bottom
            x: 14
            width: parent.width - 14
            height: 1
            color: Theme.line
        }

        Text {
            id: title

            x: 14
            y: delegate.subtitle ? 6 : (body.height - height) / 2
            width: delegate.subtitle ? body.width - 28 - mark.width
                                     : Math.min(implicitWidth, (body.width - 28) * 0.6)
            elide: Text.ElideRight
            maximumLineCount: 1
            textFormat: Text.PlainText
            text: delegate.cell.text
            color: delegate.cell.dimmed ? Theme.faint : Theme.text
            font.pixelSize: 14
        }

        Text {
            id: detail

            x: delegate.subtitle ? 14 : mark.x - 8 - width
            y: delegate.subtitle ? 26 : (body.height - height) / 2
            width: delegate.subtitle ? body.width - 28 - mark.width
                                     : body.width - 28 - title.width - mark.width - 16
            horizontalAlignment: delegate.subtitle ? Text.AlignLeft : Text.AlignRight
            elide: Text.ElideRight
            maximumLineCount: 1
            textFormat: Text.PlainText
            text: delegate.cell.detailText
            color: delegate.cell.alarming ? Theme.alarm : delegate.subtitle ? Theme.faint : Theme.accent
            font.pixelSize: delegate.subtitle ? 11 : 15
            font.bold: delegate.cell.alarming
        }

        Text {
            id: mark

            anchors.right: parent.right
            anchors.rightMargin: delegate.cell.accessory === 0 ? 0 : 12
            anchors.verticalCenter: parent.verticalCenter
            width: delegate.cell.accessory === 0 ? 6 : implicitWidth
            text: delegate.cell.accessory === 1 ? "›" : delegate.cell.accessory === 2 ? "ⓘ" : ""
            color: Theme.faint
            font.pixelSize: 18

            TapHandler {
                enabled: delegate.cell.accessory === 2
                onTapped: delegate.accessoryTouched()
            }
        }

        TapHandler {
            id: tap

            onTapped: delegate.touched()
        }
    }
}
