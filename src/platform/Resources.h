#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace torv {

/// Files that ship with the application, and the folder for those that it makes. Any thread.
class Resources {
public:
    Resources() = default;
    Resources(const Resources&) = delete;
    Resources& operator=(const Resources&) = delete;
    virtual ~Resources() = default;

    /// The file NAME.TYPE that ships; nothing when there is none. The name may begin with folders.
    [[nodiscard]] virtual std::optional<std::filesystem::path> pathForResourceOfType(
        std::string_view name, std::string_view type) const = 0;
    /// Need not exist yet.
    [[nodiscard]] virtual std::filesystem::path documentsDirectory() const = 0;
};

}  // namespace torv
