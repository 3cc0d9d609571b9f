#pragma once

#include <Qt>
#include <cstdint>

namespace torv {

/// What is to be typed, for a keyboard on the screen. Any other number is the usual keyboard.
enum KeyboardType : std::int64_t {
    usualKeyboard = 0,
    numbersAndPunctuation = 2,
    numberPad = 4,
};

/// The same for the platform's input methods. A number may have a sign on the number pad too: ranges may
/// begin below 0.
[[nodiscard]] inline Qt::InputMethodHints hintsForKeyboard(std::int64_t keyboardType) {
    switch (keyboardType) {
        case numberPad:
        case numbersAndPunctuation:
            return Qt::ImhFormattedNumbersOnly;
        default:
            return Qt::ImhNone;
    }
}

}  // namespace torv
