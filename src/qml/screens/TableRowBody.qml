pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

Item {
    id: body

    required property TableViewCell cell
    property real u: 1
    property bool isFirst: false  // of its section
    property bool isLast: false
    property bool highlights: true
    property bool deletable: false
    property bool confirming: false  // the delete button is out
    property bool editing: false
    property bool focused: false

    property bool wraps: false  // the row is as high as its text
    readonly property real textHeight: Math.round(Math.max(Theme.touch * u, title.contentHeight + 18 * u))
    readonly property bool subtitle: cell.style === TableViewCell.Subtitle
    readonly property color ground: tap.pressed && highlights ? Theme.pressed
                                    : cell.selected ? Theme.selected : Theme.row
    readonly property real textLeft: (editing ? Theme.touch : 14) * u + image.space

    signal touched
    signal accessoryTouched
    signal deleteMarkTouched
    signal swiped
    signal deleteTouched

    clip: true

    Accessible.role: Accessible.ListItem
    Accessible.name: cell.text
    Accessible.description: cell.detailText + (cell.alarming && !cell.dimmed ? ", warning" : "") + (cell.note !== "" ? ", " + cell.note : "")
    Accessible.onPressAction: touched()

    // Rounded where a section begins and ends.
    Rectangle {
        anchors.fill: parent
        radius: 8 * body.u
        color: body.ground
        Behavior on color { ColorAnimation { duration: 250 } }

        Rectangle {
            visible: !body.isFirst
            width: parent.width
            height: 10 * body.u
            color: parent.color
        }
        Rectangle {
            visible: !body.isLast
            anchors.bottom: parent.bottom
            width: parent.width
            height: 10 * body.u
            color: parent.color
        }
    }
    Rectangle {
        visible: !body.isLast
        anchors.bottom: parent.bottom
        x: 14 * body.u
        width: parent.width - x
        height: Math.max(Math.round(body.u), 1)
        color: Theme.line
    }

    Item {
        id: content

        width: parent.width - (body.confirming ? deleteButton.width : 0)
        height: parent.height
        Behavior on width {
            enabled: body.deletable
            NumberAnimation { duration: 200; easing.type: Easing.OutCubic }
        }

        Picture {
            x: 11 * body.u
            y: Math.round((body.height - height) / 2)
            u: body.u
            frame: Qt.rect(0, 0, 22, 22)
            name: body.editing && body.deletable ? "picture/ICON_DELETE.png" : ""
        }

        Picture {
            id: image

            readonly property real space: name === "" ? 0 : 28 * body.u

            x: (body.editing ? Theme.touch : 14) * body.u
            y: Math.round((body.height - height) / 2)
            u: body.u
            frame: Qt.rect(0, 0, 20, 18)
            name: body.cell.image
        }

        Text {
            id: title

            readonly property real room: marks.x - body.textLeft - 8 * body.u

            x: body.textLeft
            y: !body.subtitle || (detail.text === "" && !value.visible) ? (body.height - height) / 2
               : value.visible ? value.y - height - body.u : body.height / 2 - height
            width: body.subtitle || detail.text === "" ? room
                   : Math.min(Math.ceil(titleSize.advanceWidth) + 1, Math.max(room - detailSize.advanceWidth - 14 * body.u, room * 0.5))
            elide: Text.ElideRight
            wrapMode: body.wraps ? Text.Wrap : Text.NoWrap
            maximumLineCount: body.wraps ? 99 : 1
            textFormat: Text.PlainText
            text: body.cell.text
            color: body.cell.dimmed ? Theme.faint : Theme.text
            font.pixelSize: Math.max(Math.round(15 * body.u), 1)
        }

        ValueText {
            id: value

            visible: body.cell.number !== "" || body.cell.note !== ""
            x: body.subtitle ? body.textLeft : marks.x - 8 * body.u - width
            y: body.subtitle ? Math.round(body.height - height - 11 * body.u) : Math.round((body.height - height) / 2)
            u: body.u
            room: title.room
            number: body.cell.number
            unit: body.cell.number !== "" ? body.cell.unit : body.cell.detailText
            note: body.cell.note
            color: body.cell.dimmed ? Theme.faint : body.cell.alarming ? Theme.alarm : Theme.accent
        }

        Text {
            id: detail

            visible: body.cell.number === "" && body.cell.note === ""
            x: body.subtitle ? body.textLeft : marks.x - 8 * body.u - width
            y: body.subtitle ? body.height / 2 : (body.height - height) / 2
            width: body.subtitle ? title.room : Math.max(title.room - title.width - 12 * body.u, 0)
            horizontalAlignment: body.subtitle ? Text.AlignLeft : Text.AlignRight
            elide: Text.ElideRight
            wrapMode: maximumLineCount > 1 ? Text.Wrap : Text.NoWrap
            maximumLineCount: body.subtitle && body.height > 60 * body.u ? 2 : 1
            textFormat: Text.PlainText
            text: (body.cell.alarming && !body.cell.dimmed ? "⚠ " : "") + body.cell.detailText
            color: body.cell.dimmed ? Theme.faint : body.cell.alarming ? Theme.alarm : body.subtitle ? Theme.faint : Theme.accent
            font.pixelSize: Math.max(Math.round((body.subtitle ? 12 : 16) * body.u), 1)
            font.bold: body.cell.alarming && !body.cell.dimmed
        }

        TextMetrics {
            id: titleSize

            font: title.font
            text: title.text
        }
        TextMetrics {
            id: detailSize

            font: detail.font
            text: detail.text
        }

        // From the right: accessory, marks, and the cell's own control.
        Row {
            id: marks

            anchors.right: parent.right
            anchors.rightMargin: 12 * body.u
            height: parent.height
            spacing: 8 * body.u

            OnDemand {
                anchors.verticalCenter: parent.verticalCenter
                shown: body.cell.control !== "" ? body.cell : null
                look: "../screens/" + body.cell.control
                parameters: cell => ({ "cell": cell, "u": Qt.binding(() => body.u),
                                       "room": Qt.binding(() => body.width - body.textLeft) })
            }

            Repeater {
                model: body.cell.busy ? [] : body.cell.marks

                Picture {
                    required property string modelData

                    y: Math.round((body.height - height) / 2)
                    u: body.u
                    frame: Qt.rect(0, 0, 20, 18)
                    name: modelData
                }
            }

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                visible: body.cell.busy
                u: body.u
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: body.cell.accessory === TableViewCell.Disclosure && !body.cell.busy
                text: "›"
                color: Theme.faint
                font.pixelSize: Math.max(Math.round(20 * body.u), 1)
            }

            BarButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: body.cell.accessory === TableViewCell.Detail && !body.cell.busy
                activeFocusOnTab: false
                u: body.u
                icon: "picture/ICON_DETAIL.png"
                text: "More about " + body.cell.text
                onTouched: body.accessoryTouched()
            }
        }
    }

    // Red, and out only after the mark or a swipe.
    Rectangle {
        id: deleteButton

        anchors.right: parent.right
        anchors.rightMargin: body.confirming ? 0 : -width
        width: 88 * body.u
        height: parent.height
        color: deleteTap.pressed ? Qt.darker(Theme.alarm, 1.3) : Theme.alarm
        Behavior on anchors.rightMargin { NumberAnimation { duration: 200; easing.type: Easing.OutCubic } }

        Accessible.role: Accessible.Button
        Accessible.name: "Delete " + body.cell.text
        Accessible.ignored: !body.confirming
        Accessible.onPressAction: body.deleteTouched()

        Text {
            anchors.centerIn: parent
            text: "Delete"
            color: "white"
            font.bold: true
            font.pixelSize: Math.max(Math.round(14 * body.u), 1)
        }
        TapHandler {
            id: deleteTap

            enabled: body.confirming
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: body.deleteTouched()
        }
    }

    FocusRing {
        anchors.margins: Math.round(body.u)
        u: body.u
        shown: body.focused
    }

    TapHandler {
        id: tap

        onTapped: eventPoint => {
            if (body.editing && body.deletable && eventPoint.position.x < Theme.touch * body.u) {
                body.deleteMarkTouched();
            } else {
                body.touched();
            }
        }
    }

    DragHandler {
        target: null
        enabled: body.deletable
        yAxis.enabled: false
        xAxis.minimum: -1e6
        onActiveChanged: if (!active && centroid.position.x < centroid.pressPosition.x - 30 * body.u)
                             body.swiped()
    }
}
