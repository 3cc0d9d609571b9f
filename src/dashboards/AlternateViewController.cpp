#include "dashboards/AlternateViewController.h"

#include "dashboards/LastViewController.h"

namespace torv {

void AlternateViewController::goToLast() {
    if (progress()) return;
    presentModalViewControllerAnimated(std::make_shared<LastViewController>(application(), screens()), true);
}

}  // namespace torv
