#include "platform/real/QtRunLoop.h"

#include <sys/eventfd.h>
#include <time.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QThread>
#include <QTimerEvent>

#include <cstdint>
#include <utility>

namespace torv {

class QtRunLoop::LoopTimer final : public Timer, public std::enable_shared_from_this<LoopTimer> {
public:
    LoopTimer(QtRunLoop& loop, std::chrono::milliseconds interval, bool repeats, Handler handler)
        : m_loop(loop),
          m_alive(loop.m_alive),
          m_interval(interval),
          m_repeats(repeats),
          m_handler(std::move(handler)) {}

    [[nodiscard]] std::chrono::milliseconds interval() const { return m_interval; }
    [[nodiscard]] bool repeats() const { return m_repeats; }
    void fire() { m_handler(*this); }

    int identifier = 0;  // main thread; 0 while it does not run

private:
    void stopped() override {
        if (!*m_alive) return;
        if (m_loop.isMainThread()) {
            m_loop.end(*this);
        } else {
            m_loop.performOnMainThread([timer = shared_from_this()] { timer->m_loop.end(*timer); });
        }
    }

    QtRunLoop& m_loop;
    const std::shared_ptr<std::atomic<bool>> m_alive;
    const std::chrono::milliseconds m_interval;
    const bool m_repeats;
    const Handler m_handler;
};

QtRunLoop::QtRunLoop()
    : m_wakeup(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)), m_wakeupNotifier(m_wakeup, QSocketNotifier::Read) {
    QObject::connect(&m_wakeupNotifier, &QSocketNotifier::activated, this, [this] { runWork(); });
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
                     [this] { m_quitting = true; });
}

QtRunLoop::~QtRunLoop() {
    *m_alive = false;
    m_wakeupNotifier.setEnabled(false);
    // Handlers and work may own all the rest of the program, threads included, which may hand over work and
    // schedule timers until they have ended. So they go while this loop can still take both, and nothing of
    // the lists is touched while what they held goes.
    while (true) {
        const auto timers = std::exchange(m_timers, {});
        const auto work = takeWork();
        if (timers.empty() && work.empty()) break;
    }
    ::close(m_wakeup);
}

std::shared_ptr<Timer> QtRunLoop::scheduleTimer(std::chrono::milliseconds interval, bool repeats,
                                                Timer::Handler handler) {
    auto timer = std::make_shared<LoopTimer>(*this, interval, repeats, std::move(handler));
    if (isMainThread()) {
        begin(timer);
    } else {
        performOnMainThread([this, timer] { begin(timer); });
    }
    return timer;
}

void QtRunLoop::begin(const std::shared_ptr<LoopTimer>& timer) {
    if (!timer->isValid()) return;
    timer->identifier = startTimer(timer->interval(), Qt::PreciseTimer);
    m_timers.emplace(timer->identifier, timer);
}

void QtRunLoop::end(LoopTimer& timer) {
    if (timer.identifier == 0) return;
    killTimer(timer.identifier);
    m_timers.erase(std::exchange(timer.identifier, 0));
}

void QtRunLoop::timerEvent(QTimerEvent* event) {
    const auto found = m_timers.find(event->timerId());
    if (found == m_timers.end()) return;
    const auto timer = found->second;
    if (!timer->repeats()) end(*timer);
    if (timer->isValid()) timer->fire();
    if (!timer->repeats()) timer->invalidate();
}

std::deque<std::function<void()>> QtRunLoop::takeWork() {
    const std::scoped_lock lock{m_workMutex};
    return std::exchange(m_work, {});
}

void QtRunLoop::performOnMainThread(std::function<void()> work) {
    {
        const std::scoped_lock lock{m_workMutex};
        m_work.push_back(std::move(work));
    }
    wake();
}

void QtRunLoop::wake() const {
    const std::uint64_t one = 1;
    static_cast<void>(::write(m_wakeup, &one, sizeof one));  // fails only when a wake-up is pending anyway
}

/// One piece at a time: the loop may turn inside it, and has to find the others.
void QtRunLoop::runWork() {
    std::uint64_t count = 0;
    static_cast<void>(::read(m_wakeup, &count, sizeof count));
    std::function<void()> work;
    {
        const std::scoped_lock lock{m_workMutex};
        if (m_work.empty()) return;
        work = std::move(m_work.front());
        m_work.pop_front();
        if (!m_work.empty()) wake();
    }
    work();
}

bool QtRunLoop::runOnce() {
    if (m_quitting) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return !m_quitting;
}

void QtRunLoop::quit(int code) {
    m_quitting = true;
    // Wakes a nested turn, and comes to the application's own loop once it runs.
    performOnMainThread([code] { QCoreApplication::exit(code); });
}

bool QtRunLoop::isMainThread() const {
    return QThread::currentThread() == thread();
}

/// Two clocks differ by it that are read one after the other: what lies between the readings is no sleep.
RunLoop::Clock::duration QtRunLoop::suspended() const {
    const auto read = [](clockid_t clock) {
        timespec time{};
        clock_gettime(clock, &time);
        return Clock::duration{std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec}};
    };
    constexpr std::chrono::milliseconds shortestSleep{100};
    const auto before = read(CLOCK_MONOTONIC);
    const auto withSleep = read(CLOCK_BOOTTIME);
    const bool interrupted = read(CLOCK_MONOTONIC) - before > shortestSleep / 2;
    if (!interrupted && withSleep - before - m_suspended.load() > shortestSleep)
        m_suspended = withSleep - before;
    return m_suspended;
}

}  // namespace torv
