#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "session/iTorvFeeder.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// Pushes a tuning profile to the module, or lets the module take its own defaults. Main thread; blocks, and
/// the loop turns meanwhile.
class TuningPass final {
public:
    /// Before each value: its index, the failed writes so far, and how many values there are.
    using Progress = std::function<void(std::size_t index, std::size_t failed, std::size_t total)>;
    using Cancelled = std::function<bool()>;

    TuningPass(std::shared_ptr<iTorvFeeder> feeder, Progress progress, Cancelled cancelled)
        : m_feeder(std::move(feeder)), m_progress(std::move(progress)), m_cancelled(std::move(cancelled)) {}

    /// One write, on which the module restores its own values; then each tuning item is read back.
    void reset(const Vehicle& vehicle);
    /// Writes each value and reads it back; goes on after a failure.
    void apply(const ProfileDictionary& profile);

private:
    void readBack(AID aid);

    std::shared_ptr<iTorvFeeder> m_feeder;
    Progress m_progress;
    Cancelled m_cancelled;
};

}  // namespace torv
