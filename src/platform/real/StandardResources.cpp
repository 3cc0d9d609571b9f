#include "platform/real/StandardResources.h"

#include <cstdlib>
#include <sstream>
#include <string>
#include <system_error>

namespace torv {
namespace {

constexpr auto folder = "itorv";

std::string environment(const char* name, const std::string& otherwise) {
    const char* value = std::getenv(name);
    return value && *value ? value : otherwise;
}

}  // namespace

StandardResources::StandardResources() {
    const std::filesystem::path home = environment("HOME", ".");
    const std::filesystem::path own = environment("XDG_DATA_HOME", (home / ".local/share").string());
    m_documents = own / folder;
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) m_places.push_back(program.parent_path().parent_path() / "share" / folder);
    m_places.push_back(m_documents);
    std::istringstream shared{environment("XDG_DATA_DIRS", "/usr/local/share:/usr/share")};
    for (std::string place; std::getline(shared, place, ':');) {
        if (!place.empty()) m_places.push_back(std::filesystem::path{place} / folder);
    }
}

std::optional<std::filesystem::path> StandardResources::pathForResourceOfType(std::string_view name,
                                                                              std::string_view type) const {
    const auto file = std::string{name} + '.' + std::string{type};
    for (const auto& place : m_places) {
        std::error_code error;
        if (std::filesystem::is_regular_file(place / file, error)) return place / file;
    }
    return std::nullopt;
}

}  // namespace torv
