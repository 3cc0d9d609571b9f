#include "app/MainMenuViewController.h"

#include "screens/NavigationController.h"
#include "vehicles/VehicleDataSource.h"

namespace torv {

void MainMenuViewController::viewDidLoad() {
    setTitle(QStringLiteral("Main Menu"));
    setLeftBarButton(std::make_unique<BarButtonItem>(QStringLiteral("Close"), [this] { back(); }));
}

void MainMenuViewController::viewWillAppear() {
    const auto vehicle = VehicleDataSource::currentVehicle();
    m_dtcenabled = vehicle.DTC() == "YES";
    m_vehicleName = QString::fromStdString(vehicle.name().value_or(std::string{}));
    TableViewController::viewWillAppear();
}

int MainMenuViewController::numberOfRowsInSection(int) {
    return static_cast<int>(m_rows.size()) - (m_dtcenabled ? 0 : 1);
}

std::shared_ptr<TableViewCell> MainMenuViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, identifier);
    cell->setText(m_rows[static_cast<std::size_t>(path.row)].text);
    cell->setDetailText(path.row == 0 ? m_vehicleName : QString{});
    cell->setAccessory(TableViewCell::Accessory::Disclosure);
    return cell;
}

void MainMenuViewController::didSelectRowAtIndexPath(IndexPath path) {
    if (!navigationController()) return;
    navigationController()->pushViewControllerAnimated(m_rows[static_cast<std::size_t>(path.row)].make(),
                                                       true);
    deselectRow();
}

}  // namespace torv

#include "moc_MainMenuViewController.cpp"
