#pragma once

#include <string>
#include <utility>
#include <vector>

#include "settings/SettingRules.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// The warnings of a vehicle's sensors, on or off and at what value: the profile's rules with the user's own
/// changes. Main thread. A change is stored at once; whoever shows values has to be told by
/// `refreshWarningSensors`.
class SensorWarnings final {
public:
    explicit SensorWarnings(Vehicle vehicle) : m_vehicle(std::move(vehicle)) { load(); }

    /// All that have a rule, on or off.
    [[nodiscard]] const std::vector<TorvAttribute>& sensors() const { return m_sensors; }
    /// 100 on top of a rule switches it off, and keeps its kind.
    [[nodiscard]] static bool isOn(const TorvAttribute& sensor);
    /// As an unsigned number: a negative one shows as a very large one. Kept as it is.
    [[nodiscard]] static std::string textOfValue(const TorvAttribute& sensor);
    /// Cut to whole numbers.
    [[nodiscard]] static ValueRange range(const TorvAttribute& sensor);

    [[nodiscard]] bool accepts(std::size_t row, const std::string& text) const;
    void setText(std::size_t row, const std::string& text);
    /// Blind to the state that it finds: on takes 100 from the row's own rule, off adds 100.
    void setSwitch(std::size_t row, bool on);
    /// Back to the profile's.
    void reset();

private:
    [[nodiscard]] TorvAttribute stored(const TorvAttribute& sensor) const;
    void load() { m_sensors = m_vehicle.updatableSensors(); }

    const Vehicle m_vehicle;
    std::vector<TorvAttribute> m_sensors;
};

}  // namespace torv
