#pragma once

#include <cstdint>

namespace torv {

/// The arithmetic of a dial: values to angles and back. Any thread.
///
/// Angles are in degrees and grow clockwise; 90 is straight up and 0 lies at nine o'clock. Rotations count
/// from the needle's picture, which points to `initialDegree`. Nothing is guarded: a scale without a range
/// gives infinite angles or none, and a value off the scale an angle off the arc.
struct GaugeDial {
    std::int64_t minimumDegree = -45;
    std::int64_t maximumDegree = 225;
    std::int64_t minimumValue = 0;
    std::int64_t maximumValue = 60;
    std::int64_t initialDegree = 90;

    /// Degrees for each unit of value.
    [[nodiscard]] double degreeUnit() const;
    /// The needle's rotation. Only a scale that begins below 0 is offset: on one that begins above 0 the
    /// needle stands that far along the arc at its lowest value.
    [[nodiscard]] double degreesForValue(double value) const;
    /// The value at a rotation. Here it is the arc, and not the scale, that has to begin below 0 for the
    /// minimum to be added; the colours of ticks come from this.
    [[nodiscard]] double valueForDegree(double degrees) const;
    /// The value at which the needle stands as drawn, where the minimum is not negative.
    [[nodiscard]] double neutralValue() const;

    /// The rotation of a tick, from -180 to 180, when ticks are `markUnit` degrees apart.
    [[nodiscard]] static double degreesForMark(std::int64_t mark, double markUnit);
    [[nodiscard]] static double radians(double degrees) { return degrees * 0.017453292519943295; }
    /// Which way a label of the scale leans, by the whole degrees from the scale's start.
    [[nodiscard]] static std::int32_t quadrant(std::int64_t degree);
};

}  // namespace torv
