#include "vehicles/Vehicle.h"

#include <algorithm>
#include <iterator>

#include "platform/Platform.h"
#include "platform/StoredKeys.h"

namespace torv {
namespace {

/// What is missing shows as this in a key made from it.
constexpr auto nothing = "(null)";

}  // namespace

Vehicle Vehicle::vehicleFromDictionary(const Dictionary& dictionary) {
    Vehicle vehicle;
    vehicle.m_name = dictionary["vehicle"].textValue();
    vehicle.m_url = dictionary["url"].textValue();
    vehicle.m_version = dictionary["version"].textValue();
    vehicle.m_DTC = dictionary["DTC"].textValue();
    return vehicle;
}

TorvAttribute Vehicle::attributeForKey(std::string_view key) const {
    const auto* dictionary = parameter(key).dictionary();
    return TorvAttribute::torvAttributeFromDictionary(dictionary ? *dictionary : Dictionary{});
}

std::vector<TorvAttribute> Vehicle::attributesForKey(std::string_view key) const {
    return torvAttributesFromList(parameter(key));
}

std::vector<TorvAttributeGroup> Vehicle::attributeGroupsForKey(std::string_view key) const {
    std::vector<TorvAttributeGroup> groups;
    for (const auto& element : parameter(key).elements()) {
        const auto* dictionary = element.dictionary();
        groups.push_back(
            TorvAttributeGroup::torvAttributeGroupFromDictionary(dictionary ? *dictionary : Dictionary{}));
    }
    return groups;
}

std::string Vehicle::sensorsKey() const {
    return std::string{sensorsKeyPrefix} + m_name.value_or(nothing);
}

std::vector<TorvAttribute> Vehicle::sensors() const {
    const auto stored = defaults().objectForKey(sensorsKey());
    auto sensors = attributesForKey("sensors");
    for (auto& sensor : sensors) {
        if (!sensor.name) continue;
        const auto& entry = stored[*sensor.name].elements();
        if (entry.size() < 2) continue;
        sensor.warningRule = static_cast<std::int32_t>(entry[0].longLongValue());  // stored unsigned
        sensor.warningValue = entry[1].longLongValue();
    }
    return sensors;
}

std::vector<TorvAttribute> Vehicle::updatableSensors() const {
    auto found = sensors();
    std::erase_if(found, [](const TorvAttribute& sensor) { return sensor.warningRule == 0; });
    return found;
}

void Vehicle::updateSensor(const TorvAttribute& sensor) const {
    const auto stored = defaults().objectForKey(sensorsKey());
    auto entries = stored.dictionary() ? *stored.dictionary() : Dictionary{};
    const auto rule = static_cast<std::uint32_t>(sensor.warningRule);
    entries.set(sensor.name.value_or(std::string{}),
                Array{Number::fromInteger(rule), Number::fromInteger(sensor.warningValue)});
    defaults().setObjectForKey(std::move(entries), sensorsKey());
    defaults().synchronize();
}

void Vehicle::clearSensors() const {
    defaults().removeObjectForKey(sensorsKey());
    defaults().synchronize();
}

std::vector<TorvAttribute> Vehicle::tuningItems() const {
    std::vector<TorvAttribute> items;
    for (auto& group : tuningGroups()) {
        std::move(group.items.begin(), group.items.end(), std::back_inserter(items));
    }
    return items;
}

std::vector<TorvAttribute> Vehicle::attributes() const {
    auto all = sensors();
    for (const auto& list : {settings(), tuningItems()})
        all.insert(all.end(), list.begin(), list.end());
    for (const auto* key : {"powerLevel", "currentGear", "torqueLock", "sootReg", "soxReg"}) {
        if (!parameter(key).dictionary()) continue;
        all.push_back(attributeForKey(key));
        if (!all.back().name) all.back().name = key;
    }
    return all;
}

bool Vehicle::hasAID(AID aid) const {
    const auto found = sensors();
    return std::any_of(found.begin(), found.end(),
                       [&](const TorvAttribute& sensor) { return sensor.aid == aid; });
}

}  // namespace torv
