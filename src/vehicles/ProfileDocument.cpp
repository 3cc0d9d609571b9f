#include "vehicles/ProfileDocument.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

#include "JSON/SBJsonParser.h"
#include "platform/Platform.h"

namespace torv {
namespace {

constexpr std::uintmax_t mostBytes = 16U << 20U;

std::optional<std::string> contents(const std::filesystem::path& file, std::string& error) {
    std::error_code code;
    if (std::filesystem::is_directory(file, code)) {
        error = file.string() + ": is a folder";
        return std::nullopt;
    }
    std::ifstream stream{file, std::ios::binary};
    std::string text;
    if (stream) {
        text.resize(mostBytes + 1);
        stream.read(text.data(), static_cast<std::streamsize>(text.size()));
        text.resize(static_cast<std::size_t>(stream.gcount()));
    }
    if (!stream && !stream.eof()) {
        error = file.string() + ": " + std::strerror(errno);
    } else if (text.size() > mostBytes) {
        error = file.string() + ": is larger than 16 MiB";
    } else {
        return text;
    }
    return std::nullopt;
}

std::string place(std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, std::min(offset, text.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const auto lineStart = before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(before.size() - lineStart + 1);
}

}  // namespace

std::optional<Vehicle> vehicleFromFile(const std::filesystem::path& file, std::string& error) {
    const auto text = contents(file, error);
    if (!text) return std::nullopt;
    SBJsonParser parser;
    auto document = parser.objectWithString(*text);
    if (!document) {
        error = file.string() + ": " + place(*text, parser.errorOffset()) + ": " +
                parser.errorTrace().front().description;
        return std::nullopt;
    }
    auto* info = document->dictionary();
    if (!info) {
        error = file.string() + ": a profile is an object, and this is a list";
        return std::nullopt;
    }
    auto vehicle = Vehicle::vehicleFromDictionary(*info);
    vehicle.setInfo(std::move(*info));
    return vehicle;
}

std::optional<Vehicle> vehicleFromFileOrShipped(const std::filesystem::path& file, std::string& error) {
    if (!file.empty()) return vehicleFromFile(file, error);
    if (const auto shipped = Platform::current().resources().pathForResourceOfType("vehicle", "json")) {
        return vehicleFromFile(*shipped, error);
    }
    error = "the file vehicle.json is missing from the application's resources";
    return std::nullopt;
}

}  // namespace torv
