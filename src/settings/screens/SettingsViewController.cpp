#include "settings/screens/SettingsViewController.h"

#include <utility>

#include "platform/Log.h"
#include "platform/NotificationNames.h"
#include "platform/Platform.h"
#include "screens/NavigationController.h"
#include "screens/TypedNumber.h"
#include "settings/screens/SettingWords.h"
#include "vehicles/VehicleDataSource.h"

namespace torv {
namespace {

// Points between a switch and the row's right edge; the larger one leaves room for the detail button.
constexpr std::int64_t switchOffsetAlone = 40;
constexpr std::int64_t switchOffsetBesideButton = 60;

QString nameOf(const TorvAttribute& setting) {
    return QString::fromStdString(setting.name.value_or(std::string{}));
}

QStringList optionsOf(const TorvAttribute& setting) {
    QStringList options;
    for (const auto& option : textsOfList(setting.options))
        options.push_back(QString::fromStdString(option));
    return options;
}

}  // namespace

SettingsViewController::SettingsViewController(std::shared_ptr<iTorvAppDelegate> application)
    : m_application(std::move(application)) {}

SettingsViewController::~SettingsViewController() {
    m_application->removeDelegate(this);
}

void SettingsViewController::viewDidLoad() {
    setTitle(QStringLiteral("Settings"));
    setRightBarButton(std::make_unique<BarButtonItem>(QStringLiteral("Reset"), [this] { reset(); }));
    const auto& feeder = m_application->feeder();
    feeder->addConnectionListener(std::dynamic_pointer_cast<iTorvConnectionListener>(shared_from_this()));
    m_connected = m_application->connected();
    m_settings.emplace(feeder, VehicleDataSource::currentVehicle());
    logLine("count:" + std::to_string(m_settings->count()));
    m_application->addDelegate(this);
    // A connect has written what is stored, and now it is known what of it the module took.
    m_replayed = Platform::current().notificationCenter().addObserver(customTuningSettingsUpdated, [this] {
        m_settings->load();
        reloadData();
    });
}

const TorvAttribute& SettingsViewController::setting(int row) const {
    return m_settings->settings()[static_cast<std::size_t>(row)];
}

int SettingsViewController::numberOfRowsInSection(int) {
    return static_cast<int>(m_settings->settings().size());
}

/// A switch that is used again keeps its state, and whether it is enabled, from when it was made; kept as it
/// is.
std::shared_ptr<TableViewCell> SettingsViewController::emptyCell(const TorvAttribute& setting,
                                                                 const AVFormatterData& record) {
    if (setting.toggable) {
        const auto identifier = QStringLiteral("ToggableCell");
        if (auto cell = dequeueReusableCell(identifier)) return cell;
        auto cell = std::make_shared<SwitchTableViewCell>(TableViewCell::Style::Subtitle, identifier);
        cell->setDelegate(this);
        cell->on(isSwitchedOn(record));
        cell->enable(m_connected && isChangeable(setting));
        const bool besideButton = setting.aid == turboTimerSettingAID && m_connected;
        cell->setOffsetFromRight(besideButton ? switchOffsetBesideButton : switchOffsetAlone);
        return cell;
    }
    if (setting.aid == threeWaySettingAID) {
        const auto identifier = QStringLiteral("GearCell");
        auto cell = std::dynamic_pointer_cast<TappableLabelTableViewCell>(dequeueReusableCell(identifier));
        if (!cell)
            cell = std::make_shared<TappableLabelTableViewCell>(TableViewCell::Style::Subtitle, identifier);
        cell->setDelegate(this);
        cell->setAdditionalLabel(
            QString::fromStdString(textOfChoice(setting, choiceOfSetting(setting, record))));
        cell->setEnabled(m_connected);
        return cell;
    }
    const auto identifier = QStringLiteral("Cell");
    if (auto cell = dequeueReusableCell(identifier)) return cell;
    return std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, identifier);
}

std::shared_ptr<TableViewCell> SettingsViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto& setting = this->setting(path.row);
    const auto record = m_settings->formattedValueForSetting(setting);
    auto cell = emptyCell(setting, record);
    const bool isDriveTrain = setting.aid == driveTrainSettingAID;
    const bool opens = m_connected && isChangeable(setting);
    cell->setTag(path.row);
    cell->setText(nameOf(setting));
    if (!isDriveTrain) {
        const auto unit = valueRange(setting, record).unit;
        cell->setDetailValue(QString::fromStdString(record.value), QString::fromStdString(unitText(unit)));
    }
    if (setting.aid == turboTimerSettingAID) {
        cell->setAccessory(m_connected ? TableViewCell::Accessory::Detail : TableViewCell::Accessory::None);
    } else {
        cell->setAccessory(opens || isDriveTrain ? TableViewCell::Accessory::Disclosure
                                                 : TableViewCell::Accessory::None);
    }
    cell->setDimmed(!m_connected && !isDriveTrain);
    cell->setNote(noteFor(setting));
    return cell;
}

QString SettingsViewController::noteFor(const TorvAttribute& setting) const {
    if (!isChangeable(setting)) return onlyReadNote;
    return m_settings->isUntaken(setting) ? untakenNote : QString{};
}

bool SettingsViewController::shouldHighlightRowAtIndexPath(IndexPath path) {
    const auto& setting = this->setting(path.row);
    return setting.aid == driveTrainSettingAID || (m_connected && isChangeable(setting));
}

void SettingsViewController::didSelectRowAtIndexPath(IndexPath path) {
    if (!navigationController()) return;
    const auto& setting = this->setting(path.row);
    if (setting.aid == driveTrainSettingAID) {
        const auto screen = DriveTrainInfoViewController::initWithAttribute(setting, m_application);
        screen->setDelegate(std::shared_ptr<DriveTrainInfoViewControllerDelegate>{shared_from_this(), this});
        return navigationController()->pushViewControllerAnimated(screen, true);
    }
    const auto record = m_settings->formattedValueForSetting(setting);
    const QStringList value{QString::fromStdString(record.value)};
    const auto screen = TextValueGetterViewController::initWithValuesAndDefaultTexts(value, value);
    screen->setInput({.keyboardType = numberPad});
    screen->setDelegate(this);
    screen->setTitle(nameOf(setting));
    screen->setTag(path.row);
    const auto range = valueRange(setting, record);
    if (range.isTold) {
        const auto unit = QString::fromStdString(unitText(range.unit));
        screen->setToolTip(
            QStringLiteral("This attribute min value is %1 %2 and it's max value is %3 %4.")
                .arg(QString::number(range.lowest), unit, QString::number(range.highest), unit));
    }
    navigationController()->pushViewControllerAnimated(screen, true);
}

void SettingsViewController::pushPicker(int row) {
    const auto& setting = this->setting(row);
    if (!navigationController() || !isChangeable(setting)) return;
    const auto choice = choiceOfSetting(setting, m_settings->formattedValueForSetting(setting));
    const auto picker = TablePickerViewController::initWithTitleValuesSelectedValue(
        nameOf(setting), optionsOf(setting), QString::fromStdString(textOfChoice(setting, choice)));
    picker->setTag(row);
    picker->setDelegate(this);
    navigationController()->pushViewControllerAnimated(picker, true);
}

void SettingsViewController::switchTableViewCellDidChangedValue(SwitchTableViewCell& cell, bool on) {
    const auto self = shared_from_this();  // the write blocks, and the screen may be left meanwhile
    if (auto alert = m_application->alertDuringPass()) {
        cell.on(!on);
        return showAlert(std::move(alert));
    }
    const auto pass = m_application->beginPass();
    m_settings->setSwitch(setting(cell.tag()), on);
    cell.setNote(noteFor(setting(cell.tag())));
}

bool SettingsViewController::textValueGetterViewControllerShouldValidateValues(
    TextValueGetterViewController& screen) {
    return m_settings->accepts(setting(screen.tag()), typedNumber(screen.values().value(0)));
}

QString SettingsViewController::textValueGetterViewControllerDidRequestTitleForValidationError(
    TextValueGetterViewController&) {
    return outOfRangeTitle;
}

QString SettingsViewController::textValueGetterViewControllerDidRequestMessageForValidationError(
    TextValueGetterViewController& screen) {
    const auto range = m_settings->range(setting(screen.tag()));
    return outOfRangeMessage(range.lowest, range.highest);
}

void SettingsViewController::textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) {
    const auto self = shared_from_this();
    if (auto alert = m_application->alertDuringPass()) return showAlert(std::move(alert));
    const auto pass = m_application->beginPass();
    m_settings->setText(setting(screen.tag()), typedNumber(screen.values().value(0)));
    reloadData();
    screen.popIfOnTop();
    if (m_settings->hasEnded()) showAlert(alertOfAnotherVehicle());
}

void SettingsViewController::tablePickerViewControllerDidPickValue(TablePickerViewController& picker,
                                                                   const QString& value) {
    const auto self = shared_from_this();
    if (auto alert = m_application->alertDuringPass()) {
        picker.popIfOnTop();
        return showAlert(std::move(alert));
    }
    const auto pass = m_application->beginPass();
    const auto choice = picker.values().indexOf(value);
    m_settings->pick(setting(picker.tag()), static_cast<std::size_t>(choice));
    reloadData();
    picker.popIfOnTop();
    if (m_settings->hasEnded()) showAlert(alertOfAnotherVehicle());
}

void SettingsViewController::driveTrainInfoViewControllerDidChange(DriveTrainInfoViewController&) {
    m_settings->load();
    reloadData();
}

void SettingsViewController::setConnected(bool connected) {
    if (std::exchange(m_connected, connected) == connected) return;
    m_settings->load();  // the first connect of a vehicle has stored its lowest values
    reloadData();
}

void SettingsViewController::iTorvFeederDidEstablishConnection(iTorvFeeder&) {
    setConnected(true);
}

void SettingsViewController::iTorvFeederDidFailToConnect(iTorvFeeder&) {
    setConnected(false);
}

void SettingsViewController::iTorvAppDelegateDidChangeCurrentVehicle(iTorvAppDelegate&) {
    m_settings->end();
}

void SettingsViewController::reset() {
    if (auto alert = m_application->alertDuringPass()) return showAlert(std::move(alert));
    if (m_settings->hasEnded()) return;
    m_settings->reset();
    m_application->configureZephrelaneFeatures();
    reloadData();
}

}  // namespace torv

#include "moc_SettingsViewController.cpp"
