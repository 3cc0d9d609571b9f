#pragma once

#include <string>
#include <vector>

namespace torv {

/// The ticks of an equalizer's scale, from the top down. Lengths are points. One thread at a time.
class EqualizerScale final {
public:
    struct Tick {
        double x = 0;
        double y = 0;
        double width = 0;
        bool highlighted = false;
        std::string label;  ///< right-aligned above the tick; empty for none
        double labelTop = 0;
    };

    static constexpr double tickHeight = 2;
    static constexpr double labelHeight = 16;

    EqualizerScale(double min, double max, double highlight)
        : m_min(min), m_max(max), m_highlight(highlight) {}

    [[nodiscard]] double increment() const;
    /// Eleven: a tenth of the height apart, every other one half as wide, the one at the highlighted value
    /// marked.
    [[nodiscard]] std::vector<Tick> ticks(double width, double height, bool isLabeled) const;

private:
    double m_min;
    double m_max;
    double m_highlight;
};

}  // namespace torv
