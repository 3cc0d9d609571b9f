#include "platform/real/IdleInhibitor.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <memory>
#include <utility>

#include "platform/Log.h"
#include "platform/real/SessionBus.h"

namespace torv {
namespace {

QDBusMessage call(const char* method) {
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("/org/freedesktop/ScreenSaver"),
        QStringLiteral("org.freedesktop.ScreenSaver"), QString::fromLatin1(method));
}

}  // namespace

void IdleInhibitor::setInhibited(bool inhibited) {
    if (m_inhibited == inhibited || !hasSessionBus()) return;
    m_inhibited = inhibited;
    if (!inhibited) return release();
    if (m_asking || m_cookie) return;
    auto inhibit = call("Inhibit");
    inhibit << QStringLiteral("iTorv") << QStringLiteral("Live gauges are shown");
    m_asking = true;
    auto* const watcher =
        std::make_unique<QDBusPendingCallWatcher>(QDBusConnection::sessionBus().asyncCall(inhibit), this)
            .release();
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* answered) {
        const QDBusPendingReply<unsigned int> reply = *answered;
        answered->deleteLater();
        m_asking = false;
        if (reply.isValid()) m_cookie = reply.value();
        if (reply.isError() && !std::exchange(m_said, true))
            logLine("the desktop does not keep the screen on: " + reply.error().message().toStdString());
        if (!m_inhibited) release();
    });
}

void IdleInhibitor::release() {
    const auto cookie = std::exchange(m_cookie, std::nullopt);
    if (!cookie) return;
    auto release = call("UnInhibit");
    release << *cookie;
    QDBusConnection::sessionBus().send(release);
}

}  // namespace torv
