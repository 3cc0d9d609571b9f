#pragma once

#include <optional>
#include <string>

#include "vehicles/SettingValueStore.h"

namespace torv {

/// The values of each tuning profile, in the user defaults under the profile's bare name. Main thread.
class ProfileValues final {
public:
    /// Nothing when nothing is stored, or nothing that can be read.
    [[nodiscard]] static std::optional<ProfileDictionary> load(const std::string& name);
    /// Replaces what is stored; it is on disk with the next `synchronize`.
    static void set(const std::string& name, const ProfileDictionary& values);
    /// The same, and synchronizes; false when it is not on disk.
    static bool store(const std::string& name, const ProfileDictionary& values);
    /// But not an entry that is the program's own, or may be. Does not synchronize; kept as it is.
    static void remove(const std::string& name);
};

/// Whether a profile of this name would share its entry with something that is no profile, or is the pseudo
/// profile of the module's own values.
[[nodiscard]] bool isSystemKey(const std::string& name);

}  // namespace torv
