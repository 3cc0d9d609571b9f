#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace bench {

/// What a module does with the writes of one AID in place of taking them.
enum class WriteFault {
    none,
    stuck,   ///< acknowledges, and silently keeps its old value
    clamp,   ///< acknowledges, and takes no more than the middle of the item's range
    refuse,  ///< does not acknowledge, and keeps its old value
};

/// Reads "stuck:AID", "clamp:AID" or "refuse:AID".
[[nodiscard]] std::optional<std::pair<std::uint8_t, WriteFault>> parseWriteFault(const std::string& text);

}  // namespace bench
