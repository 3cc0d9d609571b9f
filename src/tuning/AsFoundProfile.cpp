#include "tuning/AsFoundProfile.h"

#include <algorithm>
#include <optional>
#include <string>

#include "platform/Log.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "support/TimeTexts.h"
#include "tuning/ProfileList.h"
#include "tuning/ProfileValues.h"

namespace torv {
namespace {

// A module that answers nothing at all holds nobody up.
constexpr int firstAttempts = 2;
constexpr int attempts = 21;

std::string keyFor(const Vehicle& vehicle) {
    return std::string{asFoundKeyPrefix} + vehicle.name().value_or("(null)");
}

std::string freeName(const std::optional<ProfileList>& list) {
    const auto plain = "As found " + dayText(wallNow());
    auto name = plain;
    const auto isTaken = [&] {
        return (list && list->count(name) > 0) || !defaults().objectForKey(name).isNull();
    };
    for (int number = 2; isTaken(); ++number)
        name = plain + " " + std::to_string(number);
    return name;
}

bool read(iTorvFeeder& feeder, AID aid, int most, const std::function<bool()>& ended) {
    for (int attempt = 0; attempt < most && !ended(); ++attempt) {
        if (feeder.requestValueForAID(aid)) return true;
    }
    return false;
}

}  // namespace

AsFoundProfile::Outcome AsFoundProfile::keep(const std::shared_ptr<iTorvFeeder>& feeder,
                                             const Vehicle& vehicle, const std::function<bool()>& ended) {
    const auto items = vehicle.tuningItems();
    if (items.empty() || defaults().stateForKey(keyFor(vehicle)) != EntryState::absent)
        return Outcome::notDue;
    ProfileDictionary values;
    for (const auto& item : items) {
        if (!read(*feeder, item.aid, values.empty() ? firstAttempts : attempts, ended))
            return Outcome::unanswered;
        values.insert_or_assign(item.aid, feeder->valueForAID(item.aid));
    }
    // A connect in the meantime may have brought a replay, which did the same, and then wrote to the module.
    if (defaults().stateForKey(keyFor(vehicle)) != EntryState::absent) return Outcome::notDue;
    // A list that can't be used ends nothing here. The values are kept all the same, and a new list finds
    // them.
    std::optional<ProfileList> list;
    if (ProfileList::isUsable()) list.emplace();
    const auto name = freeName(list);
    if (!ProfileValues::store(name, values)) return Outcome::unanswered;
    if (list) list->add(name);
    defaults().setObjectForKey(name, keyFor(vehicle));
    defaults().synchronize();
    logLine("what the module held is kept as the profile \"" + name + "\"");
    return Outcome::kept;
}

void AsFoundProfile::closeAfter(const PassRecord& record, const Vehicle& vehicle) {
    if (defaults().stateForKey(keyFor(vehicle)) != EntryState::absent || vehicle.tuningItems().empty() ||
        std::ranges::none_of(record, &PushedItem::acknowledged))
        return;
    defaults().setObjectForKey(std::string{}, keyFor(vehicle));
    defaults().synchronize();
}

}  // namespace torv
