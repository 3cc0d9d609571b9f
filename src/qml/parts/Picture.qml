import QtQuick
import iTorv

// A picture at its place, at whole pixels and made for its size. It is read on a thread of Qt's, so that values
// needn't wait for it; one that takes another's place comes at once, or the place would blink.
Image {
    id: root

    property rect frame
    property real u: 1
    property string name

    x: Math.round(frame.x * u)
    y: Math.round(frame.y * u)
    width: Math.round(frame.width * u)
    height: Math.round(frame.height * u)
    visible: name !== "" && width > 0 && height > 0
    sourceSize: Qt.size(Math.max(width, 1), Math.max(height, 1))  // qmllint disable type
    source: visible ? "image://iTorv/" + name : ""
    smooth: false
    asynchronous: true
    onStatusChanged: if (status === Image.Ready) asynchronous = false
}
