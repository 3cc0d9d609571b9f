#include "app/MainMenuViewController.h"

#include "screens/NavigationController.h"

namespace torv {

void MainMenuViewController::viewDidLoad() {
    setTitle(QStringLiteral("Main Menu"));
    setLeftBarButton(std::make_unique<BarButtonItem>(QStringLiteral("Close"), [this] { back(); }));
}

std::shared_ptr<TableViewCell> MainMenuViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, identifier);
    cell->setText(m_rows[static_cast<std::size_t>(path.row)].text);
    cell->setAccessory(TableViewCell::Accessory::Disclosure);
    return cell;
}

void MainMenuViewController::didSelectRowAtIndexPath(IndexPath path) {
    if (!navigationController()) return;
    navigationController()->pushViewControllerAnimated(m_rows[static_cast<std::size_t>(path.row)].make(),
                                                       true);
}

}  // namespace torv
