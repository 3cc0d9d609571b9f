#pragma once

#include <chrono>

namespace torv {

/// Where a needle is between its old angle and its new one. Degrees. Main thread.
///
/// From rest it eases in and out and stands still at the target once the duration is over. A target that
/// comes before that takes the needle up where it is and as fast as it is: it never jumps and never falls
/// behind for good.
class NeedleMotion final {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Seconds = std::chrono::duration<double>;

    explicit NeedleMotion(Seconds duration) : m_duration(duration) {}

    /// Still, at this angle.
    void rest(double angle);
    /// An angle that is not finite is ignored; others end at 3600 either way.
    void aim(double angle, Time now);

    [[nodiscard]] double angle(Time now) const;
    [[nodiscard]] bool atRest(Time now) const { return progress(now) >= 1; }
    [[nodiscard]] double target() const { return m_to; }

private:
    [[nodiscard]] double progress(Time now) const;
    [[nodiscard]] double speed(Time now) const;

    Seconds m_duration;
    double m_from = 0;
    double m_to = 0;
    double m_speed = 0;  // degrees for the whole duration, at its start
    Time m_begin = Time::min();
};

}  // namespace torv
