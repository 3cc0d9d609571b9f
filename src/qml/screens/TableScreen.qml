pragma ComponentBehavior: Bound
import QtQuick
import iTorv
import iTorv.Screens

FocusScope {
    id: table

    required property TableViewController screen
    property real u: 1

    focus: true

    Picture {
        frame: Qt.rect(0, 0, table.width, table.height)
        name: Theme.contrast ? "" : table.screen.background
    }

    SearchField {
        id: search

        visible: table.screen.searchable
        u: table.u
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.horizontalCenterOffset: list.x + list.width / 2 - parent.width / 2
        width: list.width
        onEdited: text => table.screen.search(text)
        onFinished: list.forceActiveFocus()
    }

    ListView {
        id: list

        property bool keysUsed: false  // since the last touch

        function keepPlace() {
            table.screen.scrollOffset = (contentY - originY) / table.u;
            table.screen.focusedIndex = currentIndex;
        }
        function findPlace() {
            forceLayout();
            currentIndex = Math.min(table.screen.focusedIndex, count - 1);
            contentY = originY + table.screen.scrollOffset * table.u;
            returnToBounds();
        }

        Component.onCompleted: findPlace()
        Component.onDestruction: keepPlace()

        // A screen that stands upright is a column in the middle of a wide window.
        readonly property real column: table.screen.portrait ? Math.min(table.width, 320 * table.u) : table.width

        anchors.fill: parent
        anchors.topMargin: search.visible ? search.height : 0
        anchors.leftMargin: Math.round((table.width - column) / 2 + 12 * table.u)
        anchors.rightMargin: anchors.leftMargin
        clip: true
        focus: true
        activeFocusOnTab: true
        visible: !table.screen.loading
        boundsBehavior: Flickable.DragAndOvershootBounds
        cacheBuffer: 0  // rows are quick to make; with a buffer they would appear piece by piece
        currentIndex: -1
        highlightMoveDuration: 100
        model: table.screen.rows
        delegate: TableRow {
            width: list.width
            u: table.u
            editing: table.screen.editing
            focused: ListView.isCurrentItem && list.keysUsed && list.activeFocus
            onTouched: table.screen.touchRow(section, row)
            onAccessoryTouched: table.screen.touchAccessory(section, row)
            onDeleteMarkTouched: table.screen.touchDeleteMark(section, row)
            onSwiped: table.screen.swipeRow(section, row)
            onDeleteTouched: table.screen.touchDelete(section, row)
        }
        bottomMargin: 10 * table.u

        Accessible.role: Accessible.List
        Accessible.name: table.screen.title

        // Rows that are asked for anew come where the old ones were.
        Connections {
            target: table.screen.rows
            function onModelAboutToBeReset() { list.keepPlace(); }
            function onModelReset() { comeBack.restart(); }
        }
        Timer {
            id: comeBack
            interval: 0  // once the rows are there
            onTriggered: list.findPlace()
        }

        Keys.onPressed: event => {
            keysUsed = true;
            event.accepted = true;
            if (event.key === Qt.Key_Down) {
                incrementCurrentIndex();
            } else if (event.key === Qt.Key_Up) {
                decrementCurrentIndex();
            } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
                table.screen.chooseIndex(currentIndex);
            } else if (event.key === Qt.Key_Space) {
                table.screen.activateIndex(currentIndex);
            } else if (event.key === Qt.Key_Right) {
                table.screen.touchAccessoryOfIndex(currentIndex);
            } else if (event.key === Qt.Key_Delete) {
                table.screen.deleteIndex(currentIndex);
            } else {
                event.accepted = false;
            }
        }
        onMovementStarted: keysUsed = false
    }

    Rectangle {
        // A scroll bar, bright while the list moves.
        visible: list.visible && list.contentHeight > list.height
        anchors.right: parent.right
        anchors.rightMargin: 4 * table.u
        y: list.y + list.visibleArea.yPosition * list.height
        width: 3 * table.u
        radius: width / 2
        height: Math.max(20 * table.u, list.visibleArea.heightRatio * list.height)
        color: Theme.faint
        opacity: list.moving ? 0.8 : 0.25
    }

    Text {
        anchors.centerIn: parent
        width: parent.width - 40 * table.u
        visible: list.visible && list.count === 0
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: search.text !== "" ? "Nothing here has that in its name." : table.screen.emptyText
        color: Theme.faint
        font.pixelSize: Math.max(Math.round(15 * table.u), 1)
    }

    Spinner {
        anchors.centerIn: parent
        visible: table.screen.loading
        u: table.u * 1.4
        Accessible.role: Accessible.Animation
        Accessible.name: "Loading"
    }
}
