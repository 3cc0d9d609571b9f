import QtQuick
import iTorv
import iTorv.Dashboards

Picture {
    required property WarningView alert

    frame: alert.frame
    name: alert.warning ? alert.image : ""
    opacity: alert.old ? 0.35 : 1
}
