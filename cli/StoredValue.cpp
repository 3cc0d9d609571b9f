#include "StoredValue.h"

#include <algorithm>

#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "tuning/ProfileValues.h"
#include "vehicles/StoreTrouble.h"

namespace itorvctl {

using namespace torv;

StoredValue::StoredValue(const Vehicle& vehicle, AID aid, Kind kind)
    : m_vehicle(vehicle), m_aid(aid), m_kind(kind) {}

std::string StoredValue::profileName() const {
    return torv::defaults()
        .objectForKey(activeProfileKey)
        .textValue()
        .value_or(std::string{defaultProfileName});
}

/// Nothing of a profile that can't be read; `itorv` sends nothing of it either.
std::optional<ProfileDictionary> StoredValue::values() const {
    if (m_kind == Kind::setting) return SettingValueStore::load(m_vehicle);
    return ProfileValues::load(profileName());
}

std::optional<std::string> StoredValue::whyNot() const {
    const auto trouble = sentenceFor(storeTrouble(m_vehicle));
    if (!trouble.empty()) return "nothing can be stored: " + std::string{trouble};
    if (m_kind == Kind::setting) return std::nullopt;
    const auto name = profileName();
    if (name == defaultProfileName)
        return "the default tuning profile is the active one, and it holds no values to store this among";
    if (!values()) return "the active tuning profile \"" + name + "\" can't be read";
    return std::nullopt;
}

std::optional<std::string> StoredValue::whatUndoes(const AV& value) const {
    const auto stored = values();
    if (!stored) {
        if (m_kind == Kind::setting && SettingValueStore::state(m_vehicle) == EntryState::absent)
            return "nothing is stored for this vehicle, and itorv writes the lowest value when it connects";
        if (m_kind == Kind::tuningItem && profileName() == defaultProfileName)
            return "the default tuning profile is the active one, and when itorv connects the module goes "
                   "back "
                   "to its own value";
        return std::nullopt;
    }
    const auto found = stored->find(m_aid);
    const bool differs = found != stored->end() && !std::ranges::equal(found->second.bytes(), value.bytes());
    if (!differs) return std::nullopt;
    return "another value is stored, and itorv brings that back when it connects; --store stores this one";
}

bool StoredValue::store(const AV& value) const {
    auto all = values().value_or(ProfileDictionary{});
    all.insert_or_assign(m_aid, value);
    if (m_kind == Kind::setting) return SettingValueStore::save(all, m_vehicle);
    return ProfileValues::store(profileName(), all);
}

}  // namespace itorvctl
