#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace torv {

/// The texts of all trouble codes that ship with the program, by code as the reports spell it. Main thread.
class TroubleCodeDatabase final {
public:
    using Texts = std::map<std::string, std::string>;

    /// "DTCDB.sqlite" among the resources. Nothing when it can't be read; `error` is then one line that names
    /// the file.
    [[nodiscard]] static std::optional<Texts> load(std::string& error);
    [[nodiscard]] static std::optional<Texts> load(const std::filesystem::path& file, std::string& error);
};

}  // namespace torv
