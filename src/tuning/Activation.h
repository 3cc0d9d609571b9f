#pragma once

#include <memory>
#include <string>

#include "tuning/PassReport.h"
#include "tuning/TuningPass.h"

namespace torv {

/// What the user starts: a pass over one profile, and what is remembered of it. Main thread; blocks, and the
/// loop turns meanwhile.
class Activation final {
public:
    Activation(std::shared_ptr<iTorvFeeder> feeder, Vehicle vehicle)
        : m_feeder(std::move(feeder)), m_vehicle(std::move(vehicle)) {}

    /// The profile of this name, or the module's own values. The first push to a vehicle keeps what its
    /// module held.
    PassReport push(const std::string& name, TuningPass::Progress progress, TuningPass::Cancelled cancelled,
                    TuningPass::Words words = TuningPass::Words::many);
    /// These values alone, once more.
    PassReport pushAgain(const ProfileDictionary& values, TuningPass::Progress progress,
                         TuningPass::Cancelled cancelled);
    /// From now on it is the active profile, whatever failed. Posts "customTuningSettingsUpdated".
    static void setActive(const std::string& name);

private:
    const std::shared_ptr<iTorvFeeder> m_feeder;
    const Vehicle m_vehicle;
};

}  // namespace torv
