#pragma once

#include <string_view>

namespace torv {

/// True for a machine with a touch screen and no keyboard, from what Linux lists in /proc/bus/input/devices.
[[nodiscard]] bool lacksKeyboard(std::string_view devices);

/// Where a touch screen has neither a keyboard nor an input method of the desktop, Qt's own keyboard comes up
/// for each field, if it is installed. It is loaded by Qt and never linked. Before any Qt object; main
/// thread.
void chooseOnScreenKeyboard();

}  // namespace torv
