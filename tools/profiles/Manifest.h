// A folder of profile documents, and the update manifest made from it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "Faults.h"
#include "platform/URLLoader.h"
#include "support/Value.h"

namespace profiles {

inline constexpr auto manifestName = "update.json";

/// The manifest entries of all documents in the folder, in the order of their file names; what is wrong
/// goes to `faults`, with addresses that the loader does not take. With a base URL each address is that and
/// the file's name, else what the document says.
[[nodiscard]] torv::Array manifestOfFolder(const std::filesystem::path& folder, const std::string& baseURL,
                                           const torv::URLLoader& loader, Faults& faults);

/// Beside the documents, in one step: whoever reads finds the old one or the new one. `error` is one line.
[[nodiscard]] bool writeManifest(const std::filesystem::path& folder, const torv::Array& entries,
                                 std::string& error);

}  // namespace profiles
