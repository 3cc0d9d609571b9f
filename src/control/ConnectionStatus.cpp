#include "control/ConnectionStatus.h"

#include <chrono>
#include <utility>

#include "platform/Platform.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds lookInterval{500};

}  // namespace

ConnectionStatus::ConnectionStatus(std::shared_ptr<iTorvFeeder> feeder) : m_feeder(std::move(feeder)) {
    m_timer = Platform::current().runLoop().scheduleTimer(lookInterval, true, [this](Timer&) { look(); });
}

ConnectionStatus::~ConnectionStatus() {
    m_timer->invalidate();
}

QString ConnectionStatus::text() const {
    if (m_connected) return QStringLiteral("Connected");
    return m_wasConnected ? QStringLiteral("Connection lost") : QStringLiteral("Looking for the module");
}

void ConnectionStatus::look() {
    const bool connected = m_feeder->driver().connected();
    if (std::exchange(m_looked, true) && connected == m_connected) return;
    m_connected = connected;
    m_wasConnected = m_wasConnected || connected;
    emit changed();
}

}  // namespace torv
