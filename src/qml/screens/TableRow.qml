pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

// One row, with the header of its section above the first one and the footer below the last.
Item {
    id: delegate

    required property TableViewCell cell
    required property int section
    required property int row
    required property real rowHeight
    required property bool isFirst
    required property bool isLast
    required property bool highlights
    required property bool deletable
    required property bool confirming
    required property string headerText
    required property real headerHeight
    required property int headerFontSize
    required property bool headerCentred
    required property string footerText
    required property real footerHeight
    required property int footerFontSize
    property real u: 1
    property bool editing: false
    property bool focused: false

    signal touched
    signal accessoryTouched
    signal deleteMarkTouched
    signal swiped
    signal deleteTouched

    height: header.height + body.height + footer.height

    TableNote {
        id: header

        u: delegate.u
        width: delegate.width
        text: delegate.headerText
        noteHeight: delegate.headerHeight
        fontSize: delegate.headerFontSize
        centred: delegate.headerCentred
        least: delegate.isFirst ? 10 : 0
    }

    TableRowBody {
        id: body

        y: header.height
        width: delegate.width
        height: Math.round(delegate.rowHeight * delegate.u)
        visible: height > 0
        u: delegate.u
        cell: delegate.cell
        isFirst: delegate.isFirst
        isLast: delegate.isLast
        highlights: delegate.highlights
        deletable: delegate.deletable
        confirming: delegate.confirming
        editing: delegate.editing
        focused: delegate.focused
        onTouched: delegate.touched()
        onAccessoryTouched: delegate.accessoryTouched()
        onDeleteMarkTouched: delegate.deleteMarkTouched()
        onSwiped: delegate.swiped()
        onDeleteTouched: delegate.deleteTouched()
    }

    TableNote {
        id: footer

        y: header.height + body.height
        u: delegate.u
        width: delegate.width
        text: delegate.footerText
        noteHeight: delegate.footerHeight
        fontSize: delegate.footerFontSize
        centred: true
    }
}
