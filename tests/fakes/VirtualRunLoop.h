#pragma once

#include <algorithm>
#include <deque>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "platform/RunLoop.h"

namespace fakes {

/// A run loop in virtual time: work first, in its order, and when there is none the clock jumps to the next
/// timer. Without either it says that the application quits, so that a test can't hang.
class VirtualRunLoop final : public torv::RunLoop {
public:
    using Milliseconds = std::chrono::milliseconds;

    std::shared_ptr<torv::Timer> scheduleTimer(Milliseconds interval, bool repeats,
                                               torv::Timer::Handler handler) override {
        auto timer = std::make_shared<VirtualTimer>(m_now + interval, interval, repeats, std::move(handler));
        m_timers.push_back(timer);
        return timer;
    }
    void performOnMainThread(std::function<void()> work) override { m_work.push_back(std::move(work)); }

    [[nodiscard]] bool runOnce() override {
        if (m_quitting) return false;
        if (!m_work.empty()) {
            const auto work = std::exchange(m_work.front(), nullptr);
            m_work.pop_front();
            work();
            return !m_quitting;
        }
        const auto next = nextTimer();
        if (!next) return false;
        m_now = std::max(m_now, next->due);
        fire(next);
        return !m_quitting;
    }
    using RunLoop::quit;
    void quit(int) override { m_quitting = true; }
    [[nodiscard]] bool isQuitting() const override { return m_quitting; }
    /// Another program, on the same store.
    void startAgain() {
        m_quitting = false;
        m_work.clear();
        m_timers.clear();
    }
    [[nodiscard]] Clock::time_point now() const override { return Clock::time_point{m_now}; }
    [[nodiscard]] bool isMainThread() const override { return true; }
    [[nodiscard]] Clock::duration suspended() const override { return m_suspended; }

    /// As a lid that is closed for so long.
    void suspend(Milliseconds time) { m_suspended += time; }
    [[nodiscard]] Milliseconds time() const { return m_now; }
    /// Runs all that is due within the time, and ends exactly at its end.
    void runFor(Milliseconds time) {
        const auto end = m_now + time;
        while (!m_quitting) {
            const auto next = nextTimer();
            if (m_work.empty() && (!next || next->due > end)) break;
            static_cast<void>(runOnce());
        }
        m_now = std::max(m_now, end);
    }
    /// Runs the work at hand, and no timer.
    void runWork() {
        while (!m_work.empty() && !m_quitting)
            static_cast<void>(runOnce());
    }

private:
    struct VirtualTimer final : torv::Timer {
        VirtualTimer(Milliseconds dueAt, Milliseconds every, bool again, Handler what)
            : due(dueAt), interval(every), repeats(again), handler(std::move(what)) {}
        void stopped() override {}

        Milliseconds due;
        Milliseconds interval;
        bool repeats;
        Handler handler;
    };

    std::shared_ptr<VirtualTimer> nextTimer() {
        std::erase_if(m_timers, [](const auto& timer) { return !timer->isValid(); });
        const auto next = std::min_element(m_timers.begin(), m_timers.end(),
                                           [](const auto& a, const auto& b) { return a->due < b->due; });
        return next == m_timers.end() ? nullptr : *next;
    }

    void fire(const std::shared_ptr<VirtualTimer>& timer) {
        if (timer->repeats) {
            timer->due += timer->interval;
        } else {
            std::erase(m_timers, timer);
        }
        timer->handler(*timer);
        if (!timer->repeats) timer->invalidate();
    }

    Milliseconds m_now{0};
    Milliseconds m_suspended{0};
    bool m_quitting = false;
    std::deque<std::function<void()>> m_work;
    std::vector<std::shared_ptr<VirtualTimer>> m_timers;
};

}  // namespace fakes
