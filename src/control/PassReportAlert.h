#pragma once

#include <functional>
#include <memory>

#include "screens/ViewController.h"
#include "tuning/PassReport.h"

namespace torv {

/// Says in one sentence what the module has not taken, and leads to the list of it, which comes over whatever
/// is shown by then. Without a list there is only the sentence. Main thread.
[[nodiscard]] inline std::shared_ptr<AlertView> passReportAlert(
    ViewController& screen, const QString& title, const PassReport& report,
    const std::function<std::shared_ptr<ViewController>(const PassReport&)>& list) {
    const bool hasRows = !report.rows.empty() && list;
    auto alert = std::make_shared<AlertView>(title, QString::fromStdString(report.summary()),
                                             hasRows ? QStringList{"Close", "Show"} : QStringList{"Close"});
    alert->setDismissedHandler([weak = screen.weak_from_this(), report, list](int index) {
        const auto shown = weak.lock();
        if (shown && index == 1) shown->presentOverAll(list(report), true);
    });
    return alert;
}

}  // namespace torv
