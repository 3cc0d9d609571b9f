#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/Value.h"

namespace torv {

/// Where an entry that can't be read is kept: "KEY unreadable 1" and on. Any thread.
[[nodiscard]] std::string keyOfUnreadable(std::string_view key, int number);
/// The KEY of such a key; empty of any other. Any thread.
[[nodiscard]] std::string_view originOfUnreadable(std::string_view aside);

/// What is known of an entry. "Nothing stored" and "can't be read" are different: if a damaged entry passed
/// for a new vehicle, the module's values would be overwritten.
enum class EntryState { absent, there, unreadable };

/// The keyed store of the user's choices. Any thread: each call is whole by itself, a read
/// and a later write are not.
///
/// Any text is a key: empty, with slashes, quotes or blanks, of any length. What is set is seen at once
/// by this process and is on disk once `synchronize` has returned true.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    /// A null value when there is no entry, or none that can be read.
    [[nodiscard]] virtual Value objectForKey(std::string_view key) const = 0;
    virtual void setObjectForKey(Value object, std::string_view key) = 0;
    virtual void removeObjectForKey(std::string_view key) = 0;
    /// Every change that is not on disk yet, as one. False, with a line in the log, when any of it can't be
    /// kept; it is tried again with the next call.
    virtual bool synchronize() = 0;
    /// Ascending, with those of entries that can't be read.
    [[nodiscard]] virtual std::vector<std::string> keys() const = 0;
    /// False when the store, or a part of it, could not be read: what is not there may have been there.
    [[nodiscard]] virtual bool isWhole() const { return true; }
    /// False while changes don't reach the disk.
    [[nodiscard]] virtual bool isKept() const { return true; }

    /// An entry is unreadable until something else is set under its key, however often the program starts:
    /// the part of the store that could not be read may have held it, or it stands under another key.
    [[nodiscard]] EntryState stateForKey(std::string_view key) const;
};

}  // namespace torv
