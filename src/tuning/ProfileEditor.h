#pragma once

#include <cstddef>
#include <ctime>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "attributes/ValueRange.h"
#include "session/iTorvFeeder.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// One tuning profile as it is made and changed. Each value is stored at once, with all the others, and none
/// goes to the module: that takes an activation. Main thread.
class ProfileEditor final {
public:
    /// With what is stored under the name.
    ProfileEditor(std::string name, Vehicle vehicle, std::shared_ptr<iTorvFeeder> feeder);

    [[nodiscard]] const std::string& name() const { return m_name; }
    [[nodiscard]] const Vehicle& vehicle() const { return m_vehicle; }
    [[nodiscard]] const std::vector<TorvAttributeGroup>& groups() const { return m_groups; }
    [[nodiscard]] const ProfileDictionary& settingValues() const { return m_settingValues; }

    /// Every tuning item takes what the AV store holds of it.
    void seed();
    /// From nothing: what the document's "settingsMap" tells of an item, else what the AV store holds.
    void take(const Value& document);

    /// An empty record for an item without a stored value or a formatter.
    [[nodiscard]] AVFormatterData formattedValueForSetting(const TorvAttribute& item) const;
    [[nodiscard]] ValueRange range(const TorvAttribute& item) const;
    /// By the leading whole number of the text; a text that is no number counts as 0.
    [[nodiscard]] bool accepts(const TorvAttribute& item, const std::string& text) const;
    /// The new value has no flags, whatever the old one had. Does nothing for an item without a formatter, or
    /// with one that has no way back.
    void setText(const TorvAttribute& item, const std::string& text);
    void setRecord(const TorvAttribute& item, const AVFormatterData& record);
    /// Of several items, in their order; all are on disk together.
    void setRecords(std::span<const TorvAttribute> items, std::span<const AVFormatterData> records);
    void updateAIDWithAV(AID aid, const AV& value);

    /// For another handset: name, vehicle, and each item's value in its own unit, as JSON, but for items
    /// without a stored one. Flags and further fields of a value don't travel.
    [[nodiscard]] std::optional<std::string> document() const;

private:
    void setAIDWithAV(AID aid, const AV& value);

    const std::string m_name;
    const Vehicle m_vehicle;
    const std::vector<TorvAttributeGroup> m_groups;
    const std::shared_ptr<iTorvFeeder> m_feeder;
    ProfileDictionary m_settingValues;
};

/// What a document gives the item; nothing where it tells nothing of it, or what can't become its value.
[[nodiscard]] std::optional<AV> valueFor(const TorvAttribute& item, const Value& document);
/// The name in a document; empty where there is none.
[[nodiscard]] std::string profileNameOf(const Value& document);
/// What is odd about a document for this vehicle, in one sentence: another vehicle's, values that this one
/// does not have, values that are no numbers or texts. Empty when nothing is.
[[nodiscard]] std::string oddityOf(const Value& document, const Vehicle& vehicle);

}  // namespace torv
