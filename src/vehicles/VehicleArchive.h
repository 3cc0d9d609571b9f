// Vehicles as a readable text, and back.
//
// The first line is "iTorv vehicles 1", the number being the version of this form. Then for each vehicle a
// line of JSON with "name", "version", "DTC", "url", "updateAvailable" and "infoBytes", and the profile
// document itself, that many bytes and a line feed. So a list is read without parsing a document. Any thread.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "vehicles/Vehicle.h"

namespace torv {

[[nodiscard]] std::string archivedVehicles(std::span<const Vehicle> vehicles);
/// Nothing of a text that is not whole, or of a later version; `error` then says why.
[[nodiscard]] std::optional<std::vector<Vehicle>> vehiclesFromArchive(std::string_view text,
                                                                      std::string& error);

}  // namespace torv
