#include "support/FileContents.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace torv {
namespace {

constexpr std::uintmax_t mostBytes = 16U << 20U;

}  // namespace

std::optional<std::string> contentsOfFile(const std::filesystem::path& file, std::string& error) {
    // A pipe, for one, would be waited for without end.
    std::error_code code;
    if (std::filesystem::exists(file, code) && !std::filesystem::is_regular_file(file, code)) {
        error = file.string() + ": is not a regular file";
        return std::nullopt;
    }
    std::ifstream stream{file, std::ios::binary};
    std::string text;
    std::array<char, 65536> block;
    while (stream && text.size() <= mostBytes) {
        stream.read(block.data(), block.size());
        text.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream && !stream.eof()) {
        error = file.string() + ": " + std::error_code{errno, std::generic_category()}.message();
    } else if (text.size() > mostBytes) {
        error = file.string() + ": is larger than 16 MiB";
    } else {
        return text;
    }
    return std::nullopt;
}

}  // namespace torv
