#pragma once

#include <QString>
#include <optional>

namespace torv {

/// Whether a window that stands upright shows landscape screens turned. `automatic` is for phones: to the
/// right where the window fills the screen. No Wayland compositor is known to turn the screen for a program,
/// and one that turns it for its user makes the window wide, so that nothing is left to turn.
enum class Turn { automatic, left, right, never };

/// "auto", "left", "right" or "never".
[[nodiscard]] std::optional<Turn> turnFromText(const QString& text);

struct WindowState {
    bool fullScreen = false;
    bool upright = false;         ///< the window is higher than wide
    bool portraitScreen = false;  ///< what is shown stands upright itself
};

/// Degrees clockwise: -90, 0 or 90.
[[nodiscard]] int turnOf(Turn turn, const WindowState& window);

}  // namespace torv
