#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/RunLoop.h"

namespace torv {

/// Tries every 3.0 seconds to reach the module until a session is up, and never gives up.
///
///   State  entered by                 a tick of 3.0 s
///   Off    construction                -
///   Armed  `start`, any attempt       no session: an attempt, and Armed anew; a session: Off
///
/// Main thread. `credit` falls by one with each attempt and is not restored by a session that comes up, so
/// that a handset that has struggled once reports the next loss at once.
class ReconnectChain final {
public:
    /// `hasSession` ends the chain; `attempt` closes what is open and opens anew.
    ReconnectChain(RunLoop& loop, std::function<bool()> hasSession, std::function<void()> attempt);
    ~ReconnectChain();
    ReconnectChain(const ReconnectChain&) = delete;
    ReconnectChain& operator=(const ReconnectChain&) = delete;

    /// After the first opening, which does not count as an attempt.
    void start();
    /// At once; does nothing while there is a session.
    void attemptNow();
    /// Attempts left before failures are reported.
    [[nodiscard]] std::int32_t credit() const { return m_credit; }
    [[nodiscard]] bool reportsFailures() const { return m_credit < 0; }

private:
    static constexpr std::int32_t firstCredit = 6;
    static constexpr std::chrono::milliseconds interval{3000};

    void arm();

    RunLoop& m_loop;
    const std::function<bool()> m_hasSession;
    const std::function<void()> m_attempt;
    std::shared_ptr<Timer> m_timer;
    std::int32_t m_credit = 0;
};

}  // namespace torv
