#include "dashboards/PlacementStore.h"

#include "platform/Platform.h"
#include "platform/StoredKeys.h"

namespace torv {

std::string PlacementStore::key(const std::optional<std::string>& vehicle, std::int32_t style,
                                std::ptrdiff_t place) const {
    auto key = vehicle.value_or("(null)") + "_" + std::to_string(style);
    if (m_traits.keyHasIndex) key += "_" + std::to_string(place) + "_" + std::to_string(m_traits.number);
    return key.append(placementKeySuffix);
}

std::optional<AID> PlacementStore::load(const std::string& key) {
    const auto stored = Platform::current().userDefaults().objectForKey(key);
    return stored.number() ? std::optional<AID>{stored.longLongValue()} : std::nullopt;
}

void PlacementStore::save(AID aid, const std::string& key) {
    auto& defaults = Platform::current().userDefaults();
    defaults.setObjectForKey(Number::fromInteger(aid), key);
    defaults.synchronize();
}

void PlacementStore::remove(const std::string& key) {
    auto& defaults = Platform::current().userDefaults();
    defaults.removeObjectForKey(key);
    defaults.synchronize();
}

}  // namespace torv
