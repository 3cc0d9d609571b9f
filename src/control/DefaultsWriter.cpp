#include "control/DefaultsWriter.h"

#include "platform/Log.h"
#include "support/TextNumbers.h"
#include "vehicles/UntakenSettings.h"

namespace torv {

void DefaultsWriter::run(const Stored& stored) {
    for (const auto& setting : m_vehicle.settings()) {
        if (write(setting)) {
            stored(*m_values);
        } else {
            logLine("the setting " + setting.name.value_or("") + " has no default that can be written");
        }
    }
}

bool DefaultsWriter::write(const TorvAttribute& setting) {
    auto record = formattedValueForSetting(setting, m_values);
    if (!record) return false;
    record->value = std::to_string(longLongFromDouble(setting.minValue));
    const auto buffer = setting.formatter->allocAVFromFormatterData(*record);
    if (!buffer) return false;
    const AV value = AV::forAID(setting.aid, {buffer.get(), slotSize(setting.aid)});
    const bool taken = m_feeder.setValueForAID(value.bytes(), setting.aid);
    auto values = m_values.value_or(ProfileDictionary{});
    values.insert_or_assign(setting.aid, value);
    const bool takenAgain = m_feeder.setValueForAID(value.bytes(), setting.aid);
    UntakenSettings::note(m_vehicle, setting.aid, taken || takenAgain);
    SettingValueStore::save(values, m_vehicle);
    m_values = std::move(values);
    return true;
}

}  // namespace torv
