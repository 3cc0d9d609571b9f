#include "settings/screens/DriveTrainInfoViewController.h"

#include <array>
#include <utility>

#include "platform/NotificationNames.h"
#include "platform/Platform.h"
#include "screens/NavigationController.h"
#include "screens/TypedNumber.h"
#include "settings/screens/SettingWords.h"
#include "vehicles/VehicleDataSource.h"

namespace torv {
namespace {

using Part = DriveTrainInfo::Part;

/// The last row is the tire size.
enum Row { transmission, rearEndRatio, tireSize };
const std::array<QString, 3> titles{QStringLiteral("Transmission ID"), QStringLiteral("Rear End Ratio"),
                                    QStringLiteral("Tire Size")};

Part partOfRow(int row) {
    return row == transmission ? Part::transmission : Part::rearEndRatio;
}

QString tenths(double number) {
    return QString::number(number, 'f', 1);
}

}  // namespace

DriveTrainInfoViewController::DriveTrainInfoViewController(const TorvAttribute& setting,
                                                           std::shared_ptr<iTorvAppDelegate> application)
    : m_application(std::move(application)),
      m_settings(m_application->feeder(), VehicleDataSource::currentVehicle()),
      m_info(m_settings, setting),
      m_connected(m_application->connected()) {
    m_application->addDelegate(this);
    m_replayed =
        Platform::current().notificationCenter().addObserver(customTuningSettingsUpdated, [this] { load(); });
}

DriveTrainInfoViewController::~DriveTrainInfoViewController() {
    m_application->removeDelegate(this);
}

std::shared_ptr<DriveTrainInfoViewController> DriveTrainInfoViewController::initWithAttribute(
    const TorvAttribute& setting, std::shared_ptr<iTorvAppDelegate> application) {
    auto screen = std::make_shared<DriveTrainInfoViewController>(setting, std::move(application));
    screen->m_application->feeder()->addConnectionListener(screen);
    return screen;
}

std::shared_ptr<TableViewCell> DriveTrainInfoViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, identifier);
    cell->setTag(path.row);
    cell->setText(titles[static_cast<std::size_t>(path.row)]);
    if (path.row == tireSize) {
        cell->setDetailValue(QString::fromStdString(m_info.formattedValue().value),
                             QString::fromStdString(unitText(m_info.setting().unit)));
    } else {
        cell->setDetailText(QString::fromStdString(m_info.choice(partOfRow(path.row))));
    }
    cell->setAccessory(opens() ? TableViewCell::Accessory::Disclosure : TableViewCell::Accessory::None);
    cell->setDimmed(!m_connected);
    return cell;
}

/// All three are in one record, so they have one note.
TableSectionView DriveTrainInfoViewController::viewForFooterInSection(int) {
    const bool onlyRead = !isChangeable(m_info.setting());
    if (!onlyRead && !m_settings.isUntaken(m_info.setting())) return {};
    return {.text = QStringLiteral("⚠ ") + (onlyRead ? onlyReadNote : untakenNote),
            .fontSize = 12,
            .centred = true,
            .accented = true};
}

void DriveTrainInfoViewController::didSelectRowAtIndexPath(IndexPath path) {
    if (!navigationController()) return;
    if (path.row == tireSize) {
        pushTireSize(path.row);
    } else {
        pushPicker(path.row);
    }
}

void DriveTrainInfoViewController::pushPicker(int row) {
    QStringList values;
    for (const auto& choice : m_info.choices(partOfRow(row)))
        values.push_back(QString::fromStdString(choice));
    const auto picker = TablePickerViewController::initWithTitleValuesSelectedValue(
        QString::fromStdString(m_info.setting().name.value_or(std::string{})), values,
        QString::fromStdString(m_info.choice(partOfRow(row))));
    picker->setTag(row);
    picker->setDelegate(this);
    navigationController()->pushViewControllerAnimated(picker, true);
}

void DriveTrainInfoViewController::pushTireSize(int row) {
    const QStringList value{QString::fromStdString(m_info.formattedValue().value)};
    const auto& setting = m_info.setting();
    const auto screen = TextValueGetterViewController::initWithValuesAndDefaultTexts(value, value);
    screen->setInput({.keyboardType = numbersAndPunctuation});
    screen->setDelegate(this);
    screen->setTitle(QString::fromStdString(setting.name.value_or(std::string{})));
    screen->setTag(row);
    if (setting.minValue != 0.0 || setting.maxValue != 0.0) {
        const auto unit = QString::fromStdString(unitText(setting.unit));
        screen->setToolTip(QStringLiteral("This attribute min value is %1 %2 and it's max value is %3 %4.")
                               .arg(tenths(setting.minValue), unit, tenths(setting.maxValue), unit));
    }
    navigationController()->pushViewControllerAnimated(screen, true);
}

bool DriveTrainInfoViewController::textValueGetterViewControllerShouldValidateValues(
    TextValueGetterViewController& screen) {
    return m_info.acceptsTireSize(typedNumber(screen.values().value(0)));
}

QString DriveTrainInfoViewController::textValueGetterViewControllerDidRequestTitleForValidationError(
    TextValueGetterViewController&) {
    return outOfRangeTitle;
}

QString DriveTrainInfoViewController::textValueGetterViewControllerDidRequestMessageForValidationError(
    TextValueGetterViewController&) {
    const auto& setting = m_info.setting();
    return outOfRangeMessage(tenths(setting.minValue), tenths(setting.maxValue));
}

void DriveTrainInfoViewController::textValueGetterViewControllerDidGetValue(
    TextValueGetterViewController& screen) {
    const auto self = shared_from_this();  // the write blocks, and the screen may be left meanwhile
    if (auto alert = m_application->alertDuringPass()) return showAlert(std::move(alert));
    const auto pass = m_application->beginPass();
    m_info.setTireSize(typedNumber(screen.values().value(0)));
    reloadData();
    screen.popIfOnTop();
    if (m_settings.hasEnded()) return showAlert(alertOfAnotherVehicle());
    changed();
}

void DriveTrainInfoViewController::tablePickerViewControllerDidPickValue(TablePickerViewController& picker,
                                                                         const QString& value) {
    const auto self = shared_from_this();
    if (auto alert = m_application->alertDuringPass()) {
        picker.popIfOnTop();
        return showAlert(std::move(alert));
    }
    const auto pass = m_application->beginPass();
    m_info.pick(partOfRow(picker.tag()), value.toStdString());
    reloadData();
    picker.popIfOnTop();
    if (m_settings.hasEnded()) return showAlert(alertOfAnotherVehicle());
    changed();
}

void DriveTrainInfoViewController::changed() {
    if (const auto delegate = m_delegate.lock()) delegate->driveTrainInfoViewControllerDidChange(*this);
}

void DriveTrainInfoViewController::load() {
    m_settings.load();
    reloadData();
}

void DriveTrainInfoViewController::setConnected(bool connected) {
    if (std::exchange(m_connected, connected) != connected) load();
}

void DriveTrainInfoViewController::iTorvFeederDidEstablishConnection(iTorvFeeder&) {
    setConnected(true);
}

void DriveTrainInfoViewController::iTorvFeederDidFailToConnect(iTorvFeeder&) {
    setConnected(false);
}

}  // namespace torv

#include "moc_DriveTrainInfoViewController.cpp"
