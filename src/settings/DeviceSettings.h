#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "session/iTorvFeeder.h"
#include "settings/SettingRules.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// The device settings of one vehicle as the handset has stored them, and the way for a change of them: to
/// the module and into the store. What the module holds is never read. Main thread; a change blocks until the
/// module has acknowledged it or 21 attempts are over, and the loop turns meanwhile.
///
/// A change is stored whether or not the module took it; `isUntaken` tells. One at a time: a screen keeps
/// another one back until it has ended.
class DeviceSettings final {
public:
    DeviceSettings(std::shared_ptr<iTorvFeeder> feeder, Vehicle vehicle);

    [[nodiscard]] const Vehicle& vehicle() const { return m_vehicle; }
    /// In the order of the profile.
    [[nodiscard]] const std::vector<TorvAttribute>& settings() const { return m_settings; }
    [[nodiscard]] std::size_t count() const { return m_settingValues ? m_settingValues->size() : 0; }
    /// From the store anew, as each change does first.
    void load();

    /// What is stored; where nothing is the formatter decides. An empty record without a formatter.
    [[nodiscard]] AVFormatterData formattedValueForSetting(const TorvAttribute& setting) const;
    [[nodiscard]] ValueRange range(const TorvAttribute& setting) const;
    /// Whether the text is a whole number within the range.
    [[nodiscard]] bool accepts(const TorvAttribute& setting, const std::string& text) const;
    [[nodiscard]] bool isStored(const TorvAttribute& setting) const {
        return m_settingValues && m_settingValues->contains(setting.aid);
    }
    /// The module has not acknowledged the last write.
    [[nodiscard]] bool isUntaken(const TorvAttribute& setting) const;

    void setText(const TorvAttribute& setting, const std::string& text);
    /// The switch of the turbo timer is the turbo lamp's too.
    void setSwitch(const TorvAttribute& setting, bool on);
    void pick(const TorvAttribute& setting, std::size_t choice);
    /// By the setting's formatter; as many bytes are stored as the AID's slot has, or `storedSize`.
    bool apply(const TorvAttribute& setting, const AVFormatterData& record,
               std::optional<std::size_t> storedSize = {});

    /// Removes what is stored. What stands under "ORIGINAL_SETTINGS_" takes its place; nothing writes that,
    /// so the next connect writes the lowest values. Kept as it is.
    void reset();
    /// The vehicle has changed: from now on no change goes anywhere.
    void end() { m_ended = true; }
    [[nodiscard]] bool hasEnded() const { return m_ended; }

private:
    void updateAIDWithAV(AID aid, const AV& value);

    const std::shared_ptr<iTorvFeeder> m_feeder;
    const Vehicle m_vehicle;
    const std::vector<TorvAttribute> m_settings;
    std::optional<ProfileDictionary> m_settingValues;
    bool m_ended = false;
};

/// After the choice of a vehicle: its store then holds what was stored for the vehicle before it, with each
/// setting of that earlier vehicle at its lowest value, and the turbo lamp is off. That two vehicles are
/// mixed is kept as it is. Nothing goes to the module.
void storeLowestValues(const Vehicle& before, const Vehicle& chosen);

}  // namespace torv
