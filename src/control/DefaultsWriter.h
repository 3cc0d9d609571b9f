#pragma once

#include <functional>
#include <utility>

#include "session/iTorvFeeder.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// Writes the lowest value of every setting to a module with a vehicle of which nothing is stored, and stores
/// each as it goes, under the vehicle that it was begun with. Main thread; blocks, and the loop turns
/// meanwhile.
///
/// Each value is written twice, and stored whether or not the module took it; kept as it is.
class DefaultsWriter final {
public:
    /// Hears of all that has been written so far, after each setting.
    using Stored = std::function<void(const ProfileDictionary& values)>;

    DefaultsWriter(iTorvFeeder& feeder, Vehicle vehicle) : m_feeder(feeder), m_vehicle(std::move(vehicle)) {}

    void run(const Stored& stored);

private:
    /// False when the setting has no default, or none that can be written.
    bool write(const TorvAttribute& setting);

    iTorvFeeder& m_feeder;
    const Vehicle m_vehicle;
    std::optional<ProfileDictionary> m_values;
};

}  // namespace torv
