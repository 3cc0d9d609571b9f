#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace torv {

/// Writes the document to a new file of the documents directory, named after the time, and says where it is.
/// Nothing when it can't be written; `error` is then one line that names the file. Main thread.
[[nodiscard]] std::optional<std::filesystem::path> saveTroubleCodes(const std::string& document,
                                                                    std::chrono::system_clock::time_point now,
                                                                    std::string& error);

}  // namespace torv
