#pragma once

#include <QDBusConnection>
#include <QtGlobal>

namespace torv {

/// Whether there is a session bus, and a way to it. Without an address Qt would start a bus of its own. Main
/// thread.
[[nodiscard]] inline bool hasSessionBus() {
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") &&
           QDBusConnection::sessionBus().isConnected();
}

}  // namespace torv
