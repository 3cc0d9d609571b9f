#pragma once

#include <vector>

#include "screens/TableViewController.h"
#include "tuning/PassReport.h"

namespace torv {

/// What differs between a profile and something else. Main thread.
class ProfileDifferencesViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    ProfileDifferencesViewController(const QString& profile, QString other,
                                     std::vector<ValueDifference> differences)
        : m_other(std::move(other)), m_differences(std::move(differences)) {
        setTitle(profile);
    }

    [[nodiscard]] int numberOfRowsInSection(int) override { return static_cast<int>(m_differences.size()); }
    [[nodiscard]] QString emptyText() const override { return QStringLiteral("All values are the same."); }
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return tallRowHeight; }
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath) override { return false; }
    [[nodiscard]] TableSectionView viewForHeaderInSection(int) override {
        return {.text = QStringLiteral("This profile, and: %1").arg(m_other), .fontSize = 14};
    }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override {
        const auto identifier = QStringLiteral("Cell");
        auto cell = dequeueReusableCell(identifier);
        if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, identifier);
        const auto& row = m_differences[static_cast<std::size_t>(path.row)];
        const auto shown = [](const std::string& text) {
            return text.empty() ? QStringLiteral("–") : QString::fromStdString(text);
        };
        cell->setText(QString::fromStdString(row.name));
        cell->setDetailText(shown(row.first) + QStringLiteral("   ⇄   ") + shown(row.second));
        return cell;
    }

private:
    const QString m_other;
    const std::vector<ValueDifference> m_differences;
};

}  // namespace torv
