#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace torv {

/// True for a machine with a touch screen and no keyboard, from what Linux lists in /proc/bus/input/devices.
[[nodiscard]] bool lacksKeyboard(std::string_view devices);

/// What counts for and against Qt's own keyboard.
struct KeyboardSurroundings {
    bool inputMethodChosen = false;  ///< by the desktop or the user
    bool wayland = false;            ///< the window is shown by a compositor that may have a keyboard itself
    std::optional<std::vector<std::string>> globals;  ///< its interfaces; nothing when it can't be asked
    std::string devices;                              ///< as Linux lists them
};
[[nodiscard]] bool needsOwnKeyboard(const KeyboardSurroundings& surroundings);

/// Where a touch screen has neither a keyboard nor an input method of the desktop, Qt's own keyboard comes up
/// for each field, if it is installed. It is loaded by Qt and never linked. Before any Qt object; main
/// thread.
void chooseOnScreenKeyboard();

}  // namespace torv
