#include "vehicles/SettingValueStore.h"

#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "support/TextNumbers.h"
#include "vehicles/StoredArchive.h"

namespace torv {
namespace {

constexpr int archiveVersion = 1;

}  // namespace

Value archivedProfileDictionary(const ProfileDictionary& values) {
    Dictionary entries;
    for (const auto& [aid, value] : values) {
        entries.set(std::to_string(aid), Data{value.bytes().begin(), value.bytes().end()});
    }
    return Dictionary{{"version", Number::fromInteger(archiveVersion)}, {"values", std::move(entries)}};
}

std::optional<ProfileDictionary> profileDictionaryFromArchive(const Value& archive, std::string& error) {
    const auto* entries = archive["values"].dictionary();
    if (!entries || archive["version"].intValue() != archiveVersion) {
        error = "it is not of version 1";
        return std::nullopt;
    }
    ProfileDictionary values;
    for (const auto& [key, value] : *entries) {
        const auto aid = longLongValue(key);
        const auto* bytes = value.data();
        if (!bytes || bytes->size() > longSlotSize || std::to_string(aid) != key) {
            error = "the value of AID " + key + " is damaged";
            return std::nullopt;
        }
        values.emplace(aid, AV::forAID(aid, *bytes));
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
    const auto stored = Platform::current().userDefaults().objectForKey(key);
    if (stored.isNull()) return std::nullopt;
    std::string error;
    auto values = profileDictionaryFromArchive(stored, error);
    if (!values) setAsideUnreadable(key, stored, error);
    return values;
}

void SettingValueStore::save(const ProfileDictionary& values, const Vehicle& vehicle) {
    auto& defaults = Platform::current().userDefaults();
    const auto key = keyFor(vehicle);
    defaults.removeObjectForKey(key);
    defaults.setObjectForKey(archivedProfileDictionary(values), key);
    defaults.synchronize();
}

}  // namespace torv
