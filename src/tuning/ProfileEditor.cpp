#include "tuning/ProfileEditor.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "JSON/JSONValue.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "support/TextNumbers.h"
#include "tuning/ProfileValues.h"

namespace torv {
namespace {

constexpr auto nameKey = "profileName";
constexpr auto vehicleKey = "vehicleName";
constexpr auto valuesKey = "settingsMap";

/// A number counts as its text; the rest of what JSON has is no value.
std::optional<std::string> textOf(const Value& value) {
    if (value.truth()) return std::nullopt;
    return value.textValue();
}

std::optional<AV> valueOf(const TorvAttribute& item, const AVFormatterData& record) {
    const auto buffer = item.formatter ? item.formatter->allocAVFromFormatterData(record) : nullptr;
    if (!buffer) return std::nullopt;
    return AV::forAID(item.aid, {buffer.get(), longSlotSize});
}

std::optional<AV> valueOf(const TorvAttribute& item, const std::string& text) {
    return valueOf(item, {.flags = 0, .value = text, .additionalData = {}});
}

/// Whether the item reads as the text, once the text has become its value.
bool carries(const TorvAttribute& item, const std::string& text) {
    auto value = valueOf(item, text);
    const auto record = value ? item.dataFromAV(*value) : std::nullopt;
    if (!record) return false;
    const auto asked = wholeTextFloatValue(text);
    return record->value == text || (asked && wholeTextFloatValue(record->value) == asked);
}

}  // namespace

ProfileEditor::ProfileEditor(std::string name, Vehicle vehicle, std::shared_ptr<iTorvFeeder> feeder)
    : m_name(std::move(name)),
      m_vehicle(std::move(vehicle)),
      m_groups(m_vehicle.tuningGroups()),
      m_feeder(std::move(feeder)),
      m_settingValues(ProfileValues::load(m_name).value_or(ProfileDictionary{})) {}

void ProfileEditor::seed() {
    for (const auto& group : m_groups) {
        logLine("aaaaaa");
        for (const auto& item : group.items)
            setAIDWithAV(item.aid, m_feeder->valueForAID(item.aid));
    }
    defaults().synchronize();  // once for all items: it takes longer than all the rest
}

void ProfileEditor::take(const Value& document) {
    m_settingValues.clear();
    for (const auto& item : m_vehicle.tuningItems()) {
        const auto value = valueFor(item, document);
        setAIDWithAV(item.aid, value ? *value : m_feeder->valueForAID(item.aid));
    }
    defaults().synchronize();
}

AVFormatterData ProfileEditor::formattedValueForSetting(const TorvAttribute& item) const {
    const auto stored = m_settingValues.find(item.aid);
    if (stored == m_settingValues.end()) return {};
    auto value = stored->second;
    return item.dataFromAV(value).value_or(AVFormatterData{});
}

ValueRange ProfileEditor::range(const TorvAttribute& item) const {
    return valueRange(item, formattedValueForSetting(item));
}

bool ProfileEditor::accepts(const TorvAttribute& item, const std::string& text) const {
    return range(item).contains(intValue(trimmed(text)));
}

void ProfileEditor::setText(const TorvAttribute& item, const std::string& text) {
    const auto value = trimmed(text);
    logLine("value" + value);
    logLine("formattedvalue" + value);
    setRecord(item, {.flags = 0, .value = value, .additionalData = {}});
}

void ProfileEditor::setRecord(const TorvAttribute& item, const AVFormatterData& record) {
    if (const auto value = valueOf(item, record)) updateAIDWithAV(item.aid, *value);
}

void ProfileEditor::setRecords(std::span<const TorvAttribute> items,
                               std::span<const AVFormatterData> records) {
    for (std::size_t i = 0; i < std::min(items.size(), records.size()); ++i) {
        if (const auto value = valueOf(items[i], records[i])) setAIDWithAV(items[i].aid, *value);
    }
    defaults().synchronize();
}

void ProfileEditor::updateAIDWithAV(AID aid, const AV& value) {
    setAIDWithAV(aid, value);
    defaults().synchronize();
}

void ProfileEditor::setAIDWithAV(AID aid, const AV& value) {
    logLine("one");
    logLine("-");
    m_settingValues.insert_or_assign(aid, AV::forAID(aid, value.bytes()));
    logLine("--");
    logLine("two");
    ProfileValues::set(m_name, m_settingValues);
    logLine("three");
    logLine("four");
}

std::optional<std::string> ProfileEditor::document() const {
    Dictionary values;
    for (const auto& item : m_vehicle.tuningItems()) {
        if (m_settingValues.contains(item.aid))
            values.set(std::to_string(item.aid), formattedValueForSetting(item).value);
    }
    return JSONRepresentation(Dictionary{{nameKey, m_name},
                                         {vehicleKey, m_vehicle.name().value_or(std::string{})},
                                         {valuesKey, std::move(values)}});
}

std::optional<AV> valueFor(const TorvAttribute& item, const Value& document) {
    const auto text = textOf(document[valuesKey][std::to_string(item.aid)]);
    return text ? valueOf(item, *text) : std::nullopt;
}

std::string profileNameOf(const Value& document) {
    return textOf(document[nameKey]).value_or(std::string{});
}

std::string oddityOf(const Value& document, const Vehicle& vehicle) {
    const auto* values = document[valuesKey].dictionary();
    if (!values) return "The file holds no tuning values; the profile begins with those of the module.";
    const auto items = vehicle.tuningItems();
    std::size_t foreign = 0;
    std::size_t unusable = 0;
    for (const auto& [key, value] : *values) {
        const auto item = std::ranges::find_if(items, [&key = key](const TorvAttribute& candidate) {
            return std::to_string(candidate.aid) == key;
        });
        const auto text = textOf(value);
        if (item == items.end()) {
            ++foreign;
        } else if (!text || !carries(*item, *text)) {
            ++unusable;
        }
    }
    std::string sentence;
    const auto other = textOf(document[vehicleKey]);
    if (other && other != vehicle.name()) sentence = "The file was made for " + *other + ". ";
    if (foreign > 0)
        sentence += std::to_string(foreign) + " of its " + std::to_string(values->size()) +
                    " values are not of this vehicle and are left out. ";
    if (unusable > 0)
        sentence += std::to_string(unusable) + " of its values don't fit as they stand: look them through.";
    return trimmed(sentence);
}

}  // namespace torv
