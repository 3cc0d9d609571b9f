#include "dashboards/GaugeDial.h"

namespace torv {
namespace {

/// Ranges come from documents: the difference of two far ones wraps.
double difference(std::int64_t a, std::int64_t b) {
    return static_cast<double>(
        static_cast<std::int64_t>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b)));
}

}  // namespace

double GaugeDial::degreeUnit() const {
    return difference(maximumDegree, minimumDegree) / difference(maximumValue, minimumValue);
}

double GaugeDial::degreesForValue(double value) const {
    const double offset = minimumValue < 0 ? value - static_cast<double>(minimumValue) : value;
    return degreeUnit() * offset + static_cast<double>(minimumDegree) - static_cast<double>(initialDegree);
}

double GaugeDial::valueForDegree(double degrees) const {
    const double value =
        (static_cast<double>(initialDegree) + degrees - static_cast<double>(minimumDegree)) / degreeUnit();
    return minimumDegree < 0 ? value + static_cast<double>(minimumValue) : value;
}

double GaugeDial::neutralValue() const {
    return difference(initialDegree, minimumDegree) / degreeUnit();
}

double GaugeDial::degreesForMark(std::int64_t mark, double markUnit) {
    const double degrees = static_cast<double>(mark) * markUnit;
    return degrees > 180 ? degrees - 360 : degrees;
}

std::int32_t GaugeDial::quadrant(std::int64_t degree) {
    if (degree == 0) return 7;
    if (degree > 0 && degree < 90) return 0;
    if (degree == 90) return 4;
    if (degree > 90 && degree < 180) return 1;
    if (degree == 180) return 5;
    if ((degree > 180 && degree < 270) || (degree > -180 && degree < -90)) return 2;
    return degree % 90 == 0 ? 6 : 3;
}

}  // namespace torv
