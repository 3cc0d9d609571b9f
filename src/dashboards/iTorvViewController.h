#pragma once

#include <memory>

#include "dashboards/DashboardViewController.h"

namespace torv {

/// The first page, the root of the application: a main dial and four side dials. Main thread.
class iTorvViewController final : public torv::DashboardViewController {
    Q_OBJECT

public:
    iTorvViewController(std::shared_ptr<iTorvAppDelegate> application, DashboardScreens screens);

    /// The first time ever, the way to the choice of a vehicle.
    void viewDidAppear() override;
    void leftSwipe() override { goToAlternate(); }
    void goToAlternate();

private:
    bool m_isntFirstRun;
};

}  // namespace torv
