import QtQuick
import iTorv

// The words above or below the rows of a section.
Item {
    id: note

    property real u: 1
    property string text
    property real noteHeight: 0  // points; 0 is as high as the text
    property int fontSize: 16
    property bool centred: false
    property real least: 0

    height: text === "" ? least * u : noteHeight > 0 ? noteHeight * u : words.implicitHeight + 16 * u

    Text {
        id: words

        visible: note.text !== ""
        x: (note.centred ? 0 : 8) * note.u
        width: note.width - 2 * x
        height: note.height
        horizontalAlignment: note.centred ? Text.AlignHCenter : Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        textFormat: Text.PlainText
        text: note.text
        color: "white"
        font.pixelSize: Math.max(Math.round(note.fontSize * note.u), 1)
        font.bold: true
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
