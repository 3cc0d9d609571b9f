#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <mutex>

#include "platform/RunLoop.h"

namespace torv {

/// The run loop on Qt's event loop. Made on the main thread, after the application object.
class QtRunLoop final : public QObject, public RunLoop {
public:
    QtRunLoop();
    /// Lets go of all timers and work, and of what they own, before anything of the loop goes.
    ~QtRunLoop() override;

    std::shared_ptr<Timer> scheduleTimer(std::chrono::milliseconds interval, bool repeats,
                                         Timer::Handler handler) override;
    void performOnMainThread(std::function<void()> work) override;
    [[nodiscard]] bool runOnce() override;
    using RunLoop::quit;
    void quit(int code) override;
    [[nodiscard]] bool isQuitting() const override { return m_quitting; }
    [[nodiscard]] Clock::time_point now() const override { return Clock::now(); }
    [[nodiscard]] bool isMainThread() const override;
    [[nodiscard]] Clock::duration suspended() const override;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    class LoopTimer;

    void begin(const std::shared_ptr<LoopTimer>& timer);
    void end(LoopTimer& timer);
    void runWork();
    [[nodiscard]] std::deque<std::function<void()>> takeWork();
    void wake() const;

    // Timers are events of this one object and no objects of their own: one that is stopped within its own
    // handler, with the loop turning inside, must not be deleted under that handler.
    std::map<int, std::shared_ptr<LoopTimer>> m_timers;
    std::shared_ptr<std::atomic<bool>> m_alive = std::make_shared<std::atomic<bool>>(true);
    std::atomic<bool> m_quitting{false};
    mutable std::atomic<Clock::duration> m_suspended{};

    // Work goes through a queue of our own: a thread sanitizer can't see the locks of Qt's.
    std::mutex m_workMutex;
    std::deque<std::function<void()>> m_work;
    const int m_wakeup;
    QSocketNotifier m_wakeupNotifier;
};

}  // namespace torv
