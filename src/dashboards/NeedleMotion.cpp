#include "dashboards/NeedleMotion.h"

#include <algorithm>
#include <cmath>

namespace torv {
namespace {

constexpr double farthest = 3600;

}  // namespace

void NeedleMotion::rest(double angle) {
    m_from = m_to = angle;
    m_speed = 0;
    m_begin = Time::min();
}

void NeedleMotion::aim(double angle, Time now) {
    if (!std::isfinite(angle)) return;
    const double speedNow = speed(now);
    m_from = this->angle(now);
    m_speed = speedNow;
    m_to = std::clamp(angle, -farthest, farthest);
    m_begin = now;
}

double NeedleMotion::progress(Time now) const {
    if (m_begin == Time::min()) return 1;
    return std::clamp(Seconds{now - m_begin} / m_duration, 0.0, 1.0);
}

// A cubic Hermite curve that ends at rest; from rest it is 3t^2 - 2t^3.
double NeedleMotion::angle(Time now) const {
    const double t = progress(now);
    if (t >= 1) return m_to;
    return m_from + m_speed * t * (1 - t) * (1 - t) + (m_to - m_from) * t * t * (3 - 2 * t);
}

double NeedleMotion::speed(Time now) const {
    const double t = progress(now);
    if (t >= 1) return 0;
    return m_speed * (1 - t) * (1 - 3 * t) + (m_to - m_from) * 6 * t * (1 - t);
}

}  // namespace torv
