#include "tuning/screens/CustomTuningViewController.h"

#include <utility>

#include "platform/Log.h"
#include "platform/NotificationNames.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "screens/NavigationController.h"
#include "tuning/ProfileList.h"
#include "tuning/ProfileValues.h"
#include "tuning/screens/DamagedListAlert.h"
#include "tuning/screens/PassReportViewController.h"
#include "tuning/screens/ProfileEditViewController.h"
#include "tuning/screens/ProfileNameViewController.h"

namespace torv {
namespace {

constexpr int yesButton = 1;

}  // namespace

CustomTuningViewController::CustomTuningViewController(std::shared_ptr<iTorvAppDelegate> application)
    : m_application(std::move(application)), m_push(m_application, *this) {}

void CustomTuningViewController::viewDidLoad() {
    setTitle(QStringLiteral("Custom Tuning"));
    setRightBarButton(std::make_unique<BarButtonItem>(
        "Add", [this] { addProfile(); }, "picture/ICON_ADD.png"));
    std::vector<std::unique_ptr<BarButtonItem>> toolbar;
    toolbar.push_back(std::make_unique<BarButtonItem>(
        "Delete", [this] { editItems(); }, "picture/ICON_TRASH.png"));
    setToolbarItems(std::move(toolbar));
    m_connected = m_application->connected();
    m_application->feeder()->addConnectionListener(
        std::dynamic_pointer_cast<iTorvConnectionListener>(shared_from_this()));
    // The replay after a connect may change which profile is active, and may keep the "As found" profile.
    m_pushed = Platform::current().notificationCenter().addObserver(customTuningSettingsUpdated, [this] {
        if (ProfileList::damagedFile().empty()) fillList();
    });
    if (!m_importVehicleInfo || !navigationController()) return;
    setLeftBarButton(std::make_unique<BarButtonItem>("Close", [this] { back(); }));
}

void CustomTuningViewController::viewWillAppear() {
    TableViewController::viewWillAppear();
    m_profileList = {std::string{defaultProfileName}};
    if (ProfileList::damagedFile().empty()) fillList();
    reloadData();
}

void CustomTuningViewController::viewDidAppear() {
    if (const auto trouble = std::exchange(m_importTrouble, {})) {
        auto alert = std::make_shared<AlertView>(
            "The file can't be imported", QString::fromStdString(trouble->sentence), QStringList{"OK"});
        alert->setDismissedHandler([this, self = weak_from_this(), stays = trouble->wasRead](int) {
            if (!self.lock()) return;
            if (!stays) return back();
            if (!ProfileList::damagedFile().empty()) askAboutDamagedList();
        });
        return showAlert(std::move(alert));
    }
    if (!ProfileList::damagedFile().empty()) return askAboutDamagedList();
    beginImport();
}

void CustomTuningViewController::beginImport() {
    if (!m_importVehicleInfo || !navigationController()) return;
    // Only once: when this screen is shown again, the document has been imported or given up.
    navigationController()->pushViewControllerAnimated(
        std::make_shared<ProfileNameViewController>(m_application, std::exchange(m_importVehicleInfo, {})),
        true);
}

void CustomTuningViewController::fillList() {
    m_profileList = {std::string{defaultProfileName}};
    for (auto& name : ProfileList{}.names())
        m_profileList.push_back(std::move(name));
    reloadData();
}

void CustomTuningViewController::askAboutDamagedList() {
    torv::askAboutDamagedList(*this, [this, weak = weak_from_this()] {
        if (!weak.lock()) return;
        fillList();
        beginImport();
    });
}

std::shared_ptr<TableViewCell> CustomTuningViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, identifier);
    const bool isActive = defaults().objectForKey(activeProfileKey).textValue() == nameOf(path);
    cell->setText(QString::fromStdString(nameOf(path)));
    cell->setAccessory(path.row == 0 ? TableViewCell::Accessory::None : TableViewCell::Accessory::Detail);
    cell->setDimmed(!m_connected);
    cell->setImage(isActive ? QStringLiteral("checkmark.png") : QString{});
    return cell;
}

void CustomTuningViewController::didSelectRowAtIndexPath(IndexPath path) {
    const bool resets = path.row == 0;
    const auto name = QString::fromStdString(nameOf(path));
    auto alert = std::make_shared<AlertView>(
        resets ? QStringLiteral("Change Profile") : name,
        resets ? QStringLiteral("Are you sure you want to reset the device to the defaults?")
               : QStringLiteral("Are you sure you want to activate the profile %1").arg(name),
        QStringList{"Cancel", "Yes"});
    alert->setDismissedHandler([this, weak = weak_from_this(), resets, name](int index) {
        const auto self = weak.lock();
        if (!self) return;
        logLine("hello");
        if (index == yesButton) updateSettings(resets ? std::string{defaultProfileName} : name.toStdString());
    });
    showAlert(std::move(alert));
    deselectRow();
}

void CustomTuningViewController::updateSettings(const std::string& name) {
    const auto self = shared_from_this();  // the pass blocks, and the screen may be left meanwhile
    if (auto alert = m_application->alertDuringPass()) return showAlert(std::move(alert));
    const auto report =
        m_push.run([&name](Activation& activation, const auto& progress, const auto& cancelled) {
            return activation.push(name, progress, cancelled);
        });
    if (Platform::current().runLoop().isQuitting()) return;  // the pass has not come to its own end
    if (m_push.takeCancel()) return updateSettings(std::string{defaultProfileName});
    Activation::setActive(name);
    reloadData();
    showPassReport(*this, m_application, QString::fromStdString(name), report);
}

void CustomTuningViewController::addProfile() {
    logLine("add profile");
    if (!ProfileList::damagedFile().empty()) return askAboutDamagedList();
    if (!navigationController()) return;
    navigationController()->pushViewControllerAnimated(
        std::make_shared<ProfileNameViewController>(m_application, std::nullopt), true);
}

void CustomTuningViewController::accessoryButtonTappedForRowAtIndexPath(IndexPath path) {
    if (!navigationController()) return;
    navigationController()->pushViewControllerAnimated(
        std::make_shared<ProfileEditViewController>(m_application, nameOf(path), std::nullopt), true);
}

void CustomTuningViewController::deleteRowAtIndexPath(IndexPath path) {
    ProfileList{}.remove(nameOf(path));
    ProfileValues::remove(nameOf(path));
    m_profileList.erase(m_profileList.begin() + path.row);
    reloadData();
}

void CustomTuningViewController::setConnected(bool connected) {
    if (std::exchange(m_connected, connected) != connected) reloadData();
}

}  // namespace torv

#include "moc_CustomTuningViewController.cpp"
#include "moc_ProfileDifferencesViewController.cpp"
