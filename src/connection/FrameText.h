#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "vehicles/Vehicle.h"

namespace torv {

/// What each AID is called on a vehicle.
using AttributeNames = std::map<std::uint8_t, std::string>;
[[nodiscard]] AttributeNames attributeNames(const Vehicle& vehicle);

/// As captures carry them: a line for each, "AID<tab>name". What is no such line is passed over.
[[nodiscard]] std::string textOfNames(const AttributeNames& names);
[[nodiscard]] AttributeNames namesFromText(std::string_view text);

/// Whether the bytes begin with a whole frame with the right checksum.
[[nodiscard]] bool beginsWithFrame(std::span<const std::uint8_t> bytes);
/// "write", "push A", "ack", "push B", "request", "response", or "type 9".
[[nodiscard]] std::string frameTypeText(std::uint8_t type);
/// Type and contents of a frame as they stand in its bytes, whatever its checksum says: "push A  8=2a Boost".
/// The frame may be cut; none of the bytes is trusted.
[[nodiscard]] std::string frameText(std::span<const std::uint8_t> frame, const AttributeNames& names);

}  // namespace torv
