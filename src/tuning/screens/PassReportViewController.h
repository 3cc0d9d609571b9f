#pragma once

#include <memory>

#include "control/TuningPush.h"
#include "screens/TableViewController.h"

namespace torv {

/// What the module did not take of a pass, and a way to try that again. Main thread; another try blocks, and
/// the loop turns meanwhile.
class PassReportViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    PassReportViewController(std::shared_ptr<iTorvAppDelegate> application, const QString& profile,
                             PassReport report);

    void viewDidLoad() override;
    [[nodiscard]] int numberOfRowsInSection(int) override { return static_cast<int>(m_report.rows.size()); }
    [[nodiscard]] TableSectionView viewForHeaderInSection(int) override;
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return tallRowHeight; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath) override { return false; }
    [[nodiscard]] QString emptyText() const override {
        return QStringLiteral("The module has taken every value.");
    }

    void tryAgain();

private:
    const std::shared_ptr<iTorvAppDelegate> m_application;
    TuningPush m_push;
    PassReport m_report;
};

/// Does nothing after a pass that went well. With values that were not taken a screen of its own comes over
/// this one, where that is still on top of its stack; else an alert says it in one sentence, and leads there.
void showPassReport(ViewController& screen, const std::shared_ptr<iTorvAppDelegate>& application,
                    const QString& profile, const PassReport& report);

}  // namespace torv
