#pragma once

#include <QString>
#include <optional>

namespace torv {

/// Whether a window that stands upright shows landscape screens turned, as phones do whose shell turns
/// nothing.
enum class Turn { automatic, left, right, never };

/// "auto", "left", "right" or "never".
[[nodiscard]] std::optional<Turn> turnFromText(const QString& text);

struct WindowState {
    bool fullScreen = false;
    bool upright = false;         ///< the window is higher than wide
    bool portraitScreen = false;  ///< what is shown stands upright itself
};

/// Degrees clockwise: -90, 0 or 90. An ordinary window is turned only on request.
[[nodiscard]] int turnOf(Turn turn, const WindowState& window);

}  // namespace torv
