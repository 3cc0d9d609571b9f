import QtQuick

// A picture at its place, at whole pixels and made for its size.
Image {
    property rect frame
    property real u: 1
    property string name

    x: Math.round(frame.x * u)
    y: Math.round(frame.y * u)
    width: Math.round(frame.width * u)
    height: Math.round(frame.height * u)
    visible: name !== "" && width > 0 && height > 0
    sourceSize: Qt.size(Math.max(width, 1), Math.max(height, 1))
    source: visible ? "image://iTorv/" + name : ""
    smooth: false
}
