#pragma once

#include "dashboards/LampView.h"
#include "platform/NotificationNames.h"

namespace torv {

/// The torque converter's lock: tells all gauges of each change. Main thread, except for reading.
class TorqueLockView final : public torv::LampView {
    Q_OBJECT

public:
    explicit TorqueLockView(QRectF frame)
        : LampView(frame, QStringLiteral("ICON_DIFFLOCK-ON.png"), QStringLiteral("ICON_DIFFLOCK-ON.png"),
                   QStringLiteral("ICON_DIFFLOCK-OFF.png")) {}

protected:
    void lockedChanged() override {
        Platform::current().notificationCenter().postNotificationName(isLocked() ? lockNotification
                                                                                 : unlockNotification);
    }
};

}  // namespace torv
