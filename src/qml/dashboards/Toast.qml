import QtQuick
import iTorv.Dashboards

// The name of the sensor that is being carried.
Rectangle {
    id: root

    required property DashboardViewController screen
    property real u: 1

    radius: 8 * u
    color: "#545454"
    border.width: 2 * u
    border.color: "white"

    Text {
        anchors.fill: parent
        anchors.margins: 10 * root.u
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        text: root.screen.toast
        color: "white"
        font.pixelSize: Math.max(Math.round(14 * root.u), 1)
    }
}
