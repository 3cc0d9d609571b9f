#include "platform/UserDefaults.h"

#include <algorithm>

namespace torv {
namespace {

constexpr std::string_view mark = " unreadable ";

}  // namespace

std::string keyOfUnreadable(std::string_view key, int number) {
    return std::string{key}.append(mark).append(std::to_string(number));
}

std::string_view originOfUnreadable(std::string_view aside) {
    const auto number = aside.find_last_not_of("0123456789") + 1;
    const auto front = aside.substr(0, number);
    if (number == aside.size() || !front.ends_with(mark)) return {};
    return front.substr(0, front.size() - mark.size());
}

EntryState UserDefaults::stateForKey(std::string_view key) const {
    if (!objectForKey(key).isNull()) return EntryState::there;
    if (!isWhole()) return EntryState::unreadable;
    const auto all = keys();
    const bool aside = std::any_of(all.begin(), all.end(), [&](const std::string& other) {
        return !key.empty() && originOfUnreadable(other) == key;
    });
    return aside ? EntryState::unreadable : EntryState::absent;
}

}  // namespace torv
