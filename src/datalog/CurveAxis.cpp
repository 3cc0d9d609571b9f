#include "datalog/CurveAxis.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::array<double, 5> roundSteps{1, 2, 2.5, 5, 10};
constexpr double widest = 1e15;  // values further out don't widen a scale

}  // namespace

CurveAxis::CurveAxis(double low, double high) {
    low = std::clamp(low, -widest, widest);
    high = std::clamp(high, low, widest);
    // A curve that does not move stands in the middle.
    const double range = std::max(high - low, std::max(std::abs(high), 1.0) * 1e-3);
    for (double power = std::pow(10, std::floor(std::log10(range / parts)));; power *= 10) {
        for (const double step : roundSteps) {
            m_step = step * power;
            m_low = std::floor(low / m_step) * m_step;
            if (this->high() >= high && parts * m_step >= range) return;
        }
    }
}

std::string CurveAxis::textAt(int line) const {
    // Digits enough for the step, which has at most two significant ones.
    constexpr double tolerance = 1e-6;
    constexpr int mostDigits = 6;
    int digits = 0;
    double scaled = m_step;
    while (digits < mostDigits && std::abs(scaled - std::round(scaled)) > tolerance * scaled) {
        scaled *= 10;
        ++digits;
    }
    return fixedText(m_low + line * m_step, digits);
}

double timeStep(double seconds, int most) {
    constexpr std::array<double, 17> steps{0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1,   2,   5,
                                           10,   15,   30,   60,  120, 300, 600, 1800};
    const double least = seconds / std::max(most, 1);
    const auto found = std::ranges::find_if(steps, [least](double step) { return step >= least; });
    constexpr double hour = 3600;
    return found != steps.end() ? *found : std::ceil(least / hour) * hour;
}

}  // namespace torv
