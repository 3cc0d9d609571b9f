#include "datalog/screens/GraphSensorsViewController.h"

namespace torv {

std::shared_ptr<TableViewCell> GraphSensorsViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, identifier);
    const auto row = static_cast<std::size_t>(path.row);
    cell->setText(QString::fromStdString(m_graph->sensors()[row].sensor.name));
    cell->setImage(m_graph->isShown(row) ? QStringLiteral("checkmark.png") : QString{});
    return cell;
}

void GraphSensorsViewController::didSelectRowAtIndexPath(IndexPath path) {
    const auto row = static_cast<std::size_t>(path.row);
    deselectRow();
    if (!m_graph->setShown(row, !m_graph->isShown(row))) {
        return showAlert(std::make_shared<AlertView>(
            "Six sensors at the most", "Take one away before you add another.", QStringList{"OK"}));
    }
    reloadData();
}

}  // namespace torv

#include "moc_GraphSensorsViewController.cpp"
