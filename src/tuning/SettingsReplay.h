#pragma once

#include "tuning/PassReport.h"
#include "tuning/TuningPass.h"

namespace torv {

/// Brings the module back to what this handset has stored: its device settings, then the active tuning
/// profile. Main thread; blocks, and the loop turns meanwhile.
class SettingsReplay final {
public:
    SettingsReplay(std::shared_ptr<iTorvFeeder> feeder, Vehicle vehicle)
        : m_feeder(std::move(feeder)), m_vehicle(std::move(vehicle)) {}

    /// The first one ever makes the default profile the active one. What the store holds and can't be read is
    /// not sent, and nothing is sent in its place: with the vehicle unknown nothing is sent, with the active
    /// profile unknown no tuning. Once `ended` returns true nothing more is sent. The report tells of the
    /// tuning alone.
    PassReport run(TuningPass::Progress progress, TuningPass::Cancelled cancelled,
                   const TuningPass::Cancelled& ended);
    /// Makes the default profile the active one, for good.
    static void activateDefaultProfile();

private:
    void replaySettings(const TuningPass::Cancelled& ended);

    std::shared_ptr<iTorvFeeder> m_feeder;
    Vehicle m_vehicle;
};

}  // namespace torv
