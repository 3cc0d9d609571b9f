#pragma once

#include <chrono>
#include <optional>
#include <set>

#include "platform/RunLoop.h"
#include "support/AV.h"

namespace torv {

/// Decides when a warning is heard: with a sensor's first value beyond its limit, and never twice within ten
/// seconds, whichever sensors they are. What came within those is not made up for. Main thread.
class WarningAlarm final {
public:
    using Time = RunLoop::Clock::time_point;

    /// True when a tone is due. Any number of times for one warning.
    [[nodiscard]] bool began(AID aid, Time now);
    void ended(AID aid) { m_inWarning.erase(aid); }

private:
    static constexpr std::chrono::seconds pause{10};

    std::set<AID> m_inWarning;
    std::optional<Time> m_last;
};

}  // namespace torv
