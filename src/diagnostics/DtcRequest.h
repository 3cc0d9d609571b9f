#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/NotificationCenter.h"
#include "session/iTorvFeeder.h"

namespace torv {

/// Asks the module to report its trouble codes: at the most three times, 5.0 s apart.
///
///   State    leaves by
///   Idle     `begin`: Waiting, with the first request
///   Waiting  both reports seen: Idle, done
///            5.0 s with a request left: Waiting, with another request
///            5.0 s with none left: Idle, done, whatever has come
///
/// Done does not mean that anything came: what the store holds may be older than the read
/// (`TroubleCodeReport`). If it is destroyed while it waits, `done` is not called. One report alone does not
/// end the wait.
///
/// Main thread. A request blocks as long as its write does, up to 21 attempts, and the loop turns meanwhile:
/// the reports may come, and whoever asked may be gone, before it returns. A report is announced on the
/// reading thread and handed to the main thread, which drops it if nobody waits any more. The timer is not
/// stopped when both reports are there; when it fires it finds the read over.
class DtcRequest final : public std::enable_shared_from_this<DtcRequest> {
public:
    using Clock = RunLoop::Clock;

    DtcRequest(std::shared_ptr<iTorvFeeder> feeder, std::function<void()> done)
        : m_feeder(std::move(feeder)), m_done(std::move(done)) {}

    /// Does nothing while a read is under way.
    void begin();
    [[nodiscard]] bool isActive() const { return m_dtcReadActive; }
    /// When the last read began. What came before is of an earlier one.
    [[nodiscard]] Clock::time_point begun() const { return m_begun; }

private:
    using Step = void (DtcRequest::*)();

    void sendDtcRequest();
    void dtc224Observer();
    void dtc225Observer();
    void dtcRequestTimeoutHandler();
    void loadReadDtcView();
    void end();
    /// The step on the main thread, if this very read is then still under way. Any thread.
    [[nodiscard]] std::function<void()> inThisRead(Step step);

    const std::shared_ptr<iTorvFeeder> m_feeder;
    const std::function<void()> m_done;
    std::int32_t m_dtcRetries = 0;  // requests left
    bool m_dtc224Seen = false;
    bool m_dtc225Seen = false;
    bool m_dtcTimedOut = false;  // the last wait ran out
    bool m_dtcReadActive = false;
    std::uint64_t m_read = 0;  // its number
    Clock::time_point m_begun{};
    NotificationCenter::Observation m_224;
    NotificationCenter::Observation m_225;
};

}  // namespace torv
