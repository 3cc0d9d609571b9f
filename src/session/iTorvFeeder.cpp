#include "session/iTorvFeeder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "support/TextNumbers.h"

namespace torv {
namespace {

using namespace std::chrono_literals;

constexpr auto feedInterval = 1000ms;

/// The driver's AIDs have 32 bits; what does not fit is no AID there either.
std::int32_t driverAID(AID aid) {
    return aid >= 0 && aid <= std::numeric_limits<std::int32_t>::max() ? static_cast<std::int32_t>(aid) : -1;
}

}  // namespace

iTorvFeeder::iTorvFeeder(ConnectionOptions options) : m_driver(std::move(options)) {
    m_driver.setDelegate(this);
}

iTorvFeeder::~iTorvFeeder() {
    disableTimedFeedMode();
}

void iTorvFeeder::addReaderForKey(std::shared_ptr<iTorvReader> reader, const std::string& key) {
    if (!reader) return;
    const std::scoped_lock lock{m_mutex};
    auto& list = m_readers[key];
    auto longer = list ? *list : ReaderList{};
    if (std::find(longer.begin(), longer.end(), reader) != longer.end()) return;
    longer.push_back(std::move(reader));
    list = std::make_shared<const ReaderList>(std::move(longer));
}

void iTorvFeeder::removeAllReaders() {
    std::map<std::string, std::shared_ptr<const ReaderList>> gone;  // let go of without the lock
    const std::scoped_lock lock{m_mutex};
    gone.swap(m_readers);
}

void iTorvFeeder::addConnectionListener(const std::shared_ptr<iTorvConnectionListener>& listener) {
    if (listener) m_connectionListeners.push_back(listener);
}

void iTorvFeeder::start() {
    m_driver.start();
}

bool iTorvFeeder::setValueForAID(std::span<const std::uint8_t> bytes, AID aid) {
    if (driverAID(aid) < 0) return false;
    return m_driver.writeAV({{std::to_string(aid), AV::forAID(aid, bytes)}});
}

bool iTorvFeeder::requestValueForAID(AID aid) {
    return m_driver.requestValueForAID(driverAID(aid));
}

AV iTorvFeeder::valueForAID(AID aid) const {
    return m_driver.readValueForAID(driverAID(aid));
}

bool iTorvFeeder::isOldValueForAID(AID aid) const {
    return m_driver.isOldValueForAID(driverAID(aid));
}

bool iTorvFeeder::isOldForAID(RunLoop::Clock::time_point then, AID aid) const {
    return m_driver.isOldForAID(then, driverAID(aid));
}

std::optional<RunLoop::Clock::time_point> iTorvFeeder::arrivalOfAID(AID aid) const {
    return m_driver.arrivalOfAID(driverAID(aid));
}

std::optional<WallTime> iTorvFeeder::wallArrivalOfAID(AID aid) const {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_wallArrivals.find(std::to_string(aid));
    return found == m_wallArrivals.end() ? std::nullopt : std::optional{found->second};
}

void iTorvFeeder::enableTimedFeedMode() {
    const std::scoped_lock lock{m_mutex};
    m_timedFeedMode = true;
    if (m_manualFeedTimer) m_manualFeedTimer->invalidate();
    m_manualFeedTimer =
        Platform::current().runLoop().scheduleTimer(feedInterval, true, [this](Timer&) { enableFeed(); });
}

void iTorvFeeder::disableTimedFeedMode() {
    const std::scoped_lock lock{m_mutex};
    m_timedFeedMode = false;
    if (const auto timer = std::exchange(m_manualFeedTimer, nullptr)) timer->invalidate();
}

void iTorvFeeder::enableFeed() {
    const std::scoped_lock lock{m_mutex};
    m_timedFeedMode = false;
}

bool iTorvFeeder::passesGate() {
    if (!m_feeding) return false;
    const std::scoped_lock lock{m_mutex};
    if (m_timedFeedMode) return false;
    if (m_manualFeedTimer) m_timedFeedMode = true;
    return true;
}

std::shared_ptr<const iTorvFeeder::ReaderList> iTorvFeeder::readersForKey(const std::string& key) {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_readers.find(key);
    return found == m_readers.end() ? nullptr : found->second;
}

void iTorvFeeder::setMessageSink(MessageSink sink) {
    auto shared = sink ? std::make_shared<const MessageSink>(std::move(sink)) : nullptr;
    const std::scoped_lock lock{m_mutex};
    m_messageSink.swap(shared);
}

void iTorvFeeder::tellSink(const Message& message) {
    std::unique_lock lock{m_mutex};
    const auto sink = m_messageSink;
    lock.unlock();
    if (sink) (*sink)(message);
}

void iTorvFeeder::noteWallTime(const Message& message) {
    const auto now = wallNow();
    const std::scoped_lock lock{m_mutex};
    for (const auto& entry : message)
        m_wallArrivals.insert_or_assign(entry.key, now);
}

void iTorvFeeder::zephrelaneDriverDidReceiveMessage(ZephrelaneDriver&, Message& message) {
    noteWallTime(message);
    tellSink(message);
    if (!passesGate()) return;
    for (auto& [key, value] : message) {
        const auto readers = readersForKey(key);
        if (!readers) continue;
        const AID aid = intValue(key);
        for (const auto& reader : *readers) {
            // Two looks at the priority: a reader that falls from 1 to 0 within its call is fed again.
            if (reader->priority() == 1) reader->readAid(value.bytes(), aid);
            if (reader->priority() == 0) reader->readAid(value.bytes(), aid);
        }
    }
}

void iTorvFeeder::tellListeners(Word word) {
    std::erase_if(m_connectionListeners, [](const auto& listener) { return listener.expired(); });
    for (const auto& listed : std::vector{m_connectionListeners}) {
        if (const auto listener = listed.lock()) (*listener.*word)(*this);
    }
}

void iTorvFeeder::zephrelaneDriverDidEstablishConnection(ZephrelaneDriver&) {
    tellListeners(&iTorvConnectionListener::iTorvFeederDidEstablishConnection);
}

void iTorvFeeder::zephrelaneDriverDidFailToConnect(ZephrelaneDriver&) {
    tellListeners(&iTorvConnectionListener::iTorvFeederDidFailToConnect);
}

}  // namespace torv
