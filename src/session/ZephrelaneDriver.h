#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "link/AVStore.h"
#include "link/x2comEngine.h"
#include "platform/ByteStream.h"
#include "platform/Platform.h"
#include "session/ArrivalTimes.h"
#include "session/ConnectionOptions.h"
#include "session/Heartbeat.h"
#include "session/LinkMonitor.h"
#include "session/ReconnectChain.h"
#include "session/ZephrelaneDriverDelegate.h"

namespace torv {

/// Owns the one connection to the module: opens and reopens it, feeds the engine, runs its two timers and
/// the heartbeat, and offers a blocking write and a blocking request.
///
///   State    connected  firstAVSeen
///   Opening  false      false        a frame with whole AVs is decoded: HalfUp; every 3.0 s: reconnect
///   HalfUp   false      true         a data-available event: Up; every 3.0 s: reconnect
///   Up       true       true         stream error or end: Opening, with a reconnect at once
///
/// Main thread, except for `readData`, `handleMessage` and `handleAIDsUpdateCount`, which run on the serial
/// reading thread. Two locks: the exchange lock lets one call into the engine run at a time and guards the
/// two timers; the driver's lock guards the way out of frames and is held while the delegate hears of a
/// message. Order: exchange, then driver. Neither is held while the main loop turns, nor across the
/// delegate's calls on the main thread. The four timer notifications are posted under the exchange lock, so
/// that an ack and its timer can't both win; an observer of them starts no exchange.
class ZephrelaneDriver final : public x2comSink {
public:
    explicit ZephrelaneDriver(ConnectionOptions options = {});
    ~ZephrelaneDriver() override;

    /// The started driver, or null.
    [[nodiscard]] static ZephrelaneDriver* sharedDriver();

    /// Not owned. Set before `start`.
    [[nodiscard]] ZephrelaneDriverDelegate* delegate() const { return m_delegate; }
    void setDelegate(ZephrelaneDriverDelegate* delegate) { m_delegate = delegate; }

    /// Once. The blocking calls below are for the main thread; on any other they fail at once and change
    /// nothing.
    void start();
    /// Does nothing while connected. Otherwise closes and opens, and tries again every 3.0 s until there is a
    /// session.
    void reconnect() { m_chain.attemptNow(); }

    /// One attempt: true if the module acknowledged within 0.1 s. Turns the main loop meanwhile, so another
    /// exchange can begin inside this one; the inner run of the loop then sees the outcome of both. While
    /// the stream takes no bytes it waits, until the loop quits. From AID 220 up the first byte says how many
    /// are copied, itself included; with 0 the value written before is sent again.
    [[nodiscard]] bool writeValueForAID(const AV& value, std::int32_t aid);
    /// Up to 21 attempts with the last entry of the message.
    bool writeAV(const Message& message);
    /// One attempt: true if the module responded within 0.1 s. The value itself comes as a message.
    [[nodiscard]] bool requestValueForAID(std::int32_t aid);
    /// What the module last sent; zeros if nothing. Any thread.
    [[nodiscard]] AV readValueForAID(std::int32_t aid) const;

    /// True when the AID has arrived too long ago to be live, or never. Any thread.
    [[nodiscard]] bool isOldValueForAID(std::int32_t aid) const;
    /// The same for a value of the AID that came at this time.
    [[nodiscard]] bool isOldForAID(RunLoop::Clock::time_point then, std::int32_t aid) const;
    /// When the AID last arrived; nothing when it never has. Any thread.
    [[nodiscard]] std::optional<RunLoop::Clock::time_point> arrivalOfAID(std::int32_t aid) const {
        return m_arrivals.last(aid);
    }

    void readData(ByteStream& stream);
    x2comResult handleMessage();
    void handleAIDsUpdateCount(std::span<const std::uint8_t> aids);
    void connectionEstablished();

    /// How far the way to the module is open: by this attempt, or by the one before as long as nobody has
    /// answered this one. A module that serves another handset may go on between `open` and `closed`; of a
    /// session only `connected` tells. Main thread.
    [[nodiscard]] ByteStream::Reach reach() const;
    /// How many sessions there have been, the present one included. Main thread.
    [[nodiscard]] std::uint64_t sessionCount() const { return m_sessionCount; }
    /// When bytes last came, in this session or before. Main thread.
    [[nodiscard]] std::optional<RunLoop::Clock::time_point> lastBytes() const { return m_lastBytes; }
    /// Where the module was last looked for. Main thread.
    [[nodiscard]] const Endpoint& endpoint() const { return m_endpoint; }

    [[nodiscard]] const ConnectionOptions& options() const { return m_options; }
    /// What `getIPAddress` gave when the module was last looked for. Main thread.
    [[nodiscard]] const std::string& decidingAddress() const { return m_decidingAddress; }
    /// The dotted address of the interface that decides, or "error".
    [[nodiscard]] std::string getIPAddress() const;
    void openSockets();
    void closeSockets();

    [[nodiscard]] std::shared_ptr<ByteStream> readStream() const { return m_stream; }
    [[nodiscard]] std::shared_ptr<ByteStream> writeStream() const { return m_stream; }
    /// These two: any thread.
    [[nodiscard]] bool connected() const { return m_connected; }
    [[nodiscard]] bool firstAVSeen() const { return m_firstAVSeen; }
    /// Reconnects left before failures are reported.
    [[nodiscard]] std::int32_t counter() const { return m_chain.credit(); }

    /// Before `start`.
    void addMonitor(std::shared_ptr<LinkMonitor> monitor) { m_monitors.push_back(std::move(monitor)); }

    // x2comSink, called by the engine within `transmit`.
    void sendBytes(std::span<const std::uint8_t> frame) override;
    [[nodiscard]] bool canSend() override;

private:
    using ExchangeLock = std::unique_lock<std::mutex>;
    using RequestExchange = bool (*)(std::span<const std::uint8_t>);

    void streamEvent(ByteStream::Event event);
    void dataAvailable();
    void streamLost();
    [[nodiscard]] bool mayExchange(std::int32_t aid) const;
    bool runExchange(RequestExchange request, std::int32_t aid, std::atomic<bool>& done,
                     std::atomic<bool>& timedOut);
    void transmit();
    template <class... Parameters, class... Words>
    void tell(void (LinkMonitor::*word)(Parameters...), const Words&... words) const {
        for (const auto& monitor : m_monitors)
            (monitor.get()->*word)(words...);
    }

    void startX2comRespTimer();
    void stopX2comRespTimer();
    void startX2comAckTimer();
    void stopX2comAckTimer();
    void x2comRespTimeoutHandler(Timer& timer);
    void x2comAckTimeoutHandler(Timer& timer);

    Platform& m_platform;
    const ConnectionOptions m_options;
    ZephrelaneDriverDelegate* m_delegate = nullptr;
    std::vector<std::shared_ptr<LinkMonitor>> m_monitors;
    std::vector<std::uint8_t> m_sent;  // by the running `transmit`; main thread

    ArrivalTimes m_arrivals;
    std::uint64_t m_sessionCount = 0;
    std::optional<RunLoop::Clock::time_point> m_lastBytes;
    std::shared_ptr<ByteStream> m_stream;  // null while closed
    bool m_hadSession = false;             // this stream
    Endpoint m_endpoint;
    std::string m_decidingAddress = "error";
    ByteStream::Reach m_lastReach = ByteStream::Reach::noAnswer;  // of the attempt before this one
    ReconnectChain m_chain;
    Heartbeat m_heartbeat;

    std::mutex m_lock;
    std::atomic<bool> m_connected{false};
    std::atomic<bool> m_firstAVSeen{false};

    std::mutex m_exchangeMutex;
    ExchangeLock* m_transmitLock = nullptr;  // the one that the running `transmit` holds; main thread
    std::atomic<bool> m_writeDone{false};
    std::atomic<bool> m_writeTimedOut{false};
    std::atomic<bool> m_readDone{false};
    std::atomic<bool> m_readTimedOut{false};
    // Timers that nobody refers to any more may still run; they look here before they touch this object.
    std::shared_ptr<char> m_alive = std::make_shared<char>();
    std::shared_ptr<Timer> m_ackTimer;
    std::shared_ptr<Timer> m_respTimer;
    bool m_respTimerRunning = false;

    std::vector<NotificationCenter::Observation> m_observations;
    std::unique_ptr<WorkQueue> m_readingQueue;  // last: its thread ends before all else goes
};

}  // namespace torv
