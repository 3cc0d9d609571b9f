#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace torv {

/// The whole of a file of at most 16 MiB. Nothing when it can't be read; `error` is then one line that names
/// the file and says why. Any thread.
[[nodiscard]] std::optional<std::string> contentsOfFile(const std::filesystem::path& file,
                                                        std::string& error);

}  // namespace torv
