#include "platform/real/DesktopPortal.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <limits>
#include <memory>
#include <utility>

#include "platform/Log.h"
#include "platform/real/SessionBus.h"

namespace torv {
namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto object = QStringLiteral("/org/freedesktop/portal/desktop");
constexpr unsigned int accepted = 0;

}  // namespace

bool DesktopPortal::isThere() {
    if (!hasSessionBus()) return false;
    const auto bus = QDBusConnection::sessionBus();
    if (bus.interface()->isServiceRegistered(service)) return true;
    const QDBusReply<QStringList> names = bus.interface()->activatableServiceNames();
    return names.isValid() && names.value().contains(service);
}

std::optional<bool> DesktopPortal::hasInterface(const char* interface) {
    constexpr int answerTime = 1'000;  // milliseconds
    auto call = method("org.freedesktop.DBus.Properties", "Get");
    call << QString::fromLatin1(interface) << QStringLiteral("version");
    const auto reply = QDBusConnection::sessionBus().call(call, QDBus::Block, answerTime);
    if (reply.type() == QDBusMessage::ReplyMessage) return true;
    const bool isLate = QDBusError{reply}.type() == QDBusError::NoReply;
    return isLate ? std::nullopt : std::optional{false};
}

QDBusMessage DesktopPortal::method(const char* interface, const char* name) {
    return QDBusMessage::createMethodCall(service, object, QString::fromLatin1(interface),
                                          QString::fromLatin1(name));
}

void DesktopPortal::ask(QDBusMessage call, QVariantMap options, Done done) {
    static int count = 0;
    const auto token = QStringLiteral("itorv%1_%2").arg(QCoreApplication::applicationPid()).arg(++count);
    options.insert(QStringLiteral("handle_token"), token);
    call << options;
    auto* const question =
        std::unique_ptr<DesktopPortal>(new DesktopPortal{token, std::move(done)}).release();  // ends itself
    question->setParent(QCoreApplication::instance());
    question->begin(call);
}

void DesktopPortal::begin(const QDBusMessage& call) {
    auto bus = QDBusConnection::sessionBus();
    // Listens before it asks: the answer may be quicker than the reply to the call.
    auto sender = bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    bus.connect(service, object + QStringLiteral("/request/%1/%2").arg(sender, m_token),
                QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"), this,
                SLOT(response(uint, QVariantMap)));
    auto* const watcher = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(call), this).release();
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* answered) {
        const QDBusPendingReply<QDBusObjectPath> reply = *answered;
        if (!reply.isError()) return;  // the answer itself comes when the user has given it
        logLine("the desktop's portal: " + reply.error().message().toStdString());
        end({});
    });
}

void DesktopPortal::response(unsigned int code, const QVariantMap& results) {
    constexpr unsigned int cancelled = 1;
    end({.asked = true,
         .cancelled = code == cancelled,
         .results = code == accepted ? std::optional{results} : std::nullopt});
}

void DesktopPortal::end(const Answer& answer) {
    deleteLater();
    if (const auto done = std::exchange(m_done, nullptr)) done(answer);
}

}  // namespace torv

#include "moc_DesktopPortal.cpp"
