#include "dashboards/iTorvViewController.h"

#include <utility>

#include "dashboards/AlternateViewController.h"
#include "platform/StoredKeys.h"

namespace torv {

iTorvViewController::iTorvViewController(std::shared_ptr<iTorvAppDelegate> application,
                                         DashboardScreens screens)
    : DashboardViewController(firstPageTraits(), std::move(application), std::move(screens)),
      m_isntFirstRun(Platform::current().userDefaults().objectForKey(firstRunKey).boolValue()) {}

void iTorvViewController::viewDidAppear() {
    if (std::exchange(m_isntFirstRun, true)) return;
    pushCarSetupTableViewController();
}

void iTorvViewController::goToAlternate() {
    if (isHeld()) return;
    presentModalViewControllerAnimated(std::make_shared<AlternateViewController>(application(), screens()),
                                       true);
}

}  // namespace torv

#include "moc_iTorvViewController.cpp"
