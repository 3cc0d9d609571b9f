#include "vehicles/SettingValueStore.h"

#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "support/TextNumbers.h"
#include "vehicles/StoredArchive.h"

namespace torv {
namespace {

constexpr int archiveVersion = 1;
constexpr auto incompleteKey = "incomplete";  // true once a value could not be read; ends with the next save

const Dictionary* entriesOf(const Value& archive, std::string& error) {
    const auto* entries = archive["values"].dictionary();
    if (entries && archive["version"].intValue() == archiveVersion) return entries;
    error = "it is not of version 1";
    return nullptr;
}

std::optional<AV> valueOf(const std::string& key, const Value& value, std::string& error) {
    const auto aid = longLongValue(key);
    const auto* bytes = value.data();
    if (bytes && bytes->size() <= longSlotSize && std::to_string(aid) == key) return AV::forAID(aid, *bytes);
    error = "the value of AID " + key + " is damaged";
    return std::nullopt;
}

}  // namespace

Value archivedProfileDictionary(const ProfileDictionary& values) {
    Dictionary entries;
    for (const auto& [aid, value] : values) {
        entries.set(std::to_string(aid), Data{value.bytes().begin(), value.bytes().end()});
    }
    return Dictionary{{"version", Number::fromInteger(archiveVersion)}, {"values", std::move(entries)}};
}

std::optional<ProfileDictionary> profileDictionaryFromArchive(const Value& archive, std::string& error) {
    const auto* entries = entriesOf(archive, error);
    if (!entries) return std::nullopt;
    ProfileDictionary values;
    for (const auto& [key, value] : *entries) {
        const auto bytes = valueOf(key, value, error);
        if (!bytes) return std::nullopt;
        values.emplace(longLongValue(key), *bytes);
    }
    return values;
}

std::optional<AVFormatterData> formattedValueForSetting(const TorvAttribute& setting,
                                                        const std::optional<ProfileDictionary>& values) {
    if (!setting.formatter) return std::nullopt;
    const auto stored = values ? values->find(setting.aid) : ProfileDictionary::const_iterator{};
    if (!values || stored == values->end()) return setting.formatter->dataFromAV(nullptr);
    auto value = stored->second;
    return setting.dataFromAV(value);
}

std::string SettingValueStore::keyFor(const Vehicle& vehicle) {
    return std::string{settingsKeyPrefix} + vehicle.name().value_or("(null)");
}

std::optional<ProfileDictionary> SettingValueStore::load(const Vehicle& vehicle) {
    const auto key = keyFor(vehicle);
    auto& defaults = Platform::current().userDefaults();
    const auto stored = defaults.objectForKey(key);
    if (stored.isNull()) return std::nullopt;
    std::string error;
    const auto* entries = entriesOf(stored, error);
    ProfileDictionary values;
    for (const auto& [text, value] : entries ? *entries : Dictionary{}) {
        if (const auto bytes = valueOf(text, value, error)) values.emplace(longLongValue(text), *bytes);
    }
    if (error.empty()) return values;
    setAsideUnreadable(key, stored, error);
    if (values.empty()) return std::nullopt;
    auto rest = archivedProfileDictionary(values);
    rest.dictionary()->set(incompleteKey, true);
    defaults.setObjectForKey(std::move(rest), key);
    defaults.synchronize();
    return values;
}

EntryState SettingValueStore::state(const Vehicle& vehicle) {
    const auto& defaults = Platform::current().userDefaults();
    const auto key = keyFor(vehicle);
    return defaults.objectForKey(key)[incompleteKey].boolValue() ? EntryState::unreadable
                                                                 : defaults.stateForKey(key);
}

bool SettingValueStore::save(const ProfileDictionary& values, const Vehicle& vehicle) {
    auto& defaults = Platform::current().userDefaults();
    const auto key = keyFor(vehicle);
    defaults.removeObjectForKey(key);
    defaults.setObjectForKey(archivedProfileDictionary(values), key);
    return defaults.synchronize();
}

}  // namespace torv
