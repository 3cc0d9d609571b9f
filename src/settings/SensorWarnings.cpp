#include "settings/SensorWarnings.h"

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

void SensorWarnings::setText(std::size_t row, const std::string& text) {
    load();  // another sensor of the same name shares its entry
    m_sensors[row].warningValue = longLongValue(trimmed(text));
    m_vehicle.updateSensor(m_sensors[row]);
}

void SensorWarnings::setSwitch(std::size_t row, bool on) {
    load();
    auto& rule = m_sensors[row].warningRule;
    rule = static_cast<std::int32_t>(static_cast<std::uint32_t>(rule) +
                                     static_cast<std::uint32_t>(on ? -switchedOff : switchedOff));
    m_vehicle.updateSensor(m_sensors[row]);
}

void SensorWarnings::reset() {
    m_vehicle.clearSensors();
    load();
}

}  // namespace torv
