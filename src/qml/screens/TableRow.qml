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
    required property tableSectionView header
    required property tableSectionView footer
    property real u: 1
    property bool editing: false
    property bool focused: false

    signal touched
    signal accessoryTouched
    signal deleteMarkTouched
    signal swiped
    signal deleteTouched

    height: above.height + body.height + below.height

    TableNote {
        id: above

        u: delegate.u
        width: delegate.width
        view: delegate.header
        least: delegate.isFirst ? 10 : 0
    }

    TableRowBody {
        id: body

        y: above.height
        width: delegate.width
        height: wraps ? textHeight : Math.round(delegate.rowHeight * delegate.u)
        wraps: delegate.rowHeight < 0
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
        id: below

        y: above.height + body.height
        u: delegate.u
        width: delegate.width
        view: delegate.footer
    }
}
