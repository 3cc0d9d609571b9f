#include "app/Screens.h"

#include <vector>

#include "app/MainMenuViewController.h"
#include "app/PlainViewController.h"
#include "diagnostics/screens/DtcViewController.h"
#include "diagnostics/screens/GroupsViewController.h"
#include "settings/screens/SensorsViewController.h"
#include "settings/screens/SettingsViewController.h"
#include "vehicles/screens/CarSetupTableViewController.h"

namespace torv {

std::shared_ptr<iTorvViewController> Screens::firstPage() const {
    const DashboardScreens others{.mainMenu = [screens = *this] { return screens.mainMenu(); },
                                  .carSetup = [screens = *this] { return screens.carSetup(); }};
    return std::make_shared<iTorvViewController>(m_control, others);
}

std::shared_ptr<ViewController> Screens::carSetup() const {
    return std::make_shared<CarSetupTableViewController>(m_control);
}

std::shared_ptr<ViewController> Screens::mainMenu() const {
    const auto plain = [](const char* title) {
        return MainMenuViewController::Row{
            title, [title] { return std::make_shared<PlainViewController>(QString::fromLatin1(title)); }};
    };
    const auto& control = m_control;
    return std::make_shared<MainMenuViewController>(std::vector<MainMenuViewController::Row>{
        {"Vehicle Setup", [screens = *this] { return screens.carSetup(); }},
        {"Settings", [control] { return std::make_shared<SettingsViewController>(control); }},
        {"Sensor Warnings", [control] { return std::make_shared<SensorsViewController>(control); }},
        plain("Custom Tuning"),
        plain("Data Logging"),
        {"Diagnostics",
         [control] {
             return std::make_shared<GroupsViewController>(control->currentVehicle(), control->feeder());
         }},
        {"DTC's", [control] { return std::make_shared<DtcViewController>(control); }},
    });
}

}  // namespace torv
