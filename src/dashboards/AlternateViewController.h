#pragma once

#include <memory>

#include "dashboards/DashboardViewController.h"

namespace torv {

/// The second page: a main dial and nine digital tiles. Main thread.
class AlternateViewController final : public torv::DashboardViewController {
    Q_OBJECT

public:
    AlternateViewController(std::shared_ptr<iTorvAppDelegate> application, DashboardScreens screens)
        : DashboardViewController(secondPageTraits(), std::move(application), std::move(screens)) {}

    void leftSwipe() override { goToLast(); }
    void rightSwipe() override { goTofirst(); }
    void goToLast();
    /// Also while an overlay stands on the page.
    void goTofirst() { goBackOnePage(); }
};

}  // namespace torv
