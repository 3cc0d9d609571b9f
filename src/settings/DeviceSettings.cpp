#include "settings/DeviceSettings.h"

#include <utility>

#include "platform/Log.h"
#include "platform/NotificationNames.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "support/TextNumbers.h"
#include "vehicles/UntakenSettings.h"

namespace torv {
namespace {

void setTurboLamp(bool on) {
    Platform::current().notificationCenter().postNotificationName(on ? turboOnNotification
                                                                     : turboOffNotification);
    defaults().setObjectForKey(on, turboSettingKey);
}

std::optional<AV> encoded(const TorvAttribute& setting, const AVFormatterData& record, std::size_t size) {
    const auto buffer = setting.formatter ? setting.formatter->allocAVFromFormatterData(record) : nullptr;
    if (!buffer) return std::nullopt;
    return AV{{buffer.get(), size}, size};
}

void storeLowest(const Vehicle& before, const Vehicle& chosen) {
    // What can't be read may be there, and is not to be replaced by the lowest values at the next connect.
    for (const auto* vehicle : {&before, &chosen}) {
        if (SettingValueStore::state(*vehicle) == EntryState::unreadable)
            return logLine("the settings of " + vehicle->name().value_or("the vehicle") +
                           " can't be read and stay");
    }
    const auto stored = SettingValueStore::load(before);
    auto values = stored.value_or(ProfileDictionary{});
    const bool isSame = SettingValueStore::keyFor(before) == SettingValueStore::keyFor(chosen);
    bool changed = false;
    for (const auto& setting : before.settings()) {
        // Of two settings with one AID the second begins with what the first has left.
        auto record = formattedValueForSetting(setting, isSame ? values : stored).value_or(AVFormatterData{});
        record.value = std::to_string(longLongFromDouble(setting.minValue));
        const auto value = encoded(setting, record, slotSize(setting.aid));
        if (!value) continue;
        values.insert_or_assign(setting.aid, *value);
        changed = true;
    }
    if (changed) SettingValueStore::save(values, chosen);
}

}  // namespace

DeviceSettings::DeviceSettings(std::shared_ptr<iTorvFeeder> feeder, Vehicle vehicle)
    : m_feeder(std::move(feeder)), m_vehicle(std::move(vehicle)), m_settings(m_vehicle.settings()) {
    load();
}

void DeviceSettings::load() {
    m_settingValues = SettingValueStore::load(m_vehicle);
}

AVFormatterData DeviceSettings::formattedValueForSetting(const TorvAttribute& setting) const {
    return torv::formattedValueForSetting(setting, m_settingValues).value_or(AVFormatterData{});
}

ValueRange DeviceSettings::range(const TorvAttribute& setting) const {
    return valueRange(setting, formattedValueForSetting(setting));
}

bool DeviceSettings::accepts(const TorvAttribute& setting, const std::string& text) const {
    return range(setting).contains(longLongValue(trimmed(text)));
}

bool DeviceSettings::isUntaken(const TorvAttribute& setting) const {
    return UntakenSettings::contains(m_vehicle, setting.aid);
}

void DeviceSettings::setText(const TorvAttribute& setting, const std::string& text) {
    load();
    apply(setting, typedRecord(formattedValueForSetting(setting), text));
}

void DeviceSettings::setSwitch(const TorvAttribute& setting, bool on) {
    load();
    const auto record = switchedRecord(setting, formattedValueForSetting(setting), on);
    if (setting.aid == turboTimerSettingAID && !m_ended) {
        setTurboLamp(on);
        logLine("flags:" + std::to_string(record.flags));
    }
    apply(setting, record);
}

void DeviceSettings::pick(const TorvAttribute& setting, std::size_t choice) {
    load();
    apply(setting, pickedRecord(setting, formattedValueForSetting(setting), choice));
}

bool DeviceSettings::apply(const TorvAttribute& setting, const AVFormatterData& record,
                           std::optional<std::size_t> storedSize) {
    const auto value = encoded(setting, record, storedSize.value_or(slotSize(setting.aid)));
    if (m_ended) logLine("a change for a vehicle that is not the current one any more is dropped");
    if (m_ended || !value) return false;
    updateAIDWithAV(setting.aid, *value);
    return true;
}

/// The write blocks, and what is stored may have changed by then.
void DeviceSettings::updateAIDWithAV(AID aid, const AV& value) {
    UntakenSettings::note(m_vehicle, aid, m_feeder->setValueForAID(value.bytes(), aid));
    load();
    if (!m_settingValues) m_settingValues.emplace();
    m_settingValues->insert_or_assign(aid, value);
    SettingValueStore::save(*m_settingValues, m_vehicle);
}

void DeviceSettings::reset() {
    if (m_ended) return;
    const auto original =
        defaults().objectForKey(std::string{originalSettingsKeyPrefix} + m_vehicle.name().value_or("(null)"));
    const auto key = SettingValueStore::keyFor(m_vehicle);
    defaults().removeObjectForKey(key);
    if (!original.isNull()) defaults().setObjectForKey(original, key);
    UntakenSettings::forget(m_vehicle);
    defaults().synchronize();
    load();
}

void storeLowestValues(const Vehicle& before, const Vehicle& chosen) {
    storeLowest(before, chosen);
    setTurboLamp(false);
}

}  // namespace torv
