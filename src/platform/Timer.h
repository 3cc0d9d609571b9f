#pragma once

#include <atomic>
#include <functional>

namespace torv {

/// A timer that a run loop has scheduled. The handler runs on the run loop's thread.
///
/// `invalidate` may be called on any thread and does not wait: a handler that has begun goes on, and one
/// that has not begun will not run. A handler that takes a lock of its owner should look at `isValid`
/// once it has the lock, for the timer may have been stopped while it waited.
class Timer {
public:
    using Handler = std::function<void(Timer&)>;

    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    virtual ~Timer() = default;

    void invalidate() {
        if (m_valid.exchange(false)) stopped();
    }
    [[nodiscard]] bool isValid() const { return m_valid.load(); }

protected:
    /// The loop may forget the timer; any thread.
    virtual void stopped() = 0;

private:
    std::atomic<bool> m_valid{true};
};

}  // namespace torv
