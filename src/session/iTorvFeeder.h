#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "session/ZephrelaneDriver.h"
#include "session/iTorvConnectionListener.h"
#include "session/iTorvReader.h"
#include "support/TimeTexts.h"

namespace torv {

/// Stands between the driver and everything above it: passes each message to the readers of its AIDs, can
/// throttle or stop that flow, and tells connection listeners of the session's state.
///
///   Mode               feeding  gate    timer
///   Off                false    any     any      nothing is delivered; the store goes on filling
///   Full               true     open    none     every message is delivered
///   Timed, gate open   true     open    running  the next message is delivered and closes the gate
///   Timed, gate closed true     closed  running  messages are dropped until the next tick, every 1.0 s
///
/// Main thread, except for the delivery, which runs on the reading thread with the driver's lock held and no
/// lock of the feeder.
class iTorvFeeder final : public ZephrelaneDriverDelegate {
public:
    explicit iTorvFeeder(ConnectionOptions options = {});
    ~iTorvFeeder() override;

    /// The key is the AID as a decimal text. A reader stands in a key's list once. The reading thread may be
    /// the last to let go of it.
    void addReaderForKey(std::shared_ptr<iTorvReader> reader, const std::string& key);
    /// A single reader can't be removed: a screen that leaves has the lists made anew.
    void removeAllReaders();
    /// A listener that is added twice is told twice. Listeners are not owned; one that has gone is dropped.
    void addConnectionListener(const std::shared_ptr<iTorvConnectionListener>& listener);
    void removeAllConnectionListeners() { m_connectionListeners.clear(); }

    /// Gets every message, whatever the feed mode and before the readers: on the reading thread, with the
    /// driver's lock held. Null for none; one that is being told may still hear the end of it.
    using MessageSink = std::function<void(const Message&)>;
    void setMessageSink(MessageSink sink);

    void start();
    /// Blocking, up to 21 attempts; true if the module acknowledged. Missing bytes count as 0.
    bool setValueForAID(std::span<const std::uint8_t> bytes, AID aid);
    /// Blocking, one attempt; true if the module responded.
    bool requestValueForAID(AID aid);
    /// The newest value in the store, whatever the feed mode. Any thread.
    [[nodiscard]] AV valueForAID(AID aid) const;

    /// True when the AID has arrived at the store too long ago to be taken for live, or never; whatever the
    /// feed mode. Any thread.
    [[nodiscard]] bool isOldValueForAID(AID aid) const;

    /// The same for a value that came at this time: after 3 seconds, or four times the AID's usual interval
    /// at the store if that is longer. Any thread.
    [[nodiscard]] bool isOldForAID(RunLoop::Clock::time_point then, AID aid) const;
    /// When the AID last arrived at the store; nothing when it never has. Any thread.
    [[nodiscard]] std::optional<RunLoop::Clock::time_point> arrivalOfAID(AID aid) const;
    /// The same by the clock on the wall as it stood then: an age can't tell it, for its clock stands still
    /// while the machine is suspended.
    [[nodiscard]] std::optional<WallTime> wallArrivalOfAID(AID aid) const;

    void enableTimedFeedMode();
    void disableTimedFeedMode();
    void enableFeed();
    [[nodiscard]] bool feeding() const { return m_feeding; }
    void setFeeding(bool feeding) { m_feeding = feeding; }

    [[nodiscard]] ZephrelaneDriver& driver() { return m_driver; }

    void zephrelaneDriverDidReceiveMessage(ZephrelaneDriver& driver, Message& message) override;
    void zephrelaneDriverDidEstablishConnection(ZephrelaneDriver& driver) override;
    void zephrelaneDriverDidFailToConnect(ZephrelaneDriver& driver) override;

private:
    using ReaderList = std::vector<std::shared_ptr<iTorvReader>>;

    using Word = void (iTorvConnectionListener::*)(iTorvFeeder&);

    void tellListeners(Word word);
    [[nodiscard]] bool passesGate();
    void noteWallTime(const Message& message);
    void tellSink(const Message& message);
    [[nodiscard]] std::shared_ptr<const ReaderList> readersForKey(const std::string& key);

    mutable std::mutex m_mutex;  // readers, sink, gate, timer and arrivals; never held across a call out
    std::map<std::string, WallTime> m_wallArrivals;  // by AID
    std::shared_ptr<const MessageSink> m_messageSink;
    std::map<std::string, std::shared_ptr<const ReaderList>> m_readers;
    bool m_timedFeedMode = false;  // the gate is closed
    std::shared_ptr<Timer> m_manualFeedTimer;

    std::atomic<bool> m_feeding{false};
    std::vector<std::weak_ptr<iTorvConnectionListener>> m_connectionListeners;
    ZephrelaneDriver m_driver;  // last: its thread ends before the readers go
};

}  // namespace torv
