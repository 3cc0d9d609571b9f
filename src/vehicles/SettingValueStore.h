#pragma once

#include <map>
#include <optional>
#include <string>

#include "support/AV.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// Raw values by AID, 4 or 13 bytes each: the device settings of a vehicle, or a tuning profile.
using ProfileDictionary = std::map<AID, AV>;

/// As a value for the user defaults, with a version: {"version": 1, "values": {"91": <bytes>, ...}}.
[[nodiscard]] Value archivedProfileDictionary(const ProfileDictionary& values);
/// Nothing of a value that is not of this form; `error` then says why.
[[nodiscard]] std::optional<ProfileDictionary> profileDictionaryFromArchive(const Value& archive,
                                                                            std::string& error);

/// The setting's value among these, decoded; where there is none the formatter decides. Nothing without a
/// formatter.
[[nodiscard]] std::optional<AVFormatterData> formattedValueForSetting(
    const TorvAttribute& setting, const std::optional<ProfileDictionary>& values);

/// The stored device settings of each vehicle, in the user defaults under "SETTINGS_" and its name. Main
/// thread.
class SettingValueStore final {
public:
    [[nodiscard]] static std::string keyFor(const Vehicle& vehicle);
    /// Nothing when nothing is stored. What can't be read is set aside and counts as nothing.
    [[nodiscard]] static std::optional<ProfileDictionary> load(const Vehicle& vehicle);
    /// Replaces what is stored, and synchronizes.
    static void save(const ProfileDictionary& values, const Vehicle& vehicle);
};

}  // namespace torv
