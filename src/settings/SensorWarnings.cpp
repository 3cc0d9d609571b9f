#include "settings/SensorWarnings.h"

#include <algorithm>

#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::int32_t switchedOff = 100;

}  // namespace

bool SensorWarnings::isOn(const TorvAttribute& sensor) {
    return static_cast<std::uint32_t>(sensor.warningRule) < static_cast<std::uint32_t>(switchedOff);
}

std::string SensorWarnings::textOfValue(const TorvAttribute& sensor) {
    return std::to_string(static_cast<std::uint64_t>(sensor.warningValue));
}

ValueRange SensorWarnings::range(const TorvAttribute& sensor) {
    return valueRange(sensor, {});
}

bool SensorWarnings::accepts(std::size_t row, const std::string& text) const {
    return range(m_sensors[row]).contains(longLongValue(trimmed(text)));
}

/// As it is stored now: another sensor of the same name shares the entry.
TorvAttribute SensorWarnings::stored(const TorvAttribute& sensor) const {
    const auto all = m_vehicle.sensors();
    const auto same = std::ranges::find_if(
        all, [&](const TorvAttribute& each) { return each.aid == sensor.aid && each.name == sensor.name; });
    return same == all.end() ? sensor : *same;
}

void SensorWarnings::setText(std::size_t row, const std::string& text) {
    auto& sensor = m_sensors[row];
    sensor.warningRule = stored(sensor).warningRule;
    sensor.warningValue = longLongValue(trimmed(text));
    m_vehicle.updateSensor(sensor);
}

void SensorWarnings::setSwitch(std::size_t row, bool on) {
    auto& sensor = m_sensors[row];
    sensor.warningValue = stored(sensor).warningValue;
    sensor.warningRule =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(sensor.warningRule) +
                                  static_cast<std::uint32_t>(on ? -switchedOff : switchedOff));
    m_vehicle.updateSensor(sensor);
}

void SensorWarnings::reset() {
    m_vehicle.clearSensors();
    load();
}

}  // namespace torv
