#include "ProfileChecker.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <optional>
#include <set>
#include <vector>

#include "link/x2comCodec.h"
#include "support/AV.h"
#include "support/TextNumbers.h"
#include "support/Utf8.h"

namespace profiles {
namespace {

using torv::Dictionary;
using torv::Value;

struct KindRow {
    Kind kind;
    std::string_view name;
    bool (*fits)(const Value&);
};
constexpr std::array<KindRow, 8> kinds{{
    {Kind::text, "a text", [](const Value& v) { return v.text() != nullptr; }},
    {Kind::whole, "a whole number",
     [](const Value& v) { return v.number() && std::trunc(v.doubleValue()) == v.doubleValue(); }},
    {Kind::number, "a number", [](const Value& v) { return v.number() != nullptr; }},
    {Kind::truth, "true or false", [](const Value& v) { return v.truth() != nullptr; }},
    {Kind::texts, "a list of texts", [](const Value& v) { return v.array() != nullptr; }},
    {Kind::values, "a list of texts with whole numbers", [](const Value& v) { return v.array() != nullptr; }},
    {Kind::objects, "a list of objects", [](const Value& v) { return v.array() != nullptr; }},
    {Kind::object, "an object", [](const Value& v) { return v.dictionary() != nullptr; }},
}};

std::string inQuotes(std::string_view text) {
    constexpr std::size_t most = 60;
    return '"' + std::string{text.substr(0, most)} + (text.size() > most ? "...\"" : "\"");
}

std::string shortText(double value) {
    return torv::Number::fromDouble(value).stringValue();
}

std::string member(const std::string& path, std::string_view key) {
    return path.empty() ? std::string{key} : path + '.' + std::string{key};
}

std::string element(const std::string& path, std::size_t index) {
    return path + '[' + std::to_string(index) + ']';
}

std::string_view nameOf(Place place) {
    const auto* row = std::find_if(placeNames.begin(), placeNames.end(),
                                   [&](const PlaceName& p) { return p.place == place; });
    return row->name;
}

/// How many letters must be changed, added or taken away; the case counts for nothing.
std::size_t difference(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        auto diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const auto changed = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
            diagonal = std::exchange(row[j + 1], std::min({row[j + 1] + 1, row[j] + 1, changed}));
        }
    }
    return row.back();
}

std::string unknownKey(std::string_view name, Place place) {
    constexpr std::size_t longestKey = 24;
    constexpr std::size_t near = 2;
    auto sentence = "is no key of " + std::string{nameOf(place)};
    if (name.size() > longestKey) return sentence;
    const Key* nearest = nullptr;
    auto least = near + 1;
    for (const auto& key : keys) {
        if ((key.places & place) == 0) continue;
        const auto distance = difference(name, key.name);
        if (distance < least) {
            least = distance;
            nearest = &key;
        }
    }
    if (nearest) sentence += "; is " + inQuotes(nearest->name) + " meant?";
    return sentence;
}

bool oneOf(std::string_view text, std::string_view choices) {
    return !text.empty() && text.find(' ') == std::string_view::npos &&
           (' ' + std::string{choices} + ' ').find(' ' + std::string{text} + ' ') != std::string::npos;
}

bool isDigits(std::string_view text) {
    constexpr std::size_t mostDigits = 9;  // so that it fits an integer
    return !text.empty() && text.size() <= mostDigits &&
           text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::optional<double> number(const Dictionary& members, std::string_view key) {
    const auto& value = members[key];
    return value.number() ? std::optional{value.doubleValue()} : std::nullopt;
}

std::optional<std::int64_t> whole(const Dictionary& members, std::string_view key) {
    const auto& value = members[key];
    return value.number() ? std::optional{value.longLongValue()} : std::nullopt;
}

const Formatter* formatterOf(const Dictionary& members) {
    const auto type = whole(members, "formatter");
    return type && *type >= 0 && *type < std::ssize(formatters)
               ? &formatters.at(static_cast<std::size_t>(*type))
               : nullptr;
}

}  // namespace

void ProfileChecker::check(const Dictionary& profile) {
    checkKeys(profile, document, "");
    checkHead(profile);
    const auto* content = profile["parameters"].dictionary();
    if (!content) return;
    checkKeys(*content, parameters, "parameters");
    for (const auto& [key, place] : singles) {
        const auto* members = (*content)[key].dictionary();
        if (members) checkAttribute(*members, place, member("parameters", key));
    }
    checkList((*content)["sensors"], sensor, "parameters.sensors");
    checkCategories((*content)["sensors"], "parameters.sensors");
    checkList((*content)["settings"], setting, "parameters.settings");
    checkList((*content)["tuning"], group, "parameters.tuning");
}

void ProfileChecker::checkKeys(const Dictionary& members, Place place, const std::string& path) {
    for (const auto& [name, value] : members) {
        const auto* key = std::ranges::find(keys, name, &Key::name);
        const auto at = member(path, name.substr(0, 60));
        if (key == keys.end()) {
            m_faults.add(at, unknownKey(name, place));
        } else if ((key->places & place) == 0) {
            m_faults.add(at, "has no effect in " + std::string{nameOf(place)});
        } else {
            checkValue(value, *key, at);
        }
    }
    for (const auto& key : keys) {
        if ((key.required & place) == 0 || members.find(key.name)) continue;
        m_faults.add(member(path, key.name), "is missing");
    }
}

void ProfileChecker::checkValue(const Value& value, const Key& key, const std::string& path) {
    const auto* kind =
        std::find_if(kinds.begin(), kinds.end(), [&](const KindRow& k) { return k.kind == key.kind; });
    if (!kind->fits(value)) return m_faults.add(path, "must be " + std::string{kind->name});
    if (value.number()) {
        const auto given = value.doubleValue();
        if (given >= key.lowest && given <= key.highest) return;
        m_faults.add(path, "is " + inQuotes(value.number()->stringValue()) + " and must be from " +
                               shortText(key.lowest) + " to " + shortText(key.highest));
    } else if (value.text()) {
        const auto decoded = torv::percentDecoded(*value.text());
        if (!decoded) {
            m_faults.add(path, "has a percent sign that begins no escape such as %20; write %25 for one");
        } else if (decoded->empty() && key.required != 0) {
            m_faults.add(path, "must not be empty");
        } else if (!key.choices.empty() && !oneOf(*value.text(), key.choices)) {
            m_faults.add(path,
                         "is " + inQuotes(*value.text()) + " and must be one of " + std::string{key.choices});
        }
    } else if (value.array()) {
        checkElements(value, key.kind, path);
    }
}

void ProfileChecker::checkElements(const Value& list, Kind kind, const std::string& path) {
    std::set<std::string, std::less<>> seen;
    for (std::size_t i = 0; i < list.elements().size(); ++i) {
        const auto& value = list.elements()[i];
        if (kind == Kind::objects) {
            if (!value.dictionary()) m_faults.add(element(path, i), "must be an object");
        } else if (!value.text() || value.text()->empty()) {
            m_faults.add(element(path, i), "must be a text");
        } else if (kind == Kind::values && (!isDigits(*value.text()) || torv::intValue(*value.text()) > 255 ||
                                            std::to_string(torv::intValue(*value.text())) != *value.text())) {
            m_faults.add(element(path, i), "must be a text with a whole number from 0 to 255, as in \"3\"");
        } else if (!seen.insert(*value.text()).second) {
            m_faults.add(element(path, i), inQuotes(*value.text()) + " is in the list twice");
        }
    }
}

void ProfileChecker::checkHead(const Dictionary& profile) {
    if (const auto* version = profile["version"].text()) {
        const auto point = version->find('.');
        if (point == std::string::npos || !isDigits(version->substr(0, point)) ||
            !isDigits(version->substr(point + 1))) {
            m_faults.add("version", "is " + inQuotes(*version) +
                                        " and must be two whole numbers with a point, as in \"1.10\"");
        }
    }
    const auto* url = profile["url"].text();
    if (url && !m_loader.accepts(*url)) {
        m_faults.add("url",
                     "is " + inQuotes(*url) + " and must be an address beginning with http:// or https://");
    }
    if (!profile.find("url") && m_urlNeeded) m_faults.add("url", "is missing; --base-url gives one to all");
}

void ProfileChecker::checkList(const Value& list, Place place, const std::string& path) {
    FirstPlaces names;
    for (std::size_t i = 0; i < list.elements().size(); ++i) {
        const auto* members = list.elements()[i].dictionary();
        if (!members) continue;
        const auto at = element(path, i);
        if (const auto* name = (*members)["name"].text()) {
            checkOnce(names, torv::percentDecoded(*name).value_or(""), "name", member(at, "name"));
        }
        if (place == group) {
            checkGroup(*members, at);
        } else {
            checkAttribute(*members, place, at);
        }
    }
}

void ProfileChecker::checkGroup(const Dictionary& members, const std::string& path) {
    checkKeys(members, group, path);
    checkList(members["items"], tuningItem, member(path, "items"));
    if (members["items"].array() && members["items"].elements().empty()) {
        m_faults.add(member(path, "items"), "must not be empty");
    }
    const auto* type = members["type"].text();
    if (!type || *type != "equalizer") return;
    for (const auto* key : {"default", "low", "high", "resolution"}) {
        if (!members.find(key)) m_faults.add(member(path, key), "is missing, and an equalizer needs it");
    }
    if (const auto step = number(members, "resolution"); step && *step <= 0) {
        m_faults.add(member(path, "resolution"), "must be above 0");
    }
    checkOrder(members, "low", "high", path);
    const auto low = number(members, "low");
    const auto high = number(members, "high");
    const auto centre = number(members, "default");
    if (!low || !high) return;
    if (centre && (*centre < *low || *centre > *high)) {
        m_faults.add(member(path, "default"), "must be from low to high");
    }
    checkItemRanges(members, path);
}

void ProfileChecker::checkItemRanges(const Dictionary& members, const std::string& path) {
    const auto& items = members["items"].elements();
    for (std::size_t i = 0; i < items.size(); ++i) {
        const auto low = items[i]["minValue"].doubleValue();
        const auto high = items[i]["maxValue"].doubleValue();
        if (low >= *number(members, "low") && high <= *number(members, "high")) continue;
        m_faults.add(element(member(path, "items"), i),
                     "minValue and maxValue must lie on the group's scale, from low to high");
    }
}

void ProfileChecker::checkAttribute(const Dictionary& members, Place place, const std::string& path) {
    checkKeys(members, place, path);
    checkAID(members, place, path);
    checkFormatter(members, place, path);
    checkWidth(members, place, path);
    if ((place & listed) != 0) checkOrder(members, "minValue", "maxValue", path);
    if ((place & written) != 0) checkWritable(members, path);
    if (place == sensor) checkWarning(members, path);
    if (place == tuningItem) checkOrder(members, "warningvaluelow", "warningvaluehigh", path);
    checkOptions(members, "options", "optionValues", path);
    checkOptions(members, "options1", "optionValues1", path);
}

void ProfileChecker::checkAID(const Dictionary& members, Place place, const std::string& path) {
    const auto aid = whole(members, "aid");
    if (!aid) return;
    const auto at = member(path, "aid");
    checkOnce(m_aids, std::to_string(*aid), "AID", at);
    const auto* reserved = std::find_if(reservedAIDs.begin(), reservedAIDs.end(),
                                        [&](const ReservedAID& r) { return r.aid == *aid; });
    if (reserved != reservedAIDs.end()) {
        m_faults.add(at, std::to_string(*aid) + " is taken by " + std::string{reserved->use});
    }
    const auto* known = std::find_if(knownSettings.begin(), knownSettings.end(),
                                     [&](const KnownSetting& k) { return k.aid == *aid; });
    if (known == knownSettings.end()) return;
    const auto use = std::to_string(*aid) + " is " + std::string{known->use};
    if (place != setting) return m_faults.add(at, use + " and belongs among the settings");
    if (whole(members, "formatter") != known->formatter) {
        m_faults.add(member(path, "formatter"),
                     use + " and needs formatter " + std::to_string(known->formatter));
    }
    if (members["options"].elements().size() < known->options) {
        m_faults.add(member(path, "options"), use + " and needs options: " + std::to_string(known->options) +
                                                  (known->aid == 226 ? " or more" : ""));
    }
    if (known->formatter != driveTrainFormatter) return;
    for (const auto* key : {"optionValues", "options1", "optionValues1"}) {
        if (members[key].elements().empty()) m_faults.add(member(path, key), use + " and needs a list here");
    }
}

void ProfileChecker::checkFormatter(const Dictionary& members, Place place, const std::string& path) {
    const auto type = whole(members, "formatter");
    const auto* formatter = formatterOf(members);
    if (!formatter) return;
    const auto at = member(path, "formatter");
    if ((formatter->places & place) == 0) {
        m_faults.add(at, std::to_string(*type) + " can't be used for " + std::string{nameOf(place)});
    }
    const auto aid = whole(members, "aid").value_or(0);
    if (aid >= 1 && aid <= 254 && (aid > torv::lastShortAID) != (*type == driveTrainFormatter)) {
        m_faults.add(at, *type == driveTrainFormatter
                             ? "8 takes 6 bytes and needs an AID from 220 to 254; those below have 4"
                             : "must be 8 for an AID from 220 to 254: the first of its 13 bytes is a length");
    }
    if (formatter->scaled && number(members, "multiplyFactor").value_or(0) == 0) {
        m_faults.add(member(path, "multiplyFactor"),
                     "must be there and not 0, or every value reads as the offset");
    }
    const auto& toggable = members["toggable"];
    if (toggable.truth() && *toggable.truth() && !formatter->hasSwitch) {
        m_faults.add(member(path, "toggable"), "needs a formatter with a switch, 4 to 7");
    }
}

/// The AID alone fixes how many bytes of its value travel. A scale may go beyond what they carry, for the
/// eye's sake; what is written must not, or it would arrive cut.
void ProfileChecker::checkWidth(const Dictionary& members, Place place, const std::string& path) {
    const auto aid = whole(members, "aid").value_or(0);
    const auto* formatter = formatterOf(members);
    if (!formatter || aid < 1 || aid > torv::lastShortAID) return;
    const unsigned width = x2comValueLength(static_cast<std::uint8_t>(aid), 0);
    const auto has =
        "AID " + std::to_string(aid) + " has " + std::to_string(width) + (width == 1 ? " byte" : " bytes");
    if (formatter->bytes > width) {
        m_faults.add(member(path, "formatter"),
                     "takes " + std::to_string(formatter->bytes) + " bytes, and " + has);
    }
    const auto most = (std::exp2(8.0 * width) - 1) * std::abs(number(members, "multiplyFactor").value_or(0));
    const auto highest = number(members, "maxValue");
    if (!formatter->scaled || (place & written) == 0 || !highest || *highest <= most) return;
    m_faults.add(member(path, "maxValue"), "is too much: " + has + " and carries at most " + shortText(most));
}

void ProfileChecker::checkWritable(const Dictionary& members, const std::string& path) {
    checkOrder(members, "additionalMinValue", "additionalMaxValue", path);
    const auto* formatter = formatterOf(members);
    if (!formatter) return;
    auto highest = formatter->highestValue;
    if (formatter->scaled) {
        highest *= std::abs(number(members, "multiplyFactor").value_or(0));
        if (number(members, "offset").value_or(0) != 0) {
            m_faults.add(member(path, "offset"), "must be 0 here: it is not taken off again in writing");
        }
    }
    for (const auto* key : {"minValue", "maxValue", "additionalMinValue", "additionalMaxValue"}) {
        const auto value = number(members, key);
        if (!value || highest == 0 || (*value <= highest && (formatter->scaled || *value >= 0))) continue;
        m_faults.add(member(path, key), "is outside of what the formatter writes, " +
                                            (formatter->scaled ? "at most " : std::string{"0 to "}) +
                                            shortText(highest));
    }
}

void ProfileChecker::checkWarning(const Dictionary& members, const std::string& path) {
    if (whole(members, "warningRule").value_or(0) != 0 && !members.find("warningValue")) {
        m_faults.add(member(path, "warningValue"), "is missing, and the warning rule needs it");
    }
}

void ProfileChecker::checkOptions(const Dictionary& members, std::string_view texts, std::string_view values,
                                  const std::string& path) {
    if (!members[values].array() || members[texts].elements().size() == members[values].elements().size()) {
        return;
    }
    m_faults.add(member(path, values), "has " + std::to_string(members[values].elements().size()) +
                                           " elements and " + std::string{texts} + " has " +
                                           std::to_string(members[texts].elements().size()));
}

void ProfileChecker::checkCategories(const Value& sensors, const std::string& path) {
    std::map<std::string, std::size_t> sizes;
    FirstPlaces seen;
    struct Row {
        std::string at;
        std::string topic;
        std::string index;
    };
    std::vector<Row> rows;
    for (std::size_t i = 0; i < sensors.elements().size(); ++i) {
        const auto* category = sensors.elements()[i]["category"].text();
        if (!category) continue;
        const auto at = member(element(path, i), "category");
        checkOnce(seen, *category, "category", at);
        const auto line = category->find('_');
        auto topic = category->substr(0, line);
        auto index = line == std::string::npos ? std::string{} : category->substr(line + 1);
        if (topic.empty() || !isDigits(index) || std::to_string(torv::intValue(index)) != index) {
            m_faults.add(at,
                         "is " + inQuotes(*category) + " and must be a topic and a row, as in \"Turbo_0\"");
            continue;
        }
        ++sizes[topic];
        rows.push_back({at, std::move(topic), std::move(index)});
    }
    for (const auto& [at, topic, index] : rows) {
        const auto size = sizes[topic];
        if (static_cast<std::size_t>(torv::intValue(index)) < size) continue;
        m_faults.add(at, "the rows of " + inQuotes(topic) + " must be numbered from 0 to " +
                             std::to_string(size - 1) + " without a gap");
    }
}

void ProfileChecker::checkOrder(const Dictionary& members, std::string_view low, std::string_view high,
                                const std::string& path) {
    const auto lowest = number(members, low);
    const auto highest = number(members, high);
    if (lowest && highest && *lowest >= *highest) {
        m_faults.add(member(path, low), "must be below " + std::string{high});
    }
}

void ProfileChecker::checkOnce(FirstPlaces& seen, const std::string& what, std::string_view kind,
                               const std::string& path) {
    if (what.empty()) return;
    const auto [first, isNew] = seen.emplace(what, path);
    if (isNew) return;
    m_faults.add(path, "the " + std::string{kind} + ' ' + inQuotes(what) + " is already at " + first->second);
}

}  // namespace profiles
