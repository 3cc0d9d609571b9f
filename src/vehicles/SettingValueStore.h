#pragma once

#include <map>
#include <optional>
#include <string>

#include "platform/UserDefaults.h"
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
    /// Nothing when nothing is stored, or nothing that can be read. Where some values can't be read, the
    /// entry is set aside and the others are kept in its place.
    [[nodiscard]] static std::optional<ProfileDictionary> load(const Vehicle& vehicle);
    /// Unreadable too for an entry of which only a part could be read, until the next `save`.
    [[nodiscard]] static EntryState state(const Vehicle& vehicle);
    /// Replaces what is stored, and synchronizes; false when it is not on disk.
    static bool save(const ProfileDictionary& values, const Vehicle& vehicle);
};

}  // namespace torv
