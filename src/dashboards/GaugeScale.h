#pragma once

#include <QPointF>
#include <QSizeF>
#include <cstdint>
#include <functional>
#include <vector>

#include "dashboards/GaugeDial.h"

namespace torv {

/// The marks around a dial: ticks every few degrees, every so many of them major, and numbers beside the
/// major ones of the main dial. Points, in the gauge's own coordinates. Any thread.
struct GaugeScale {
    struct Tick {
        double degrees;  ///< rotation from straight up
        double width;
        bool warning;
        bool major;
    };
    struct Label {
        QPointF position;  ///< top left corner
        double width;
        std::int64_t value;
    };

    std::vector<Tick> ticks;
    std::vector<Label> labels;
    double markUnit = 0;  ///< degrees from tick to tick
    QPointF pivot;
    double outerRadius = 0;
    double innerRadius = 0;

    static constexpr double labelHeight = 13;

    /// Empty for tiles. `milesPerHour`: wider steps, and marks rounded up to whole numbers.
    [[nodiscard]] static GaugeScale make(const GaugeDial& dial, std::int32_t style, QSizeF size,
                                         bool milesPerHour, const std::function<bool(double)>& inWarning);

private:
    void addLabel(std::int64_t degree, double rotation, std::int64_t value, QSizeF size);
};

}  // namespace torv
