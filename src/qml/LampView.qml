import QtQuick

Picture {
    required property var lamp

    frame: lamp.frame
    name: lamp.image
    opacity: lamp.old ? 0.35 : 1
}
