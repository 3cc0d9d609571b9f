#pragma once

#include <memory>
#include <utility>

#include "dashboards/DashboardViewController.h"

namespace torv {

/// The third page: nine digital tiles and nothing else. Main thread.
class LastViewController final : public torv::DashboardViewController {
    Q_OBJECT

public:
    LastViewController(std::shared_ptr<iTorvAppDelegate> application, DashboardScreens screens)
        : DashboardViewController(thirdPageTraits(), std::move(application), std::move(screens)) {}

    void rightSwipe() override { goTofirst(); }
    /// Back one page, and not to the first.
    void goTofirst() {
        if (!isHeld()) goBackOnePage();
    }
};

}  // namespace torv
