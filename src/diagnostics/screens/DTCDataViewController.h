#pragma once

#include "screens/TableViewController.h"

namespace torv {

/// Points that a plain row takes for a text, in as many lines as it needs on this stack of screens.
[[nodiscard]] double rowHeightForText(const QString& text, const NavigationController* stack);

/// The whole text of one trouble code. Main thread.
class DTCDataViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    DTCDataViewController(QString numtitle, QString description)
        : m_numtitle(std::move(numtitle)), m_description(std::move(description)) {}

    void viewDidLoad() override { setTitle(m_numtitle); }
    [[nodiscard]] int numberOfRowsInSection(int) override { return 1; }
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override {
        return rowHeightForText(m_description, navigationController());
    }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath) override { return false; }

private:
    const QString m_numtitle;
    const QString m_description;
};

}  // namespace torv
