#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace torv {

/// Turns SIGINT and SIGTERM into a call on the main thread, so that a program ends in order. Main thread; one
/// object at a time.
class QuitSignals final {
public:
    explicit QuitSignals(std::function<void()> quit);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

}  // namespace torv
