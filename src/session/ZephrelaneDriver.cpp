#include "session/ZephrelaneDriver.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/NotificationNames.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

using namespace std::chrono_literals;

constexpr auto answerInterval = 100ms;
constexpr int writeAttempts = 21;
constexpr std::int32_t heartbeatAID = 9;
constexpr std::uint16_t modulePort = 2000;

bool isUsable(std::int32_t aid) {
    return aid >= 0 && aid <= 254;
}

ZephrelaneDriver*& startedDriver() {
    static ZephrelaneDriver* driver = nullptr;
    return driver;
}

}  // namespace

ZephrelaneDriver::ZephrelaneDriver(ConnectionOptions options)
    : m_platform(Platform::current()),
      m_options(std::move(options)),
      m_chain(
          m_platform.runLoop(), [this] { return m_connected.load(); },
          [this] {
              closeSockets();
              openSockets();
          }),
      // The answer does not matter.
      m_heartbeat(m_platform.runLoop(), [this] { static_cast<void>(requestValueForAID(heartbeatAID)); }),
      m_readingQueue(m_platform.makeWorkQueue("x2com reading")) {}

ZephrelaneDriver::~ZephrelaneDriver() {
    closeSockets();
    m_readingQueue.reset();
    for (const auto& timer : {m_ackTimer, m_respTimer}) {
        if (timer) timer->invalidate();
    }
    if (sharedDriver() == this) {
        startedDriver() = nullptr;
        x2comSetSink(nullptr);
    }
}

ZephrelaneDriver* ZephrelaneDriver::sharedDriver() {
    return startedDriver();
}

void ZephrelaneDriver::start() {
    openSockets();
    x2comReset();
    startedDriver() = this;
    x2comSetSink(this);
    m_chain.start();
    auto& center = m_platform.notificationCenter();
    m_observations.push_back(
        center.addObserver(x2comStartRespTimerNotification, [this] { startX2comRespTimer(); }));
    m_observations.push_back(
        center.addObserver(x2comStopRespTimerNotification, [this] { stopX2comRespTimer(); }));
    m_observations.push_back(
        center.addObserver(x2comStartAckTimerNotification, [this] { startX2comAckTimer(); }));
    m_observations.push_back(
        center.addObserver(x2comStopAckTimerNotification, [this] { stopX2comAckTimer(); }));
}

std::string ZephrelaneDriver::getIPAddress() const {
    std::string found = "error";
    const auto addresses = m_platform.networkInterfaces().addresses();
    if (!addresses) return found;
    for (const auto& address : *addresses) {
        if (address.interface == m_options.interface) found = address.ipv4;
    }
    return found;
}

void ZephrelaneDriver::openSockets() {
    m_decidingAddress = getIPAddress();
    const bool selfAssigned = m_decidingAddress.starts_with("169");
    m_endpoint = m_options.module.value_or(Endpoint{selfAssigned ? "169.254.1.1" : "1.2.3.4", modulePort});
    m_hadSession = false;
    tell(&LinkMonitor::attempted, m_endpoint);
    m_stream = m_platform.streams().streamToHost(m_endpoint);
    if (m_stream) m_stream->setClient([this](ByteStream::Event event) { streamEvent(event); });
    const bool opened = m_stream && m_stream->open();
    if ((!opened || m_chain.reportsFailures()) && m_delegate)
        m_delegate->zephrelaneDriverDidFailToConnect(*this);
}

void ZephrelaneDriver::closeSockets() {
    if (!m_stream) return;
    m_lastReach = m_stream->reach();
    std::exchange(m_stream, nullptr)->close();
    tell(&LinkMonitor::connectionEnded, m_endpoint, m_lastReach, m_hadSession);
}

ByteStream::Reach ZephrelaneDriver::reach() const {
    const auto now = m_stream ? m_stream->reach() : ByteStream::Reach::noAnswer;
    return now == ByteStream::Reach::noAnswer ? m_lastReach : now;
}

void ZephrelaneDriver::streamEvent(ByteStream::Event event) {
    if (event == ByteStream::Event::bytesAvailable) {
        dataAvailable();
    } else {
        streamLost();
    }
}

void ZephrelaneDriver::dataAvailable() {
    m_heartbeat.bytesCame();
    m_lastBytes = m_platform.runLoop().now();
    // Looked at before the chunk is handed over: the session comes up with the event after the one whose
    // chunk brought the first AV, however quick the reading thread is.
    const bool cameUp = m_firstAVSeen && !m_connected.load();
    m_readingQueue->post([this, stream = m_stream] { readData(*stream); });
    if (!cameUp) return;
    m_connected = true;
    m_hadSession = true;
    ++m_sessionCount;
    tell(&LinkMonitor::sessionCameUp);
    connectionEstablished();
}

void ZephrelaneDriver::streamLost() {
    if (!m_connected) return;  // the chain is at work already
    {
        const std::scoped_lock lock{m_lock};
        m_connected = false;
        m_firstAVSeen = false;
    }
    m_arrivals.endSession();
    reconnect();
}

void ZephrelaneDriver::connectionEstablished() {
    if (m_delegate) m_delegate->zephrelaneDriverDidEstablishConnection(*this);
}

void ZephrelaneDriver::readData(ByteStream& stream) {
    std::array<std::uint8_t, x2comFrameSize> chunk{};
    const auto count = stream.read(chunk);
    if (count > 0) {
        x2comPushChunk(chunk.data(), static_cast<std::uint8_t>(count));
        const auto result = handleMessage();
        tell(&LinkMonitor::chunkReceived,
             std::span<const std::uint8_t>{chunk}.first(static_cast<std::size_t>(count)), result);
    }
    stream.rearm();
}

x2comResult ZephrelaneDriver::handleMessage() {
    x2comAIDList list;
    x2comResult result = x2comRxIdle;
    {
        const std::scoped_lock lock{m_exchangeMutex};
        result = x2comReceive(list);
        if (result == x2comRxAckDone) m_writeDone = true;
        if (result == x2comRxRespDone) m_readDone = true;
    }
    if (result == x2comFrameComplete || result == x2comRxRespDone) {
        handleAIDsUpdateCount({list.aids.data(), list.count});
        m_firstAVSeen = true;
    }
    return result;
}

void ZephrelaneDriver::handleAIDsUpdateCount(std::span<const std::uint8_t> aids) {
    const std::scoped_lock lock{m_lock};
    Message message;
    message.reserve(aids.size());
    const auto now = m_platform.runLoop().now();
    for (const auto aid : aids) {
        m_arrivals.record(aid, now);
        auto key = std::to_string(aid);
        {
            const std::scoped_lock storeLock{avStoreMutex()};
            const auto size = slotSize(aid);
            const AV value{{x2comReceiveSlot(aid), size}, size};
            const auto same = std::find_if(message.begin(), message.end(),
                                           [&](const MessageEntry& e) { return e.key == key; });
            if (same != message.end()) {
                same->value = value;
            } else {
                message.push_back({std::move(key), value});
            }
        }
        if (aid == 225) m_platform.notificationCenter().postNotificationName(dtc225Received);
        if (aid == 224) m_platform.notificationCenter().postNotificationName(dtc224Received);
    }
    if (m_delegate) m_delegate->zephrelaneDriverDidReceiveMessage(*this, message);
}

bool ZephrelaneDriver::mayExchange(std::int32_t aid) const {
    return isUsable(aid) && m_platform.runLoop().isMainThread();
}

bool ZephrelaneDriver::writeValueForAID(const AV& value, std::int32_t aid) {
    if (!mayExchange(aid)) return false;
    {
        const std::scoped_lock lock{avStoreMutex()};
        const auto bytes = value.bytes();
        const auto stated = aid <= lastShortAID ? shortSlotSize : std::size_t{bytes[0]};
        const auto count = std::min({stated, slotSize(aid), bytes.size()});
        std::copy_n(bytes.begin(), count, x2comSendSlot(static_cast<std::uint8_t>(aid)));
    }
    return runExchange(&x2comRequestWrite, aid, m_writeDone, m_writeTimedOut);
}

bool ZephrelaneDriver::writeAV(const Message& message) {
    if (message.empty()) return false;
    const auto aid = intValue(message.back().key);
    for (int attempt = 0; attempt < writeAttempts; ++attempt) {
        if (writeValueForAID(message.back().value, aid)) return true;
    }
    return false;
}

bool ZephrelaneDriver::requestValueForAID(std::int32_t aid) {
    if (!mayExchange(aid)) return false;
    return runExchange(&x2comRequestRead, aid, m_readDone, m_readTimedOut);
}

bool ZephrelaneDriver::runExchange(RequestExchange request, std::int32_t aid, std::atomic<bool>& done,
                                   std::atomic<bool>& timedOut) {
    auto& loop = m_platform.runLoop();
    const std::array<std::uint8_t, 1> aids{static_cast<std::uint8_t>(aid)};
    const auto accepted = [&] {
        const std::scoped_lock lock{m_exchangeMutex};
        return request(aids);
    };
    const auto begun = loop.now();
    done = timedOut = false;
    while (!accepted()) {
        if (!loop.runOnce()) break;
        transmit();
    }
    while (true) {
        transmit();
        if (done || timedOut) break;
        if (!loop.runOnce()) break;
    }
    const bool answered = done;
    if (!answered && loop.isQuitting()) return false;  // which says nothing of the module
    tell(&LinkMonitor::exchangeEnded,
         LinkMonitor::Exchange{&done == &m_writeDone, aid, loop.now() - begun, answered});
    return answered;
}

AV ZephrelaneDriver::readValueForAID(std::int32_t aid) const {
    if (!isUsable(aid)) return {};
    const std::scoped_lock lock{avStoreMutex()};
    const auto size = slotSize(aid);
    return {{x2comReceiveSlot(static_cast<std::uint8_t>(aid)), size}, size};
}

bool ZephrelaneDriver::isOldValueForAID(std::int32_t aid) const {
    return m_arrivals.isOld(aid, m_platform.runLoop().now());
}

bool ZephrelaneDriver::isOldForAID(RunLoop::Clock::time_point then, std::int32_t aid) const {
    return m_arrivals.isOld(then, aid, m_platform.runLoop().now());
}

void ZephrelaneDriver::transmit() {
    ExchangeLock lock{m_exchangeMutex};
    auto* const outer = std::exchange(m_transmitLock, &lock);
    m_sent.clear();
    const auto result = x2comTransmit();
    if (!m_sent.empty()) tell(&LinkMonitor::frameSent, std::span<const std::uint8_t>{m_sent}, result);
    m_transmitLock = outer;
}

void ZephrelaneDriver::sendBytes(std::span<const std::uint8_t> frame) {
    // A copy: while the loop turns below, an exchange inside this one builds its frames in the same place.
    x2comFrame bytes{};
    std::copy(frame.begin(), frame.end(), bytes.begin());
    const auto written = [&] {
        const std::scoped_lock lock{m_lock};
        if (!m_connected || !m_stream) return true;  // dropped; the exchange ends by its timer
        if (m_stream->write({bytes.data(), frame.size()}) < 0) return false;
        m_sent.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(frame.size()));
        return true;
    };
    while (!written()) {
        auto* const held = m_transmitLock;
        if (held) held->unlock();
        const bool goOn = m_platform.runLoop().runOnce();
        if (held) held->lock();
        m_transmitLock = held;
        if (!goOn) return;
    }
}

bool ZephrelaneDriver::canSend() {
    if (!m_stream) return false;
    // What is sent into a connection that is over is dropped, and the exchange ends by its timer. Were it to
    // wait, it would hold its caller until the module is back, and then write what nobody wants any more.
    const auto reach = m_stream->reach();
    const bool over = reach == ByteStream::Reach::refused || reach == ByteStream::Reach::unreachable ||
                      reach == ByteStream::Reach::closed;
    return over || m_stream->canAcceptBytes();
}

// The guard of the resp timer is cleared by the ack timer's stop and expiry too, and set by its start. So a
// resp timer can outlive its guard, and a second one can start beside it; a read then gives up a little
// early. Kept as it is.

void ZephrelaneDriver::startX2comRespTimer() {
    if (m_respTimerRunning) return;
    m_respTimer = m_platform.runLoop().scheduleTimer(answerInterval, false,
                                                     [this, alive = std::weak_ptr{m_alive}](Timer& timer) {
                                                         if (!alive.expired()) x2comRespTimeoutHandler(timer);
                                                     });
    m_respTimerRunning = true;
}

void ZephrelaneDriver::startX2comAckTimer() {
    m_ackTimer = m_platform.runLoop().scheduleTimer(answerInterval, false,
                                                    [this, alive = std::weak_ptr{m_alive}](Timer& timer) {
                                                        if (!alive.expired()) x2comAckTimeoutHandler(timer);
                                                    });
    if (m_respTimer) m_respTimerRunning = true;
}

void ZephrelaneDriver::stopX2comRespTimer() {
    const auto timer = std::exchange(m_respTimer, nullptr);
    if (!timer) return;
    timer->invalidate();
    m_respTimerRunning = false;
}

void ZephrelaneDriver::stopX2comAckTimer() {
    const auto timer = std::exchange(m_ackTimer, nullptr);
    if (!timer) return;
    timer->invalidate();
    m_respTimerRunning = false;
}

void ZephrelaneDriver::x2comRespTimeoutHandler(Timer& timer) {
    const std::scoped_lock lock{m_exchangeMutex};
    if (!timer.isValid()) return;  // the response came while this waited for the lock
    m_readTimedOut = true;
    x2comRespTimedOut();
    m_respTimer = nullptr;
    m_respTimerRunning = false;
}

void ZephrelaneDriver::x2comAckTimeoutHandler(Timer& timer) {
    const std::scoped_lock lock{m_exchangeMutex};
    if (!timer.isValid()) return;
    m_writeTimedOut = true;
    x2comAckTimedOut();
    m_ackTimer = nullptr;
    m_respTimerRunning = false;
}

}  // namespace torv
