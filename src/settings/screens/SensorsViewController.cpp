#include "settings/screens/SensorsViewController.h"

#include "screens/NavigationController.h"
#include "screens/TypedNumber.h"
#include "vehicles/VehicleDataSource.h"

namespace torv {
namespace {

constexpr std::int64_t switchOffset = 40;

}  // namespace

void SensorsViewController::viewDidLoad() {
    setTitle(QStringLiteral("Sensor Warnings"));
    setRightBarButton(std::make_unique<BarButtonItem>(QStringLiteral("Reset"), [this] { reset(); }));
    m_warnings.emplace(VehicleDataSource::currentVehicle());
}

const TorvAttribute& SensorsViewController::sensor(int row) const {
    return m_warnings->sensors()[static_cast<std::size_t>(row)];
}

int SensorsViewController::numberOfRowsInSection(int) {
    return static_cast<int>(m_warnings->sensors().size());
}

std::shared_ptr<TableViewCell> SensorsViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("ToggableCell");
    auto cell = std::dynamic_pointer_cast<SwitchTableViewCell>(dequeueReusableCell(identifier));
    if (!cell) {
        cell = std::make_shared<SwitchTableViewCell>(TableViewCell::Style::Subtitle, identifier);
        cell->setDelegate(this);
        cell->enable(true);
        cell->setOffsetFromRight(switchOffset);
    }
    const auto& sensor = this->sensor(path.row);
    cell->on(SensorWarnings::isOn(sensor));
    cell->setText(QString::fromStdString(sensor.name.value_or(std::string{})));
    cell->setDetailValue(QString::fromStdString(SensorWarnings::textOfValue(sensor)),
                         QString::fromStdString(unitText(sensor.unit)));
    cell->setTag(path.row);
    return cell;
}

void SensorsViewController::didSelectRowAtIndexPath(IndexPath path) {
    if (!navigationController()) return;
    const auto& sensor = this->sensor(path.row);
    const QStringList value{QString::fromStdString(SensorWarnings::textOfValue(sensor))};
    const auto screen = TextValueGetterViewController::initWithValuesAndDefaultTexts(value, value);
    screen->setInput({.keyboardType = numberPad});
    screen->setDelegate(this);
    screen->setTitle(QString::fromStdString(sensor.name.value_or(std::string{})));
    screen->setTag(path.row);
    const auto range = SensorWarnings::range(sensor);
    if (range.isTold) {
        const auto unit = QString::fromStdString(unitText(range.unit));
        screen->setToolTip(
            QStringLiteral("This sensor warning min value is %1 %2 and it's max value is %3 %4.")
                .arg(QString::number(range.lowest), unit, QString::number(range.highest), unit));
    }
    navigationController()->pushViewControllerAnimated(screen, true);
    deselectRow();
}

void SensorsViewController::switchTableViewCellDidChangedValue(SwitchTableViewCell& cell, bool on) {
    m_warnings->setSwitch(static_cast<std::size_t>(cell.tag()), on);
    m_application->refreshWarningSensors();
}

bool SensorsViewController::textValueGetterViewControllerShouldValidateValues(
    TextValueGetterViewController& screen) {
    return m_warnings->accepts(static_cast<std::size_t>(screen.tag()), typedNumber(screen.values().value(0)));
}

QString SensorsViewController::textValueGetterViewControllerDidRequestTitleForValidationError(
    TextValueGetterViewController&) {
    return outOfRangeTitle;
}

QString SensorsViewController::textValueGetterViewControllerDidRequestMessageForValidationError(
    TextValueGetterViewController& screen) {
    const auto range = SensorWarnings::range(sensor(screen.tag()));
    return outOfRangeMessage(range.lowest, range.highest);
}

void SensorsViewController::textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) {
    m_warnings->setText(static_cast<std::size_t>(screen.tag()), typedNumber(screen.values().value(0)));
    m_application->refreshWarningSensors();
    reloadData();
    screen.popIfOnTop();
}

void SensorsViewController::reset() {
    m_warnings->reset();
    reloadData();
    m_application->refreshWarningSensors();
}

}  // namespace torv

#include "moc_SensorsViewController.cpp"
