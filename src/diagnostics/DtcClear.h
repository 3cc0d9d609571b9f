#pragma once

#include <functional>
#include <memory>

#include "session/iTorvFeeder.h"

namespace torv {

/// Asks the module to clear its trouble codes, waits five seconds, and looks at what it says.
///
///   State    leaves by
///   Idle     `begin`: Waiting, with one write
///   Waiting  5.0 s after the write: Idle, done with the result
///
/// It always waits the whole five seconds. If it is destroyed earlier, `done` is not called. Main thread; the
/// write blocks and the loop turns meanwhile.
class DtcClear final : public std::enable_shared_from_this<DtcClear> {
public:
    struct Result {
        /// The store says so. It may have said so since an earlier clear.
        bool cleared = false;
        /// The module took this very request, and has sent its result since.
        bool confirmed = false;
        /// It has sent one since the clear began.
        bool arrived = false;
    };

    DtcClear(std::shared_ptr<iTorvFeeder> feeder, std::function<void(Result)> done)
        : m_feeder(std::move(feeder)), m_done(std::move(done)) {}

    /// Does nothing while a clear is under way.
    void begin();
    [[nodiscard]] bool isActive() const { return m_active; }

    /// By what the module sent last; false as long as it has sent nothing.
    [[nodiscard]] static bool engineTurns(const iTorvFeeder& feeder);

private:
    void dtcClearTimeoutHandler();

    const std::shared_ptr<iTorvFeeder> m_feeder;
    const std::function<void(Result)> m_done;
    bool m_active = false;
    bool m_taken = false;
    RunLoop::Clock::time_point m_begun{};
    RunLoop::Clock::time_point m_written{};  // when the module has taken it, or all attempts were in vain
};

}  // namespace torv
