#include "tuning/SettingsReplay.h"

#include <utility>

#include "attributes/AVDriveTrainInfoFormatter.h"
#include "attributes/AVVehicleSpeedFormatter.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "vehicles/UntakenSettings.h"

namespace torv {
namespace {

constexpr AID driveTrainAID = 226;

}  // namespace

void SettingsReplay::replaySettings(const TuningPass::Cancelled& ended) {
    const auto settings = SettingValueStore::load(m_vehicle);
    if (!settings) return;
    for (const auto& [aid, value] : *settings) {
        if (ended()) break;
        if (aid == driveTrainAID) {
            auto bytes = value;
            if (const auto record = AVDriveTrainInfoFormatter{}.dataFromAV(bytes.bytes().data())) {
                AVVehicleSpeedFormatter::setCurrentTireSize(record->value);
                if (defaults().objectForKey(stockTireSizeKey).isNull())
                    AVVehicleSpeedFormatter::setStockTireSize(record->value);
            }
        }
        UntakenSettings::note(m_vehicle, aid, m_feeder->setValueForAID(value.bytes(), aid));
    }
    defaults().synchronize();
}

void SettingsReplay::activateDefaultProfile() {
    defaults().setObjectForKey(std::string{defaultProfileName}, activeProfileKey);
}

void SettingsReplay::run(TuningPass::Progress progress, TuningPass::Cancelled cancelled,
                         const TuningPass::Cancelled& ended) {
    // Without the vehicle nobody knows whose settings these are.
    if (defaults().stateForKey(currentVehicleKey) == EntryState::unreadable) return;
    replaySettings(ended);
    if (ended()) return;
    const auto active = defaults().stateForKey(activeProfileKey);
    if (active == EntryState::unreadable) return;
    if (active == EntryState::absent) activateDefaultProfile();
    const auto name = defaults().objectForKey(activeProfileKey).textValue().value_or(std::string{});
    TuningPass pass{m_feeder, std::move(progress), std::move(cancelled)};
    if (name == defaultProfileName) return pass.reset(m_vehicle);
    std::string error;
    const auto stored = defaults().objectForKey(name);
    if (stored.isNull()) return;
    const auto profile = profileDictionaryFromArchive(stored, error);
    if (!profile) return logLine("the tuning profile " + name + " can't be read: " + error);
    pass.apply(*profile);
}

}  // namespace torv
