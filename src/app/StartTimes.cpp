#include "app/StartTimes.h"

#include <string>
#include <utility>

#include "platform/Log.h"
#include "screens/TableViewController.h"

namespace torv {

StartTimes::StartTimes(Clock::time_point begin, QQuickWindow& window, const NavigationController& navigation,
                       std::shared_ptr<iTorvFeeder> feeder)
    : m_begin(begin), m_window(window), m_navigation(navigation), m_feeder(std::move(feeder)) {
    // The signal may come from a thread that draws; this object lives on the main one.
    connect(&window, &QQuickWindow::frameSwapped, this, &StartTimes::framePainted);
}

void StartTimes::framePainted() {
    if (!m_painted) write("first frame");
    m_painted = true;
    auto values = shownValues();
    if (!m_feeder->driver().connected()) {
        m_unconnected = std::move(values);
    } else if (values != m_unconnected) {
        write("first value");
        m_window.disconnect(this);
    }
}

QStringList StartTimes::shownValues() const {
    QStringList values;
    auto* table = qobject_cast<TableViewController*>(m_navigation.topViewController());
    if (!table) return values;
    for (int section = 0; section < table->numberOfSections(); ++section) {
        for (int row = 0; row < table->numberOfRowsInSection(section); ++row) {
            const auto* cell = table->cellAt({section, row});
            if (cell && !cell->detailText().isEmpty()) values.push_back(cell->detailText());
        }
    }
    return values;
}

void StartTimes::write(const char* what) const {
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_begin);
    logLine(std::string{what} + " after " + std::to_string(time.count()) + " ms");
}

}  // namespace torv
