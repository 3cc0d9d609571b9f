#include "vehicles/StoreTrouble.h"

#include <array>

#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "vehicles/SettingValueStore.h"

namespace torv {
namespace {

constexpr std::array<std::string_view, 8> sentences{
    "",
    "Your choices can't be read, so nothing is sent to the module by itself.",
    "The chosen vehicle can't be read. Please choose it again; until then nothing is sent by itself.",
    "The settings of this vehicle can't be read. Please set them again; until then they stay as they are.",
    "Some settings of this vehicle can't be read. Please look through them.",
    "The active tuning profile can't be read. Please choose it again; until then none is sent.",
    "The values of the active tuning profile can't be read. Please choose another; until then none is sent.",
    "Your changes can't be saved at the moment.",
};

/// Of the profile that the active one's key names; the default profile has none.
bool areActiveValuesUnreadable(const UserDefaults& defaults) {
    const auto name = defaults.objectForKey(activeProfileKey).textValue();
    if (!name || *name == defaultProfileName) return false;
    if (defaults.stateForKey(*name) == EntryState::unreadable) return true;
    const auto values = defaults.objectForKey(*name);
    std::string error;
    return !values.isNull() && !profileDictionaryFromArchive(values, error);
}

}  // namespace

StoreTrouble storeTrouble(const Vehicle& vehicle) {
    const auto& defaults = Platform::current().userDefaults();
    const auto isUnreadable = [&](std::string_view key) {
        return defaults.stateForKey(key) == EntryState::unreadable;
    };
    const bool vehicleIsUnreadable = isUnreadable(currentVehicleKey);
    if (!defaults.isWhole() && !defaults.isKept() && vehicleIsUnreadable) return StoreTrouble::unreadable;
    if (vehicleIsUnreadable) return StoreTrouble::vehicle;
    if (isUnreadable(SettingValueStore::keyFor(vehicle))) return StoreTrouble::settings;
    if (SettingValueStore::state(vehicle) == EntryState::unreadable) return StoreTrouble::someSettings;
    if (isUnreadable(activeProfileKey)) return StoreTrouble::activeProfile;
    if (areActiveValuesUnreadable(defaults)) return StoreTrouble::activeValues;
    return defaults.isKept() ? StoreTrouble::none : StoreTrouble::unwritable;
}

std::string_view sentenceFor(StoreTrouble trouble) {
    return sentences.at(static_cast<std::size_t>(trouble));
}

}  // namespace torv
