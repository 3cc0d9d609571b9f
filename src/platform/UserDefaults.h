#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/Value.h"

namespace torv {

/// Where an entry that can't be read is kept: "KEY unreadable 1" and on.
[[nodiscard]] inline std::string keyOfUnreadable(std::string_view key, int number) {
    return std::string{key} + " unreadable " + std::to_string(number);
}

/// The keyed store of the user's choices. Main thread, or one thread at a time.
///
/// Any text is a key: empty, with slashes, quotes or blanks, of any length. What is set is seen at once
/// by this process and is on disk once `synchronize` has returned true.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    /// A null value when there is no entry.
    [[nodiscard]] virtual Value objectForKey(std::string_view key) const = 0;
    virtual void setObjectForKey(Value object, std::string_view key) = 0;
    virtual void removeObjectForKey(std::string_view key) = 0;
    /// Every change since the last call, as one. False, with a line in the log, when it can't be kept.
    virtual bool synchronize() = 0;
    /// Ascending.
    [[nodiscard]] virtual std::vector<std::string> keys() const = 0;
};

}  // namespace torv
