#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "vehicles/Vehicle.h"

namespace torv {

/// Reads a profile document from a file, `info` included. Nothing when it can't be read; `error` is then one
/// line with the file, the place of the first fault, and what it is. At most 16 MiB. Any thread.
[[nodiscard]] std::optional<Vehicle> vehicleFromFile(const std::filesystem::path& file, std::string& error);

/// The same for a file that the user has named, or, with an empty path, for the profile that ships.
[[nodiscard]] std::optional<Vehicle> vehicleFromFileOrShipped(const std::filesystem::path& file,
                                                              std::string& error);

}  // namespace torv
