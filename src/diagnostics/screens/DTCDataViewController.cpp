#include "diagnostics/screens/DTCDataViewController.h"

namespace torv {

std::shared_ptr<TableViewCell> DTCDataViewController::cellForRowAtIndexPath(IndexPath) {
    auto cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, QStringLiteral("Cell"));
    cell->setText(m_description);
    return cell;
}

}  // namespace torv

#include "moc_DTCDataViewController.cpp"
