#include "app/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/Log.h"
#include "platform/real/SessionBus.h"

namespace torv {
namespace {

using namespace std::chrono_literals;

const auto name = QStringLiteral("com.torvwerks.iTorv");
const auto place = QStringLiteral("/com/torvwerks/iTorv");
const auto activate = QStringLiteral("Activate");
const auto end = QStringLiteral("End");
constexpr int answerTime = 5'000;  // milliseconds
constexpr int userTime = 120'000;  // the user may be asked
constexpr auto endingTime = 10s;   // for the first one to let go of the link and the store
constexpr auto lookAgain = 50ms;

/// With which a desktop that lets no window raise itself lets this one.
QByteArray activationToken() {
    const auto token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

}  // namespace

SingleInstance::SingleInstance(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) return;
    m_lock = std::make_unique<QLockFile>(QString::fromStdString((folder / "itorv.lock").string()));
    m_lock->setStaleLockTime(0ms);  // only the end of its process frees it
}

SingleInstance::~SingleInstance() {
    if (!m_onBus) return;
    QDBusConnection::sessionBus().unregisterObject(place);
    QDBusConnection::sessionBus().unregisterService(name);
}

bool SingleInstance::ownName() {
    auto bus = QDBusConnection::sessionBus();
    const auto reply = bus.interface()->registerService(name, QDBusConnectionInterface::DontQueueService,
                                                        QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered) return false;
    m_onBus = bus.registerVirtualObject(place, this);
    return true;
}

SingleInstance::Claim SingleInstance::claim(bool withFile, std::string& why) {
    const bool hasBus = hasSessionBus();
    if (hasBus && !ownName()) {
        const auto claim = askFirst(withFile, why);
        if (claim != Claim::mine) return claim;
    }
    if (!m_lock || m_lock->tryLock(hasBus ? endingTime : 0ms)) return Claim::mine;
    if (m_lock->error() != QLockFile::LockFailedError) return Claim::mine;  // a folder that can't be written
    why = "itorv runs already; end it first, or use --new-instance";
    return Claim::refused;
}

SingleInstance::Claim SingleInstance::askFirst(bool withFile, std::string& why) {
    auto bus = QDBusConnection::sessionBus();
    auto call = QDBusMessage::createMethodCall(name, place, name, withFile ? end : activate);
    if (!withFile) call << activationToken();
    const auto reply = bus.call(call, QDBus::Block, withFile ? userTime : answerTime);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        why = "itorv runs already, and does not answer; end it first, or use --new-instance";
        return Claim::refused;
    }
    if (!withFile) return Claim::cameForward;
    why = "itorv runs already and goes on; open the file again later";
    if (!reply.arguments().value(0).toBool()) return Claim::refused;
    const auto limit = std::chrono::steady_clock::now() + endingTime;
    while (!ownName()) {
        if (std::chrono::steady_clock::now() > limit) return Claim::refused;
        std::this_thread::sleep_for(lookAgain);
    }
    return Claim::mine;
}

bool SingleInstance::handleMessage(const QDBusMessage& message, const QDBusConnection& bus) {
    if (message.member() == activate) {
        if (m_handlers.comeForward) m_handlers.comeForward(message.arguments().value(0).toByteArray());
        return bus.send(message.createReply());
    }
    if (message.member() != end) return false;
    logLine("another start wants this one to end, and to import a file");
    if (!m_handlers.mayEnd) return bus.send(message.createReply(false));
    m_handlers.mayEnd([this, message, bus](bool yes) {
        // Nobody would take over from this one where the other start has ended meanwhile.
        if (yes && !bus.interface()->isServiceRegistered(message.service()))
            return logLine("the other start has ended meanwhile, and this one goes on");
        bus.send(message.createReply(yes));
        if (yes) m_handlers.end();
    });
    return true;
}

}  // namespace torv
