import QtQuick
import iTorv
import iTorv.Dashboards

Picture {
    required property LampView lamp

    frame: lamp.frame
    name: lamp.image
    opacity: lamp.old ? 0.35 : 1
}
