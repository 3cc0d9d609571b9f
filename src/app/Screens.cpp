#include "app/Screens.h"

#include <vector>

#include "app/MainMenuViewController.h"
#include "diagnostics/screens/GroupsViewController.h"

namespace torv {

std::shared_ptr<iTorvViewController> Screens::firstPage() const {
    const DashboardScreens others{.mainMenu = [screens = *this] { return screens.mainMenu(); },
                                  .carSetup = {}};
    return std::make_shared<iTorvViewController>(m_control, others);
}

std::shared_ptr<ViewController> Screens::mainMenu() const {
    const auto diagnostics = [control = m_control]() -> std::shared_ptr<ViewController> {
        return std::make_shared<GroupsViewController>(control->currentVehicle(), control->feeder());
    };
    return std::make_shared<MainMenuViewController>(
        std::vector<MainMenuViewController::Row>{{"Diagnostics", diagnostics}});
}

}  // namespace torv
