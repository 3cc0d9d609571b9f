import QtQuick

Picture {
    required property var alert

    frame: alert.frame
    name: alert.warning ? alert.image : ""
}
