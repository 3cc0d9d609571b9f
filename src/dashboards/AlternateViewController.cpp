#include "dashboards/AlternateViewController.h"

#include "dashboards/LastViewController.h"

namespace torv {

void AlternateViewController::goToLast() {
    if (isHeld()) return;
    presentModalViewControllerAnimated(std::make_shared<LastViewController>(application(), screens()), true);
}

}  // namespace torv

#include "moc_AlternateViewController.cpp"
#include "moc_LastViewController.cpp"
