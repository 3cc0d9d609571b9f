#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QStringList>
#include <chrono>
#include <functional>
#include <memory>

#include "session/iTorvFeeder.h"

namespace torv {

/// Writes to the log how long the start took: one line with the first frame of the window, and one with the
/// first frame in which the shown page has a value of the module's. For whoever looks into a slow start.
///
/// What is shown while there is no connection is no value. Main thread.
class StartTimes final : public QObject {
public:
    using Clock = std::chrono::steady_clock;

    /// Times count from `begin`. The window is not owned.
    StartTimes(Clock::time_point begin, QQuickWindow& window, std::shared_ptr<iTorvFeeder> feeder,
               std::function<QStringList()> shownValues);

private:
    void framePainted();
    void write(const char* what) const;

    const Clock::time_point m_begin;
    QQuickWindow& m_window;
    const std::shared_ptr<iTorvFeeder> m_feeder;
    const std::function<QStringList()> m_shownValues;
    bool m_painted = false;
    QStringList m_unconnected;  // what was shown before there was a connection
};

}  // namespace torv
