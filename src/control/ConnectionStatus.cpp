#include "control/ConnectionStatus.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/Platform.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds lookInterval{500};
constexpr std::chrono::seconds silence{3};
constexpr int looksUntilAdvice = 20;  // ten seconds

}  // namespace

ConnectionStatus::ConnectionStatus(std::shared_ptr<iTorvFeeder> feeder) : m_feeder(std::move(feeder)) {
    m_timer = Platform::current().runLoop().scheduleTimer(lookInterval, true, [this](Timer&) { look(); });
}

ConnectionStatus::~ConnectionStatus() {
    m_timer->invalidate();
}

QString ConnectionStatus::text() const {
    if (m_connected) return m_silent ? QStringLiteral("No new values") : QStringLiteral("Connected");
    return m_wasConnected ? QStringLiteral("Connection lost") : QStringLiteral("Looking for the module");
}

QString ConnectionStatus::hint() const {
    if (m_connected && m_silent) return QStringLiteral("The module is silent. Is the ignition on?");
    if (m_connected || !m_looked) return {};
    const auto place = QString::fromStdString("at " + placeOfEndpoint(m_feeder->driver().endpoint()));
    if (m_looksInVain < looksUntilAdvice) return place;
    return place + QStringLiteral(". Is the ignition on, and this device in the module's Wi-Fi?");
}

void ConnectionStatus::look() {
    const auto& driver = m_feeder->driver();
    const bool connected = driver.connected();
    const auto last = driver.lastBytes();
    const bool silent = last && Platform::current().runLoop().now() - *last > silence;
    m_looksInVain = connected ? 0 : std::min(m_looksInVain + 1, looksUntilAdvice + 1);
    const bool advice = m_looksInVain == looksUntilAdvice;
    const bool silentIsNew = std::exchange(m_silent, silent) != silent;
    if (std::exchange(m_looked, true) && connected == m_connected && !advice && !silentIsNew) return;
    // A screen that nobody touches may go dark only when there is nothing to see.
    if (connected != m_connected) Platform::current().setIdleTimerDisabled(connected);
    m_connected = connected;
    m_wasConnected = m_wasConnected || connected;
    emit changed();
}

}  // namespace torv

#include "moc_ConnectionStatus.cpp"
