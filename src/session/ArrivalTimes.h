#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>

#include "support/AV.h"

namespace torv {

/// When each AID last arrived at the store, and how often it usually comes: what tells a live value from an
/// old one. Any thread.
///
/// A value is old after 3 seconds, or four times its usual interval if that is longer. The usual interval is
/// the median of the last few, so that a single long pause changes little; it counts once three are known.
/// The pause between two sessions is no interval.
class ArrivalTimes final {
public:
    using Time = std::chrono::steady_clock::time_point;

    void record(AID aid, Time now);
    void endSession();
    /// True also for an AID that has never arrived.
    [[nodiscard]] bool isOld(AID aid, Time now) const;
    /// The same for a value of this AID that came at `then`.
    [[nodiscard]] bool isOld(Time then, AID aid, Time now) const;
    /// When it last arrived, in this session or an earlier one; nothing when it never has.
    [[nodiscard]] std::optional<Time> last(AID aid) const;

private:
    using Duration = std::chrono::steady_clock::duration;
    static constexpr std::size_t kept = 7;

    struct Arrivals {
        Time last{};
        bool inSession = false;
        std::array<Duration, kept> intervals{};
        std::size_t count = 0;  // of all intervals so far
    };

    [[nodiscard]] static Duration limit(const Arrivals& arrivals);

    mutable std::mutex m_mutex;
    std::map<AID, Arrivals> m_arrivals;
};

}  // namespace torv
