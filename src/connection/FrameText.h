#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>

#include "vehicles/Vehicle.h"

namespace torv {

/// What each AID is called on a vehicle.
using AttributeNames = std::map<std::uint8_t, std::string>;
[[nodiscard]] AttributeNames attributeNames(const Vehicle& vehicle);

/// "write", "push A", "ack", "push B", "request", "response", or "type 9".
[[nodiscard]] std::string frameTypeText(std::uint8_t type);
/// Type and contents of a frame as they stand in its bytes, whatever its checksum says: "push A  8=2a Boost".
/// The frame may be cut; none of the bytes is trusted.
[[nodiscard]] std::string frameText(std::span<const std::uint8_t> frame, const AttributeNames& names);

}  // namespace torv
