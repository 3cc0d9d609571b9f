#pragma once

#include "screens/TableViewController.h"

namespace torv {

/// The whole text of one trouble code. Main thread.
class DTCDataViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    DTCDataViewController(QString numtitle, QString description)
        : m_numtitle(std::move(numtitle)), m_description(std::move(description)) {}

    void viewDidLoad() override { setTitle(m_numtitle); }
    [[nodiscard]] int numberOfRowsInSection(int) override { return 1; }
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return heightOfItsText; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath) override { return false; }

private:
    const QString m_numtitle;
    const QString m_description;
};

}  // namespace torv
