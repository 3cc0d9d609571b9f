#pragma once

#include <vector>

#include "platform/Resources.h"

namespace torv {

/// Looks beside the program (`../share/itorv`), then in the XDG data directories. What the application
/// makes itself goes to its folder in the user's own data directory.
class StandardResources final : public Resources {
public:
    StandardResources();

    [[nodiscard]] std::optional<std::filesystem::path> pathForResourceOfType(
        std::string_view name, std::string_view type) const override;
    [[nodiscard]] std::filesystem::path documentsDirectory() const override { return m_documents; }

private:
    std::filesystem::path m_documents;
    std::vector<std::filesystem::path> m_places;
};

}  // namespace torv
