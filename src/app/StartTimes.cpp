#include "app/StartTimes.h"

#include <string>
#include <utility>

#include "platform/Log.h"

namespace torv {

StartTimes::StartTimes(Clock::time_point begin, QQuickWindow& window, std::shared_ptr<iTorvFeeder> feeder,
                       std::function<QStringList()> shownValues)
    : m_begin(begin), m_window(window), m_feeder(std::move(feeder)), m_shownValues(std::move(shownValues)) {
    // The signal may come from a thread that draws; this object lives on the main one.
    connect(&window, &QQuickWindow::frameSwapped, this, &StartTimes::framePainted);
}

void StartTimes::framePainted() {
    if (!m_painted) write("first frame");
    m_painted = true;
    auto values = m_shownValues();
    if (!m_feeder->driver().connected()) {
        m_unconnected = std::move(values);
    } else if (values != m_unconnected) {
        write("first value");
        m_window.disconnect(this);
    }
}

void StartTimes::write(const char* what) const {
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_begin);
    logLine(std::string{what} + " after " + std::to_string(time.count()) + " ms");
}

}  // namespace torv
