#pragma once

#include <QObject>
#include <QQuickWindow>
#include <chrono>

#include "screens/NavigationController.h"

namespace torv {

/// Writes to the log how long the start took: one line with the first frame of the window, and one with the
/// first frame in which a row of the shown table has a value. For whoever looks into a slow start. Main
/// thread.
class StartTimes final : public QObject {
public:
    using Clock = std::chrono::steady_clock;

    /// Times count from `begin`. Neither window nor navigation is owned.
    StartTimes(Clock::time_point begin, QQuickWindow& window, const NavigationController& navigation);

private:
    void framePainted();
    [[nodiscard]] bool showsValue() const;
    void write(const char* what) const;

    const Clock::time_point m_begin;
    QQuickWindow& m_window;
    const NavigationController& m_navigation;
    bool m_painted = false;
};

}  // namespace torv
