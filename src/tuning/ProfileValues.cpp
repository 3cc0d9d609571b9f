#include "tuning/ProfileValues.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/Log.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"

namespace torv {

std::optional<ProfileDictionary> ProfileValues::load(const std::string& name) {
    const auto stored = defaults().objectForKey(name);
    if (stored.isNull()) return std::nullopt;
    std::string error;
    auto values = profileDictionaryFromArchive(stored, error);
    if (!values) logLine("the tuning profile " + name + " can't be read: " + error);
    return values;
}

void ProfileValues::set(const std::string& name, const ProfileDictionary& values) {
    defaults().removeObjectForKey(name);
    defaults().setObjectForKey(archivedProfileDictionary(values), name);
}

bool ProfileValues::store(const std::string& name, const ProfileDictionary& values) {
    set(name, values);
    return defaults().synchronize();
}

void ProfileValues::remove(const std::string& name) {
    if (isSystemKey(name)) return;
    defaults().removeObjectForKey(name);
}

bool isSystemKey(const std::string& name) {
    constexpr std::array whole{currentVehicleKey, vehiclesKey,      firstRunKey,    stockTireSizeKey,
                               turboSettingKey,   activeProfileKey, damagedListKey, defaultProfileName,
                               brightnessKey,     contrastKey,      warningSoundKey};
    constexpr std::array prefixes{settingsKeyPrefix, sensorsKeyPrefix, untakenKeyPrefix,
                                  originalSettingsKeyPrefix, asFoundKeyPrefix};
    return std::ranges::find(whole, std::string_view{name}) != whole.end() ||
           std::ranges::any_of(prefixes, [&](auto prefix) { return name.starts_with(prefix); }) ||
           name.ends_with(placementKeySuffix) || name.find(" unreadable ") != std::string::npos;
}

}  // namespace torv
