#include "app/Screens.h"

#include <vector>

#include "app/MainMenuViewController.h"
#include "connection/screens/ConnectionViewController.h"
#include "datalog/screens/DataLogViewController.h"
#include "diagnostics/screens/DtcViewController.h"
#include "diagnostics/screens/GroupsViewController.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "screens/NavigationController.h"
#include "settings/screens/SensorsViewController.h"
#include "settings/screens/SettingsViewController.h"
#include "tuning/screens/CustomTuningViewController.h"
#include "tuning/screens/DamagedListAlert.h"
#include "tuning/screens/PassReportViewController.h"
#include "vehicles/screens/CarSetupTableViewController.h"

namespace torv {

std::shared_ptr<iTorvViewController> Screens::firstPage() const {
    const DashboardScreens others{
        .mainMenu = [screens = *this] { return screens.mainMenu(); },
        .carSetup = [screens = *this] { return screens.carSetup(); },
        .passReport =
            [control = m_control](const PassReport& report) {
                const auto name = defaults().objectForKey(activeProfileKey).textValue();
                return std::make_shared<PassReportViewController>(
                    control, QString::fromStdString(name.value_or(std::string{})), report);
            }};
    auto page = std::make_shared<iTorvViewController>(m_control, others);
    m_control->recorder().setFailed([page = std::weak_ptr{page}](const std::string& why) {
        const auto shown = page.lock();
        if (!shown) return;
        shown->showAlert(
            std::make_shared<AlertView>("Recording stopped", QString::fromStdString(why), QStringList{"OK"}));
    });
    return page;
}

std::unique_ptr<Stage> Screens::stage(std::shared_ptr<iTorvViewController> page, LinkStatus* status) const {
    auto stage = std::make_unique<Stage>(std::move(page), status);
    m_control->recorder().setChanged([control = m_control.get(), shown = QPointer{stage.get()}] {
        if (shown) shown->setMark(QStringLiteral("Recording"), control->recorder().isRecording());
    });
    stage->setStatusTouched([screens = *this, shown = QPointer{stage.get()}] {
        if (shown) screens.presentConnection(*shown);
    });
    return stage;
}

void Screens::presentConnection(Stage& stage) const {
    const auto* const stack = qobject_cast<NavigationController*>(stage.top());
    if (stack && qobject_cast<ConnectionViewController*>(stack->topViewController())) return;
    stage.top()->presentModalViewControllerAnimated(
        std::make_shared<NavigationController>(
            std::make_shared<ConnectionViewController>(m_control, *stage.display())),
        true);
}

std::shared_ptr<ViewController> Screens::carSetup() const {
    return std::make_shared<CarSetupTableViewController>(m_control);
}

void Screens::presentFirst(ViewController& page) const {
    if (!m_control->importVehicleInfo() && !m_control->importTrouble()) return askAboutDamagedList(page, {});
    const auto screen = std::make_shared<CustomTuningViewController>(m_control);
    screen->setImportVehicleInfo(m_control->importVehicleInfo());
    screen->setImportTrouble(m_control->importTrouble());
    page.presentOverAll(screen, false);  // the choice of a vehicle may lie over it
}

void Screens::askToEnd(ViewController* page, const std::function<void(bool)>& answer) const {
    if (!m_control->isPassUnderWay() || !page) return answer(true);
    auto alert = std::make_shared<AlertView>(
        "Import a file?", "Settings are on their way to the module. The import begins anew, and ends that.",
        QStringList{"Go on", "Import"});
    alert->setDismissedHandler([answer](int index) { answer(index == 1); });
    page->showAlert(std::move(alert));
}

std::shared_ptr<ViewController> Screens::mainMenu() const {
    const auto& control = m_control;
    return std::make_shared<MainMenuViewController>(std::vector<MainMenuViewController::Row>{
        {"Vehicle Setup", [screens = *this] { return screens.carSetup(); }},
        {"Settings", [control] { return std::make_shared<SettingsViewController>(control); }},
        {"Sensor Warnings", [control] { return std::make_shared<SensorsViewController>(control); }},
        {"Custom Tuning", [control] { return std::make_shared<CustomTuningViewController>(control); }},
        {"Data Logging", [control] { return std::make_shared<DataLogViewController>(control); }},
        {"Diagnostics",
         [control] {
             return std::make_shared<GroupsViewController>(control->currentVehicle(), control->feeder());
         }},
        {"DTC's", [control] { return std::make_shared<DtcViewController>(control); }},
    });
}

}  // namespace torv
