#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "attributes/TorvAttribute.h"
#include "attributes/TorvAttributeGroup.h"
#include "support/Value.h"
#include "vehicles/ProfileInfo.h"

namespace torv {

/// One vehicle profile: what the module can do on this vehicle.
///
/// A value: copies are independent. Lists of attributes are built anew on each call, so callers hold on to
/// what they get. The user's changes to sensor warnings are stored beside the profile, in the user defaults
/// under "SENSORS_" and the name, and never in it. One thread at a time.
class Vehicle final {
public:
    using Text = std::optional<std::string>;

    /// From a profile document or an entry of an update manifest. `info` stays empty.
    [[nodiscard]] static Vehicle vehicleFromDictionary(const Dictionary& dictionary);

    [[nodiscard]] const Text& name() const { return m_name; }
    void setName(Text name) { m_name = std::move(name); }
    /// Where the full document is fetched from.
    [[nodiscard]] const Text& url() const { return m_url; }
    void setUrl(Text url) { m_url = std::move(url); }
    [[nodiscard]] const Text& version() const { return m_version; }
    void setVersion(Text version) { m_version = std::move(version); }
    /// "YES" when the vehicle offers trouble codes; anything else means no.
    [[nodiscard]] const Text& DTC() const { return m_DTC; }
    void setDTC(Text DTC) { m_DTC = std::move(DTC); }
    /// The whole document; empty while it has not been downloaded.
    [[nodiscard]] const ProfileInfo& info() const { return m_info; }
    void setInfo(ProfileInfo info) { m_info = std::move(info); }
    /// A newer version of this downloaded profile is on the update server.
    [[nodiscard]] bool updateAvailable() const { return m_updateAvailable; }
    void setUpdateAvailable(bool available) { m_updateAvailable = available; }

    /// A missing key yields a blank attribute.
    [[nodiscard]] TorvAttribute attributeForKey(std::string_view key) const;
    [[nodiscard]] std::vector<TorvAttribute> attributesForKey(std::string_view key) const;
    [[nodiscard]] std::vector<TorvAttributeGroup> attributeGroupsForKey(std::string_view key) const;

    /// With the user's own warning rules and values, by sensor name: two sensors of one name share an entry.
    [[nodiscard]] std::vector<TorvAttribute> sensors() const;
    /// Those whose warning rule is not 0.
    [[nodiscard]] std::vector<TorvAttribute> updatableSensors() const;
    /// Stores the sensor's rule and value and synchronizes.
    void updateSensor(const TorvAttribute& sensor) const;
    /// Back to the document's rules and values.
    void clearSensors() const;
    [[nodiscard]] std::vector<TorvAttribute> settings() const { return attributesForKey("settings"); }
    [[nodiscard]] std::vector<TorvAttributeGroup> tuningGroups() const {
        return attributeGroupsForKey("tuning");
    }
    [[nodiscard]] std::vector<TorvAttribute> tuningItems() const;
    [[nodiscard]] TorvAttribute powerLevelAttribute() const { return attributeForKey("powerLevel"); }
    [[nodiscard]] TorvAttribute currentGearAttribute() const { return attributeForKey("currentGear"); }
    [[nodiscard]] TorvAttribute torqueLockAttribute() const { return attributeForKey("torqueLock"); }
    [[nodiscard]] TorvAttribute sootAttribute() const { return attributeForKey("sootReg"); }
    [[nodiscard]] TorvAttribute soxAttribute() const { return attributeForKey("soxReg"); }
    /// All of these, sensors first. What bears no name in the profile is called by its key.
    [[nodiscard]] std::vector<TorvAttribute> attributes() const;
    /// Looks among the sensors only.
    [[nodiscard]] bool hasAID(AID aid) const;

    /// By name alone: two versions of a profile are the same vehicle. What has no name equals nothing.
    [[nodiscard]] bool isEqual(const Vehicle& other) const { return m_name && m_name == other.m_name; }

private:
    [[nodiscard]] const Value& parameter(std::string_view key) const {
        return m_info.document()["parameters"][key];
    }
    [[nodiscard]] std::string sensorsKey() const;

    Text m_name;
    Text m_url;
    Text m_version;
    Text m_DTC;
    ProfileInfo m_info;
    bool m_updateAvailable = false;
};

}  // namespace torv
