import QtQuick
import iTorv
import iTorv.Screens

// The words above or below the rows of a section.
Item {
    id: note

    property real u: 1
    required property tableSectionView view
    property real least: 0

    height: view.text === "" ? least * u : view.height > 0 ? view.height * u : words.implicitHeight + 16 * u

    Text {
        id: words

        visible: text !== ""
        x: note.view.centred ? (note.width - width) / 2 : 10 * note.u
        width: note.view.width > 0 ? Math.min(note.view.width * note.u, note.width) : note.width - (note.view.centred ? 0 : 20 * note.u)
        height: note.height
        horizontalAlignment: note.view.centred ? Text.AlignHCenter : Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        maximumLineCount: note.view.lines > 0 ? note.view.lines : 99
        fontSizeMode: note.view.lines > 0 ? Text.Fit : Text.FixedSize
        minimumPixelSize: Math.max(Math.round(9 * note.u), 1)
        textFormat: Text.PlainText
        text: note.view.text
        color: note.view.accented ? Theme.accent : "white"
        font.pixelSize: Math.max(Math.round(note.view.fontSize * note.u), 1)
        font.bold: note.view.bold
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
}
