#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "session/iTorvFeeder.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// What became of one value that was written.
struct PushedItem {
    AID aid = 0;
    AV wanted{};
    bool isReset = false;  ///< the write on which the module restores its own values
    bool acknowledged = false;
    std::optional<AV> found{};  ///< what the module held afterwards; nothing when it did not answer
    bool overtaken = false;     ///< of a reset: a profile was pushed before it had ended
};
/// In the order of the writes.
using PassRecord = std::vector<PushedItem>;

/// Until the module has told the value; false once it has not for 21 times. Blocks.
bool readBack(iTorvFeeder& feeder, AID aid);

/// Pushes a tuning profile to the module, or lets the module take its own defaults. Main thread; blocks, and
/// the loop turns meanwhile.
///
/// A connect may bring a replay, and with it another pass, in the middle of one. It writes over what was
/// written before; so the record is brought up to date at the end, and no value is written again.
class TuningPass final {
public:
    /// Before each value: its index, the failed writes so far, and how many values there are.
    using Progress = std::function<void(std::size_t index, std::size_t failed, std::size_t total)>;
    using Cancelled = std::function<bool()>;

    /// Whether each value gets a line in the log.
    enum class Words { few, many };

    TuningPass(std::shared_ptr<iTorvFeeder> feeder, Progress progress, Cancelled cancelled,
               Words words = Words::few)
        : m_feeder(std::move(feeder)),
          m_progress(std::move(progress)),
          m_cancelled(std::move(cancelled)),
          m_words(words) {}

    /// The profile of this name; none, or one that can't be read, sends nothing. The default profile is the
    /// module's own.
    PassRecord push(const std::string& name, const Vehicle& vehicle);
    /// One write, on which the module restores its own values; then each tuning item is read back.
    PassRecord reset(const Vehicle& vehicle);
    /// Writes each value and reads it back; goes on after a failure.
    PassRecord apply(const ProfileDictionary& profile);

private:
    void readAgain(PassRecord& record);
    void tell(const std::string& line) const;

    std::shared_ptr<iTorvFeeder> m_feeder;
    Progress m_progress;
    Cancelled m_cancelled;
    Words m_words;
};

}  // namespace torv
