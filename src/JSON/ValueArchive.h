// Values as readable text, and back without loss.
//
// The text is JSON. What JSON has no form for is a dictionary of one member: {"$data": "0aff"} is a data
// block, {"$bytes": "ff"} a text that is not valid UTF-8. A dictionary whose first key begins with "$" is
// {"$dictionary": {...}}. The keys of dictionaries are valid UTF-8. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "support/Value.h"

namespace torv {

/// Nothing when the value nests deeper than the JSON codec goes.
[[nodiscard]] std::optional<std::string> archivedText(const Value& value);
/// Nothing for a text that `archivedText` has not made; `error` then says why. Where only members of
/// dictionaries can't be read, they are null in what comes, and `error` names the last of them; else it is
/// empty.
[[nodiscard]] std::optional<Value> valueFromArchivedText(std::string_view text, std::string& error);

}  // namespace torv
