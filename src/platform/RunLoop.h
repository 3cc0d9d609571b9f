#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/Timer.h"

namespace torv {

/// The main thread's events and timers.
class RunLoop {
public:
    using Clock = std::chrono::steady_clock;

    RunLoop() = default;
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;
    virtual ~RunLoop() = default;

    /// Any thread; the handler runs on the main thread. A timer that nobody holds still fires.
    virtual std::shared_ptr<Timer> scheduleTimer(std::chrono::milliseconds interval, bool repeats,
                                                 Timer::Handler handler) = 0;
    /// Hands work to the main thread and does not wait. Any thread; keeps the order of each caller.
    virtual void performOnMainThread(std::function<void()> work) = 0;
    /// Waits until at least one event or timer has been handled. False once the application is
    /// quitting, then at once and without handling anything. Main thread; may nest.
    [[nodiscard]] virtual bool runOnce() = 0;
    /// Ends every turn, nested ones too, and then the program with this code. Any thread.
    virtual void quit(int code) = 0;
    void quit() { quit(0); }
    /// These three: any thread. Once it is quitting, blocking exchanges fail at once, which says nothing of
    /// the module.
    [[nodiscard]] virtual bool isQuitting() const = 0;
    [[nodiscard]] virtual Clock::time_point now() const = 0;
    [[nodiscard]] virtual bool isMainThread() const = 0;
    /// How long the machine has been suspended so far: `now` and the timers leave that out. Any thread.
    [[nodiscard]] virtual Clock::duration suspended() const = 0;
};

}  // namespace torv
