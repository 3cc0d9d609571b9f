#include "dashboards/GaugeScale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "dashboards/GaugeStyle.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr double tickBegin = 10;  // from the top of the drawing, which is inset from the gauge's frame
constexpr double tickEnd = 15;
constexpr double labelTop = 20;
constexpr double signWidth = 8;
constexpr double mainInset = 0.0721;
constexpr double otherInset = 0.08;

struct Steps {
    double degrees;
    std::int64_t majorLimit;
};
constexpr Steps usualSteps{5, 7};
constexpr Steps mphSteps{6.92307710647583, 8};

/// How a label is moved from its mark, by quadrant: how much of its own width to the left, and how far down.
struct Lean {
    double widths;
    double down;
};
constexpr std::array<Lean, 8> leans{{
    {0, -6},
    {1, 0},
    {1, -6},
    {0, 0},
    {0, 0},
    {1, 0},
    {0, 0},
    {0, -6},
}};
constexpr std::int32_t rightUpper = 1;
constexpr std::int64_t steepUntil = 125;

}  // namespace

GaugeScale GaugeScale::make(const GaugeDial& dial, std::int32_t style, QSizeF size, bool milesPerHour,
                            const std::function<bool(double)>& inWarning) {
    GaugeScale scale;
    if (gaugeStyle(style).tile) return scale;
    const bool main = style == mainGaugeStyle;
    const double inset = size.width() * (main ? mainInset : otherInset);
    scale.pivot = {size.width() * 0.5, size.height() * 0.5};
    scale.outerRadius = scale.pivot.y() - inset - tickBegin;
    scale.innerRadius = scale.pivot.y() - inset - tickEnd;

    const auto [step, majorLimit] = milesPerHour ? mphSteps : usualSteps;
    const double count = 360 / step;
    scale.markUnit = 360 / count;
    const double width = main ? 3 : 2;
    const auto initial = static_cast<double>(dial.initialDegree);
    const bool wraps = dial.minimumDegree < dial.initialDegree;
    const double begin = static_cast<double>(dial.minimumDegree) + (wraps ? 360 : 0);
    const auto low = longLongFromDouble((begin - initial) / step);
    const auto high = longLongFromDouble((static_cast<double>(dial.maximumDegree) - initial) / step);

    std::vector<std::int64_t> marks;
    for (std::int64_t i = 0; static_cast<double>(i) < count; ++i) {
        if (wraps ? i > high && i < low : i > high || i < low) continue;
        double value = dial.valueForDegree(GaugeDial::degreesForMark(i, scale.markUnit));
        if (milesPerHour) value = std::ceil(value);
        const auto mark = longLongFromDouble(value);
        marks.push_back(mark);
        scale.ticks.push_back(
            {static_cast<double>(i) * step, width / 3, inWarning(static_cast<double>(mark)), false});
    }
    std::sort(marks.begin(), marks.end());

    const auto interval = static_cast<std::int64_t>(marks.size()) / majorLimit + 1;
    const double start = static_cast<double>(dial.minimumDegree) - initial;
    std::int64_t majors = 0;
    for (std::int64_t j = 0; static_cast<double>(j) < count && majors < majorLimit; j += interval) {
        if (j >= static_cast<std::int64_t>(marks.size())) break;
        const auto mark = marks[static_cast<std::size_t>(j)];
        const double rotation = start + static_cast<double>(j) * step;
        scale.ticks.push_back({rotation, width, inWarning(static_cast<double>(mark)), true});
        ++majors;
        if (main) {
            scale.addLabel(longLongFromDouble(static_cast<double>(j) * scale.markUnit), rotation, mark, size);
        }
    }
    return scale;
}

void GaugeScale::addLabel(std::int64_t degree, double rotation, std::int64_t value, QSizeF size) {
    const auto quadrant = GaugeDial::quadrant(degree);
    const double labelWidth = signWidth * static_cast<double>(std::to_string(value).size());
    auto [widths, down] = leans[static_cast<std::size_t>(quadrant)];
    if (quadrant == rightUpper && degree <= steepUntil) widths = 0.5;
    const bool begins = quadrant == 0 || quadrant == 7;

    // Just inside the tick, turned about the pivot with it; the drawing's own inset is that of the main dial.
    const double inset = size.width() * mainInset;
    const double x = size.width() * 0.5 - size.width() * otherInset + inset - pivot.x();
    const double y = labelTop + inset - pivot.y();
    const double angle = GaugeDial::radians(rotation);
    const QPointF mark{pivot.x() + x * std::cos(angle) - y * std::sin(angle),
                       pivot.y() + x * std::sin(angle) + y * std::cos(angle)};
    labels.push_back({mark + QPointF{(begins ? 2 : 0) - widths * labelWidth, down}, labelWidth, value});
}

}  // namespace torv
