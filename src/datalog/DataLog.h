#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "support/AV.h"

namespace torv {

/// What the sensors have shown so far: by AID a minimum, a maximum, and the last 10000 samples. In memory
/// only. Main thread.
///
/// Minimum values count only once AID 78, the engine's speed, has been seen at 501 or above. Until there is a
/// minimum the maximum is the latest value, also that of AID 78 itself. Both are kept as they are.
class DataLog final {
public:
    using Clock = std::chrono::system_clock;
    static constexpr std::size_t sampleLimit = 10000;

    struct Sample {
        float value = 0;
        Clock::time_point time;
    };

    void record(AID aid, float value, Clock::time_point time);

    [[nodiscard]] bool empty() const { return m_series.empty(); }
    [[nodiscard]] std::optional<float> minimum(AID aid) const;
    [[nodiscard]] std::optional<float> maximum(AID aid) const;
    /// 0 is the oldest.
    [[nodiscard]] std::size_t sampleCount(AID aid) const;
    [[nodiscard]] Sample sample(AID aid, std::size_t index) const;

private:
    /// A ring whose whole memory is taken with its first sample, so that a long drive needs no more.
    struct Series {
        std::optional<float> minimum;
        std::optional<float> maximum;
        std::vector<float> values = std::vector<float>(sampleLimit);
        std::vector<Clock::time_point> times = std::vector<Clock::time_point>(sampleLimit);
        std::size_t first = 0;
        std::size_t count = 0;
    };

    [[nodiscard]] const Series* seriesOf(AID aid) const;

    std::map<AID, Series> m_series;
};

}  // namespace torv
