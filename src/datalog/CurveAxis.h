#pragma once

#include <string>

namespace torv {

/// A scale with four equal parts between round numbers, so that several beside one grid share its lines. One
/// thread at a time.
class CurveAxis final {
public:
    static constexpr int parts = 4;

    CurveAxis() = default;
    /// The finest that shows both values.
    CurveAxis(double low, double high);

    [[nodiscard]] double low() const { return m_low; }
    [[nodiscard]] double high() const { return m_low + parts * m_step; }
    /// 0 at the low end, 1 at the high one.
    [[nodiscard]] double placeOf(double value) const { return (value - m_low) / (parts * m_step); }
    /// The number at a line of the grid, 0 the lowest.
    [[nodiscard]] std::string textAt(int line) const;

private:
    double m_low = 0;
    double m_step = 1;
};

/// The distance of marks on a time axis, in seconds: at most `most` of them over so many seconds.
[[nodiscard]] double timeStep(double seconds, int most);

}  // namespace torv
