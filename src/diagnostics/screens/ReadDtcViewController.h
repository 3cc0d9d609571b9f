#pragma once

#include <memory>
#include <string>

#include "diagnostics/TroubleCodeReport.h"
#include "platform/Document.h"
#include "screens/TableViewController.h"

namespace torv {

/// The trouble codes of one read, with their texts. Main thread.
///
/// As many rows as the module has reported codes. What is from an answer before this read stands in a section
/// of its own that says so. Without the database there is nothing to be shown, and the process ends.
class ReadDtcViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    /// `begun` is when the read began; `recording` the name of the recording that runs, or empty.
    ReadDtcViewController(std::shared_ptr<iTorvFeeder> feeder, RunLoop::Clock::time_point begun,
                          std::string vehicleName, std::string recording)
        : m_feeder(std::move(feeder)),
          m_begun(begun),
          m_vehicleName(std::move(vehicleName)),
          m_recording(std::move(recording)) {}

    void viewDidLoad() override;
    [[nodiscard]] QString emptyText() const override { return QString::fromStdString(m_report.emptyText()); }
    [[nodiscard]] int numberOfSections() override { return m_fresh > 0 && m_report.hasOldRows() ? 2 : 1; }
    [[nodiscard]] int numberOfRowsInSection(int section) override;
    [[nodiscard]] TableSectionView viewForHeaderInSection(int section) override;
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return heightOfItsText; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

private:
    [[nodiscard]] const TroubleCodeReport::Row& row(IndexPath path) const;
    [[nodiscard]] Document document() const;
    void share();

    const std::shared_ptr<iTorvFeeder> m_feeder;
    const RunLoop::Clock::time_point m_begun;
    const std::string m_vehicleName;
    const std::string m_recording;
    TroubleCodeReport m_report;
    int m_fresh = 0;  // rows of this read
    TroubleCodeReport::WallClock::time_point m_readAt;
};

}  // namespace torv
