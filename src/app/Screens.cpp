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

void Screens::presentImport(ViewController& page) const {
    if (!m_control->importVehicleInfo() && !m_control->importTrouble()) return;
    const auto screen = std::make_shared<CustomTuningViewController>(m_control);
    screen->setImportVehicleInfo(m_control->importVehicleInfo());
    screen->setImportTrouble(QString::fromStdString(m_control->importTrouble().value_or(std::string{})));
    auto* top = &page;  // the choice of a vehicle may lie over it
    while (top->presentedViewController())
        top = top->presentedViewController();
    top->presentModalViewControllerAnimated(std::make_shared<NavigationController>(screen), false);
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
