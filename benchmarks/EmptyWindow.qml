import QtQuick.Window

Window {
    visible: true
}
