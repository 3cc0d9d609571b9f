#pragma once

#include <functional>

#include "screens/ViewController.h"

namespace torv {

/// Where a list of tuning profiles ended an earlier process: says over all where it is, and asks what becomes
/// of it. `readable` follows once there is a list that can be read, the old one or a new one. Main thread.
void askAboutDamagedList(ViewController& screen, const std::function<void()>& readable);

}  // namespace torv
