#include "control/ConnectReplay.h"

#include <utility>

#include "control/TuningOverlay.h"
#include "platform/Log.h"
#include "platform/NotificationNames.h"
#include "platform/Platform.h"
#include "tuning/SettingsReplay.h"

namespace torv {
namespace {

/// The same for two reports that say the same.
std::string newsOf(const PassReport& report) {
    auto news = report.summary();
    for (const auto& row : report.rows)
        news += "\n" + row.name + " " + sentenceFor(row);
    return news;
}

}  // namespace

void ConnectReplay::run() {
    if (m_state == State::running) m_state = State::startingOver;
    if (m_state != State::idle) return;
    PassReport report;
    TuningOverlay overlay{[this] { cancel(); }};
    m_showProgress(overlay.hud());
    do {
        m_state = State::running;
        report = runPass(overlay);
        if (m_state == State::cancelled) {
            SettingsReplay::activateDefaultProfile();
            Platform::current().userDefaults().synchronize();
        }
    } while (m_state == State::startingOver || m_state == State::cancelled);
    m_showProgress(nullptr);
    if (m_state == State::running) m_state = State::idle;
    Platform::current().notificationCenter().postNotificationName(customTuningSettingsUpdated);
    if (m_state != State::idle) return;  // left: what nobody was shown is still news
    const bool isNews = m_application->tellsAnew(newsOf(report));
    if (m_showReport && isNews && !report.isClean()) m_showReport(report);
}

PassReport ConnectReplay::runPass(TuningOverlay& overlay) {
    const auto pass = m_application->beginPass();
    logLine("getsran");
    overlay.begin();
    return SettingsReplay{m_application->feeder(), m_application->currentVehicle()}.run(
        [&](std::size_t index, std::size_t failed, std::size_t total) { overlay.show(index, failed, total); },
        [this] { return m_state != State::running; }, [this] { return m_state == State::ended; });
}

void ConnectReplay::cancel() {
    if (m_state == State::running || m_state == State::startingOver) m_state = State::cancelled;
}

}  // namespace torv
