#pragma once

#include <string>
#include <string_view>

#include "support/Value.h"

namespace torv {

/// Moves an entry of the user defaults that can't be read to another key ("KEY unreadable 1" and on), says so
/// in the log with the reason, and synchronizes. Nothing is overwritten. Any thread; not guarded against
/// another change of the same entry in between.
void setAsideUnreadable(std::string_view key, const Value& value, const std::string& why);

}  // namespace torv
