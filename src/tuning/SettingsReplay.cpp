#include "tuning/SettingsReplay.h"

#include <utility>

#include "attributes/AVDriveTrainInfoFormatter.h"
#include "attributes/AVVehicleSpeedFormatter.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "tuning/Activation.h"
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

PassReport SettingsReplay::run(TuningPass::Progress progress, TuningPass::Cancelled cancelled,
                               const TuningPass::Cancelled& ended) {
    // Without the vehicle nobody knows whose settings these are.
    if (defaults().stateForKey(currentVehicleKey) == EntryState::unreadable) return {};
    replaySettings(ended);
    if (ended()) return {};
    const auto active = defaults().stateForKey(activeProfileKey);
    if (active == EntryState::unreadable) return {};
    if (active == EntryState::absent) activateDefaultProfile();
    const auto name = defaults().objectForKey(activeProfileKey).textValue().value_or(std::string{});
    return Activation{m_feeder, m_vehicle}.push(name, std::move(progress), std::move(cancelled),
                                                TuningPass::Words::few);
}

}  // namespace torv
