#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <set>
#include <string>

#include "FrameCodec.h"

namespace bench {

/// A drive that a handset has recorded, as the frames that brought it. One thread at a time.
///
/// The file is SQLite's; its table "samples" has an aid, a time in nanoseconds and the bytes of the AID's
/// slot: values of one time came in one frame.
class Replay final {
public:
    using Clock = std::chrono::steady_clock;

    /// Nothing, with one line in `error`, when the file is no recording. `speed` 2 plays twice as fast.
    [[nodiscard]] static std::optional<Replay> load(const std::filesystem::path& file, double speed,
                                                    std::string& error);

    [[nodiscard]] const std::set<std::uint8_t>& aids() const { return m_aids; }
    /// The first call begins it.
    void beginAt(Clock::time_point now);
    /// When the next frame is due; nothing once all were taken.
    [[nodiscard]] std::optional<Clock::time_point> due() const;
    /// The next frame's values; `due` says whether there are any.
    [[nodiscard]] std::vector<Item> take();

private:
    struct Sample {
        std::chrono::nanoseconds time;
        Item item;
    };

    std::vector<Sample> m_samples;  // by time
    std::set<std::uint8_t> m_aids;
    std::size_t m_next = 0;
    double m_speed = 1;
    std::optional<Clock::time_point> m_begun;
};

}  // namespace bench
