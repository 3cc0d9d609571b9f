#include "platform/real/IdleInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace torv {

void inhibitIdle() {
    // Without an address Qt would start a bus of its own.
    if (!qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")) return;
    auto inhibit = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("/org/freedesktop/ScreenSaver"),
        QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("Inhibit"));
    inhibit << QStringLiteral("iTorv") << QStringLiteral("Live gauges are shown");
    QDBusConnection::sessionBus().send(inhibit);
}

}  // namespace torv
