#pragma once

#include <QRectF>
#include <algorithm>

namespace torv {

/// By how much the window's content has to go up so that a keyboard on the screen doesn't cover the field
/// that is being typed into; never so far that the field's own top is lost. Both as they lie in the window,
/// in its pixels; an empty keyboard is none.
[[nodiscard]] inline double shiftToUncover(const QRectF& field, const QRectF& keyboard) {
    constexpr double gap = 8;
    if (keyboard.isEmpty() || field.right() <= keyboard.left() || field.left() >= keyboard.right()) return 0;
    const double covered = field.bottom() + gap - keyboard.top();
    return std::clamp(covered, 0.0, std::max(field.top(), 0.0));
}

}  // namespace torv
