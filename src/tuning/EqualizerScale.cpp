#include "tuning/EqualizerScale.h"

#include <cmath>

#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr double tenth = 0.1F;  // in single precision, and then widened
constexpr int tickCount = 11;

}  // namespace

double EqualizerScale::increment() const {
    return (m_max - m_min) * tenth;
}

std::vector<EqualizerScale::Tick> EqualizerScale::ticks(double width, double height, bool isLabeled) const {
    const double step = height * tenth;
    std::vector<Tick> ticks;
    for (int i = 0; i < tickCount; ++i) {
        const float value = std::round(static_cast<float>(m_max - i * increment())) + 0.0F;  // no "-0"
        const bool isLong = i % 2 == 0;
        Tick tick{.x = isLong ? 0 : width / 2,
                  .y = i * step - (i == tickCount - 1 ? tickHeight : 0),
                  .width = isLong ? width : width / 2,
                  .highlighted = value == m_highlight,
                  .label = {}};
        // The top value has a label of the screen's own.
        if (isLabeled && isLong && i > 0) {
            tick.label = fixedText(value, 0);
            tick.labelTop = i * step - labelHeight;
        }
        ticks.push_back(std::move(tick));
    }
    return ticks;
}

}  // namespace torv
