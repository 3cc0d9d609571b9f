#include "tuning/PassReport.h"

#include <algorithm>

#include "support/Hexadecimal.h"

namespace torv {
namespace {

/// What an AID means, whether the vehicle has it or not.
TorvAttribute itemFor(AID aid, const std::vector<TorvAttribute>& items) {
    const auto found = std::ranges::find(items, aid, &TorvAttribute::aid);
    if (found != items.end()) return *found;
    TorvAttribute unknown;
    unknown.name = "AID " + std::to_string(aid);
    return unknown;
}

/// By what it reads as, or by its bytes where they hold more than the text and the flags.
bool isSame(const TorvAttribute& item, AV a, AV b) {
    if (std::ranges::equal(a.bytes(), b.bytes())) return true;
    const auto first = item.dataFromAV(a);
    const auto second = item.dataFromAV(b);
    if (!first || !second || first->additionalData.has_value()) return false;
    return first->value == second->value && first->flags == second->flags;
}

std::optional<PassReport::Fault> faultOf(const TorvAttribute& item, const PushedItem& pushed) {
    using Fault = PassReport::Fault;
    if (!pushed.acknowledged) return Fault::notAcknowledged;
    if (pushed.isReset) return pushed.overtaken ? std::optional{Fault::overtaken} : std::nullopt;
    if (!pushed.found) return Fault::unanswered;
    return isSame(item, pushed.wanted, *pushed.found) ? std::nullopt : std::optional{Fault::different};
}

}  // namespace

std::vector<TorvAttribute> namedTuningItems(const Vehicle& vehicle) {
    std::vector<TorvAttribute> items;
    for (const auto& group : vehicle.tuningGroups()) {
        for (auto item : group.items) {
            item.name = item.name.value_or("AID " + std::to_string(item.aid));
            if (group.type != "list" && group.name) item.name = *group.name + " " + *item.name;
            items.push_back(std::move(item));
        }
    }
    return items;
}

std::string shownValue(const TorvAttribute& item, const AV& value) {
    auto bytes = value;
    const auto record = item.dataFromAV(bytes);
    if (!record) return hexadecimalText(value.bytes());
    const auto unit = unitText(item.unit);
    return unit.empty() ? record->value : record->value + " " + unit;
}

PassReport PassReport::of(const PassRecord& record, const Vehicle& vehicle) {
    PassReport report;
    report.total = record.size();
    const auto items = namedTuningItems(vehicle);
    for (const auto& pushed : record) {
        auto item = itemFor(pushed.aid, items);
        if (pushed.isReset) item.name = "Reset to the defaults";
        const auto fault = faultOf(item, pushed);
        if (!fault) continue;
        report.rows.push_back({.aid = pushed.aid,
                               .name = *item.name,
                               .wanted = pushed.isReset ? std::string{} : shownValue(item, pushed.wanted),
                               .found = pushed.found ? shownValue(item, *pushed.found) : std::string{},
                               .fault = *fault});
        if (pushed.isReset)
            report.isReset = true;
        else
            report.wanted.emplace(pushed.aid, pushed.wanted);
    }
    return report;
}

PassReport PassReport::after(PassReport retried) const {
    if (isReset) return retried.total == 0 ? *this : retried;
    const auto isUntried = [&, tried = retried.total](AID aid) {  // values go in the order of `wanted`
        return std::distance(wanted.begin(), wanted.find(aid)) >= static_cast<std::ptrdiff_t>(tried);
    };
    retried.total = wanted.size();
    for (const auto& row : rows) {
        if (!isUntried(row.aid)) continue;
        retried.rows.push_back(row);
        retried.wanted.insert(*wanted.find(row.aid));
    }
    return retried;
}

std::string PassReport::summary() const {
    std::string text;
    if (!rows.empty()) {
        text = "The module has not confirmed " + std::to_string(rows.size()) + " of " +
               std::to_string(total) + (total == 1 ? " value." : " values.");
    }
    if (asFoundMissing) {
        if (!text.empty()) text += ' ';
        text += "What the module held before could not be read, so there is no profile \"As found\".";
    }
    return text;
}

std::string sentenceFor(const PassReport::Row& row) {
    const auto wanted = row.wanted.empty() ? std::string{} : "wanted " + row.wanted + ", ";
    const auto found = row.found.empty() ? std::string{} : ", found " + row.found;
    switch (row.fault) {
        case PassReport::Fault::notAcknowledged:
            return wanted + "not acknowledged" + found;
        case PassReport::Fault::unanswered:
            return wanted + "acknowledged, but not read back";
        case PassReport::Fault::overtaken:
            return "acknowledged, but the connection came back and brought a profile";
        case PassReport::Fault::different:
            break;
    }
    return wanted + "found " + row.found;
}

std::vector<ValueDifference> differencesOf(const ProfileDictionary& first, const ProfileDictionary& second,
                                           const Vehicle& vehicle) {
    std::vector<ValueDifference> differences;
    for (const auto& item : namedTuningItems(vehicle)) {
        const auto a = first.find(item.aid);
        const auto b = second.find(item.aid);
        const bool inFirst = a != first.end();
        const bool inSecond = b != second.end();
        if (!inFirst && !inSecond) continue;
        if (inFirst && inSecond && isSame(item, a->second, b->second)) continue;
        differences.push_back({.aid = item.aid,
                               .name = *item.name,
                               .first = inFirst ? shownValue(item, a->second) : std::string{},
                               .second = inSecond ? shownValue(item, b->second) : std::string{}});
    }
    return differences;
}

}  // namespace torv
