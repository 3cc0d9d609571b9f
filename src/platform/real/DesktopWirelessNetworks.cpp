#include "platform/real/DesktopWirelessNetworks.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QVariantMap>
#include <algorithm>
#include <array>

namespace torv {
namespace {

const auto networkManager = QStringLiteral("org.freedesktop.NetworkManager");
constexpr int patience = 2000;  // ms for each answer

struct SettingsProgram {
    const char* name;
    std::array<const char*, 1> arguments;
};
constexpr std::array<SettingsProgram, 5> settingsPrograms{{
    {"gnome-control-center", {"wifi"}},
    {"plasma-open-settings", {"kcm_networkmanagement"}},
    {"systemsettings", {"kcm_networkmanagement"}},
    {"systemsettings5", {"kcm_networkmanagement"}},
    {"nm-connection-editor", {nullptr}},
}};

const SettingsProgram* settingsProgram() {
    const auto* const found = std::ranges::find_if(settingsPrograms, [](const SettingsProgram& each) {
        return !QStandardPaths::findExecutable(QString::fromLatin1(each.name)).isEmpty();
    });
    return found == settingsPrograms.end() ? nullptr : found;
}

/// Calls back with the first value of the reply; an invalid one where there is none.
void call(const QString& path, const QString& interface, const QString& method, const QVariantList& arguments,
          std::function<void(const QVariant&)> then) {
    auto message = QDBusMessage::createMethodCall(networkManager, path, interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    const auto pending = QDBusConnection::systemBus().asyncCall(message, patience);
    auto* const watcher =
        std::make_unique<QDBusPendingCallWatcher>(pending, QCoreApplication::instance()).release();
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [then = std::move(then)](QDBusPendingCallWatcher* answered) {
                         answered->deleteLater();
                         const auto reply = answered->reply();
                         const bool good =
                             reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
                         then(good ? reply.arguments().first() : QVariant{});
                     });
}

void property(const QString& path, const QString& interface, const QString& name,
              std::function<void(const QVariant&)> then) {
    call(path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"), {interface, name},
         [then = std::move(then)](const QVariant& value) {
             then(value.isValid() ? value.value<QDBusVariant>().variant() : QVariant{});
         });
}

QString pathOf(const QVariant& value) {
    return value.value<QDBusObjectPath>().path();
}

void askAccessPoint(const QString& accessPoint, const WirelessNetworks::Told& told) {
    const auto interface = networkManager + QStringLiteral(".AccessPoint");
    property(accessPoint, interface, QStringLiteral("Ssid"), [=](const QVariant& name) {
        property(accessPoint, interface, QStringLiteral("Strength"), [=](const QVariant& strength) {
            if (!name.isValid() || !strength.isValid()) return told(std::nullopt);
            told(WirelessNetworks::Network{QString::fromUtf8(name.toByteArray()).toStdString(),
                                           std::clamp(strength.toInt(), 0, 100)});
        });
    });
}

}  // namespace

void DesktopWirelessNetworks::ask(const std::string& interface, Told told) {
    if (!QDBusConnection::systemBus().isConnected()) return told(std::nullopt);
    call(QStringLiteral("/org/freedesktop/NetworkManager"), networkManager,
         QStringLiteral("GetDeviceByIpIface"), {QString::fromStdString(interface)},
         [told = std::move(told)](const QVariant& device) {
             const auto path = pathOf(device);
             if (path.isEmpty()) return told(std::nullopt);
             property(path, networkManager + QStringLiteral(".Device.Wireless"),
                      QStringLiteral("ActiveAccessPoint"), [told](const QVariant& accessPoint) {
                          const auto point = pathOf(accessPoint);
                          if (point.isEmpty() || point == u"/") return told(std::nullopt);
                          askAccessPoint(point, told);
                      });
         });
}

bool DesktopWirelessNetworks::canOpenSettings() const {
    return settingsProgram() != nullptr;
}

bool DesktopWirelessNetworks::openSettings() {
    const auto* const chosen = settingsProgram();
    if (!chosen) return false;
    QStringList arguments;
    for (const auto* argument : chosen->arguments) {
        if (argument) arguments << QString::fromLatin1(argument);
    }
    return QProcess::startDetached(QString::fromLatin1(chosen->name), arguments);
}

}  // namespace torv
