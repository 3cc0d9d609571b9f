#include "vehicles/screens/CarSetupTableViewController.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "platform/Platform.h"
#include "platform/Reachability.h"
#include "platform/StoredKeys.h"
#include "screens/NavigationController.h"
#include "screens/Touch.h"
#include "settings/DeviceSettings.h"
#include "vehicles/VehicleDataSource.h"

namespace torv {
namespace {

constexpr int firstOtherButton = 1;  // behind the one that cancels

QString text(const std::optional<std::string>& words) {
    return QString::fromStdString(words.value_or(std::string{}));
}

bool needsDownload(const Vehicle& vehicle) {
    return vehicle.updateAvailable() || vehicle.info().empty();
}

}  // namespace

CarSetupTableViewController::CarSetupTableViewController(std::shared_ptr<iTorvAppDelegate> application)
    : m_application(std::move(application)) {
    loadVehicles();
}

void CarSetupTableViewController::loadVehicles() {
    m_application->background().post([screen = QPointer{this}] {
        Platform::current().runLoop().performOnMainThread(
            [screen, vehicles = VehicleDataSource::vehicles()]() mutable {
                if (!screen) return;
                screen->m_vehicles = std::move(vehicles);
                screen->refresh();
            });
    });
}

void CarSetupTableViewController::viewDidLoad() {
    setTitle(QStringLiteral("Vehicle Setup"));
    auto& defaults = Platform::current().userDefaults();
    m_isFirstRun = !defaults.objectForKey(firstRunKey).boolValue();
    if (m_isFirstRun) {
        setLeftBarButton(std::make_unique<BarButtonItem>(QStringLiteral("Close"), [this] { back(); }));
        // The first run has begun, which is not to say that it will be finished.
        defaults.setObjectForKey(true, firstRunKey);
        defaults.synchronize();
    }
    m_application->setConnectionErrorMessageAllowed(false);
}

void CarSetupTableViewController::refresh() {
    m_markedName = VehicleDataSource::currentVehicle().name();
    reloadData();
}

void CarSetupTableViewController::viewWillAppear() {
    m_markedName = VehicleDataSource::currentVehicle().name();
    TableViewController::viewWillAppear();
}

void CarSetupTableViewController::viewDidAppear() {
    m_left = false;
    m_currentVehicle = VehicleDataSource::currentVehicle();
    if (!Reachability::isInternetAvailable()) {
        showAlert(std::make_shared<AlertView>(
            QStringLiteral("Connection Error"),
            QStringLiteral("You are not connected to the Internet. Please quit this app and connect to the "
                           "Internet. Then re-launch this app"),
            QStringList{"OK"}));
        return;
    }
    const auto outdated = std::find_if(m_vehicles.begin(), m_vehicles.end(), [this](const Vehicle& vehicle) {
        return vehicle.isEqual(m_currentVehicle) && vehicle.updateAvailable();
    });
    if (outdated == m_vehicles.end()) return;
    m_currentVehicle.setUpdateAvailable(true);
    showUpdateAlertWithTag(updateOnAppearance);
}

void CarSetupTableViewController::viewWillDisappear() {
    m_left = true;
    m_application->setConnectionErrorMessageAllowed(true);
}

int CarSetupTableViewController::numberOfRowsInSection(int) {
    return std::max(static_cast<int>(m_vehicles.size()), 1);
}

TableSectionView CarSetupTableViewController::viewForHeaderInSection(int) {
    return {.text = QStringLiteral("Choose your vehicle profile"),
            .height = 45,
            .width = 300,
            .fontSize = 17,
            .centred = true,
            .accented = true};
}

TableSectionView CarSetupTableViewController::viewForFooterInSection(int) {
    return {.text = QStringLiteral("Enable your Internet connection to download updated vehicle profiles."),
            .height = 65,
            .fontSize = 14,
            .lines = 3,
            .centred = true,
            .accented = true};
}

std::shared_ptr<TableViewCell> CarSetupTableViewController::cellForRowAtIndexPath(IndexPath path) {
    auto cell = std::make_shared<TableViewCell>(TableViewCell::Style::Subtitle, QString{});
    if (m_vehicles.empty()) {
        cell->setText(QStringLiteral("Loading vehicle profiles..."));
        cell->setBusy(true);
        return cell;
    }
    const auto& vehicle = m_vehicles[static_cast<std::size_t>(path.row)];
    cell->setText(text(vehicle.name()));
    cell->setDetailText(QStringLiteral("version %1").arg(text(vehicle.version())));
    QStringList marks;
    if (vehicle.name() == m_markedName) marks.push_back(QStringLiteral("checkmark.png"));
    if (needsDownload(vehicle)) marks.push_back(QStringLiteral("UPDATE_AVAILABLE.png"));
    cell->setMarks(marks);
    return cell;
}

bool CarSetupTableViewController::shouldHighlightRowAtIndexPath(IndexPath) {
    return !m_vehicles.empty() && !m_downloading;
}

void CarSetupTableViewController::setBusy(int row) {
    if (auto* const cell = cellAt({0, row})) cell->setBusy(true);
}

void CarSetupTableViewController::putIntoList(const Vehicle& vehicle) {
    for (auto& listed : m_vehicles) {
        if (listed.isEqual(vehicle)) listed = vehicle;
    }
}

int CarSetupTableViewController::rowOf(const Vehicle& vehicle) const {
    const auto found = std::find_if(m_vehicles.begin(), m_vehicles.end(),
                                    [&](const Vehicle& listed) { return listed.isEqual(vehicle); });
    return found == m_vehicles.end() ? 0 : static_cast<int>(found - m_vehicles.begin());
}

void CarSetupTableViewController::didSelectRowAtIndexPath(IndexPath path) {
    const auto self = shared_from_this();  // a download turns the loop, and the screen may be left meanwhile
    if (m_vehicles.empty() || m_downloading) return;
    if (auto alert = m_application->alertDuringPass()) {
        deselectRow();
        return showAlert(std::move(alert));
    }
    setBusy(path.row);
    m_workingVehicle = m_vehicles[static_cast<std::size_t>(path.row)];
    if (!m_workingVehicle.isEqual(m_currentVehicle)) {
        if (m_isFirstRun) return updateWorkingVehicle();
        return showVehicleChangeAlertWithTag(changeOfVehicle);
    }
    if (!needsDownload(m_workingVehicle)) {
        setCurrentVehicle(m_workingVehicle);
        return close();
    }
    m_currentVehicle = m_workingVehicle;
    showUpdateAlertWithTag(updateOfPicked);
}

void CarSetupTableViewController::close() {
    if (m_isFirstRun) {
        dismissModalViewControllerAnimated(true);
    } else {
        popIfOnTop();
    }
}

bool CarSetupTableViewController::updateVehicle(Vehicle& vehicle) {
    const QScopedValueRollback downloading{m_downloading, true};
    const auto done = std::make_shared<std::optional<Vehicle>>();
    m_application->background().post([done, copy = vehicle]() mutable {
        VehicleDataSource::updateVehicle(copy);
        Platform::current().runLoop().performOnMainThread([done, copy = std::move(copy)] { *done = copy; });
    });
    while (!*done) {
        if (!Platform::current().runLoop().runOnce()) return false;
    }
    vehicle = **done;
    return !m_left;
}

void CarSetupTableViewController::updateWorkingVehicle() {
    if (needsDownload(m_workingVehicle)) {
        if (!updateVehicle(m_workingVehicle)) return;
        putIntoList(m_workingVehicle);  // whatever came: what is no profile has emptied it
    }
    if (needsDownload(m_workingVehicle)) return showUpdateErrorAlertWithTag(rowOf(m_workingVehicle));
    setCurrentVehicle(m_workingVehicle);
    close();
}

void CarSetupTableViewController::setCurrentVehicle(const Vehicle& vehicle) {
    const auto old = VehicleDataSource::currentVehicle();
    VehicleDataSource::setCurrentVehicle(vehicle);
    Platform::current().userDefaults().synchronize();
    if (old.name() != vehicle.name() || old.version() != vehicle.version())
        m_application->setCurrentVehicle(vehicle);
    storeLowestValues(m_currentVehicle, vehicle);
}

void CarSetupTableViewController::showUpdateAlertWithTag(int tag) {
    const auto warning =
        m_isFirstRun ? QString{}
                     : QStringLiteral("Updating a vehicle profile might clear some sensors you have chosen.");
    showAlertWithTag(
        tag, QStringLiteral("Update available"),
        QStringLiteral("A newer version of the current vehicle profile is available. %1Do you want "
                       "to download it?")
            .arg(warning),
        {"NO", "YES"});
}

void CarSetupTableViewController::showVehicleChangeAlertWithTag(int tag) {
    showAlertWithTag(tag, QStringLiteral("Warning"),
                     QStringLiteral("Choosing a new vehicle profile will clear the sensors you have chosen."),
                     {"Cancel", "OK"});
}

void CarSetupTableViewController::showUpdateErrorAlertWithTag(int tag) {
    showAlertWithTag(
        tag, QStringLiteral("Update error"),
        QStringLiteral("There is no internet connection right now. Please restart the app with internet "
                       "access in order to update vehicle profiles."),
        {"Ok"});
}

void CarSetupTableViewController::showAlertWithTag(int tag, const QString& title, const QString& message,
                                                   const QStringList& buttons) {
    auto alert = std::make_shared<AlertView>(title, message, buttons);
    alert->setClickedHandler([screen = QPointer{this}, tag](int index) {
        // A download must not begin while the alert is still on its way out.
        if (screen) {
            queueTouch(screen.data(), [tag, index](CarSetupTableViewController& self) {
                self.alertViewClickedButtonAtIndex(tag, index);
            });
        }
    });
    showAlert(std::move(alert));
}

void CarSetupTableViewController::alertViewClickedButtonAtIndex(int tag, int index) {
    const auto self = shared_from_this();
    if (m_downloading) return;
    const bool isFirst = index == firstOtherButton;
    // A replay may have begun since the question was asked.
    if (auto alert = isFirst ? m_application->alertDuringPass() : nullptr) {
        refresh();
        deselectRow();
        return showAlert(std::move(alert));
    }
    if (tag == changeOfVehicle) {
        if (isFirst) return updateWorkingVehicle();
        refresh();
        return deselectRow();
    }
    if (isFirst) {
        updateCurrentVehicle(tag);
    } else if (tag >= 0) {
        useOlderCopy(tag);
    } else if (tag == updateOfPicked) {
        close();
    }
}

void CarSetupTableViewController::updateCurrentVehicle(int tag) {
    if (needsDownload(m_currentVehicle)) {
        if (tag == updateOnAppearance) setBusy(rowOf(m_currentVehicle));
        auto updated = m_currentVehicle;
        if (!updateVehicle(updated)) return;
        m_currentVehicle = updated;
        if (tag == updateOfPicked) putIntoList(updated);
    }
    if (needsDownload(m_currentVehicle)) return showUpdateErrorAlertWithTag(rowOf(m_currentVehicle));
    setCurrentVehicle(m_currentVehicle);
    if (tag == updateOfPicked) return close();
    putIntoList(m_currentVehicle);
    refresh();
}

/// After an update that failed: a vehicle that was downloaded earlier is chosen with that download.
void CarSetupTableViewController::useOlderCopy(int row) {
    if (row < static_cast<int>(m_vehicles.size())) {
        const auto& vehicle = m_vehicles[static_cast<std::size_t>(row)];
        if (!vehicle.info().empty()) {
            setCurrentVehicle(vehicle);
            m_currentVehicle = vehicle;
        }
    }
    refresh();
    deselectRow();
}

}  // namespace torv

#include "moc_CarSetupTableViewController.cpp"
