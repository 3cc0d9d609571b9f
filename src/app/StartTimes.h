#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QStringList>
#include <chrono>
#include <memory>

#include "screens/NavigationController.h"
#include "session/iTorvFeeder.h"

namespace torv {

/// Writes to the log how long the start took: one line with the first frame of the window, and one with the
/// first frame in which the shown table has a value of the module's. For whoever looks into a slow start.
///
/// Rows show the store's zeros while there is no connection; those are no value. Main thread.
class StartTimes final : public QObject {
public:
    using Clock = std::chrono::steady_clock;

    /// Times count from `begin`. Neither window nor navigation is owned.
    StartTimes(Clock::time_point begin, QQuickWindow& window, const NavigationController& navigation,
               std::shared_ptr<iTorvFeeder> feeder);

private:
    void framePainted();
    [[nodiscard]] QStringList shownValues() const;
    void write(const char* what) const;

    const Clock::time_point m_begin;
    QQuickWindow& m_window;
    const NavigationController& m_navigation;
    const std::shared_ptr<iTorvFeeder> m_feeder;
    bool m_painted = false;
    QStringList m_unconnected;  // what was shown before there was a connection
};

}  // namespace torv
