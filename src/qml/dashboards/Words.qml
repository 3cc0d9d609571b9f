import QtQuick
import iTorv

// A sentence to the driver, over the page.
Rectangle {
    id: root

    property real u: 1
    property string words
    property color ink: Theme.text

    visible: words !== ""
    width: Math.round(label.width + 20 * u)
    height: Math.round(label.height + 10 * u)
    radius: 5 * u
    color: "#e0101214"
    border.width: Math.max(Math.round(u), 1)
    border.color: Theme.accent

    Text {
        id: label

        anchors.centerIn: parent
        width: Math.min(implicitWidth, 330 * root.u)
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: root.words
        color: root.ink
        font.pixelSize: Math.max(Math.round(13 * root.u), 1)
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
