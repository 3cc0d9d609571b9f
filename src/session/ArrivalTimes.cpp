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

ArrivalTimes::Duration ArrivalTimes::limit(const Arrivals& arrivals) {
    const auto known = std::min(arrivals.count, kept);
    if (known < fewestIntervals) return shortestLimit;
    auto intervals = arrivals.intervals;
    const auto middle = intervals.begin() + static_cast<std::ptrdiff_t>(known / 2);
    std::nth_element(intervals.begin(), middle, intervals.begin() + static_cast<std::ptrdiff_t>(known));
    return std::max<Duration>(shortestLimit, intervalsToOld * *middle);
}

bool ArrivalTimes::isOld(AID aid, Time now) const {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_arrivals.find(aid);
    return found == m_arrivals.end() || now - found->second.last > limit(found->second);
}

bool ArrivalTimes::isOld(Time then, AID aid, Time now) const {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_arrivals.find(aid);
    return now - then > (found == m_arrivals.end() ? Duration{shortestLimit} : limit(found->second));
}

std::optional<ArrivalTimes::Time> ArrivalTimes::last(AID aid) const {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_arrivals.find(aid);
    return found == m_arrivals.end() ? std::nullopt : std::optional{found->second.last};
}

}  // namespace torv
