#include "session/ArrivalTimes.h"

#include <algorithm>

namespace torv {
namespace {

using namespace std::chrono_literals;

constexpr auto shortestLimit = 3s;
constexpr int intervalsToOld = 4;
constexpr std::size_t fewestIntervals = 3;

}  // namespace

void ArrivalTimes::record(AID aid, Time now) {
    const std::scoped_lock lock{m_mutex};
    auto& arrivals = m_arrivals[aid];
    if (arrivals.inSession) arrivals.intervals[arrivals.count++ % kept] = now - arrivals.last;
    arrivals.last = now;
    arrivals.inSession = true;
}

void ArrivalTimes::endSession() {
    const std::scoped_lock lock{m_mutex};
    for (auto& [aid, arrivals] : m_arrivals)
        arrivals.inSession = false;
}

bool ArrivalTimes::isOld(AID aid, Time now) const {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_arrivals.find(aid);
    if (found == m_arrivals.end()) return true;
    Duration limit = shortestLimit;
    const auto known = std::min(found->second.count, kept);
    if (known >= fewestIntervals) {
        auto intervals = found->second.intervals;
        const auto middle = intervals.begin() + static_cast<std::ptrdiff_t>(known / 2);
        std::nth_element(intervals.begin(), middle, intervals.begin() + static_cast<std::ptrdiff_t>(known));
        limit = std::max<Duration>(limit, intervalsToOld * *middle);
    }
    return now - found->second.last > limit;
}

}  // namespace torv
