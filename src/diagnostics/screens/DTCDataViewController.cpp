#include "diagnostics/screens/DTCDataViewController.h"

#include <algorithm>
#include <cmath>

#include "screens/NavigationController.h"

namespace torv {
namespace {

// Points.
constexpr double besideText = 75;  // margins and the disclosure mark
constexpr double letterWidth = 8.3;
constexpr double lineHeight = 18;
constexpr double aboveAndBelow = 16;
constexpr double usualWidth = 568;

}  // namespace

double rowHeightForText(const QString& text, const NavigationController* stack) {
    const auto width = stack ? stack->viewSize().width() : usualWidth;
    const auto lines = std::ceil(static_cast<double>(text.size()) * letterWidth / (width - besideText));
    return std::max(lines * lineHeight + aboveAndBelow, TableViewController::usualRowHeight);
}

std::shared_ptr<TableViewCell> DTCDataViewController::cellForRowAtIndexPath(IndexPath) {
    auto cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, QStringLiteral("Cell"));
    cell->setText(m_description);
    return cell;
}

}  // namespace torv
