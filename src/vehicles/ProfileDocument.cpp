#include "vehicles/ProfileDocument.h"

#include <algorithm>

#include "JSON/SBJsonParser.h"
#include "platform/Platform.h"
#include "support/FileContents.h"
#include "support/Utf8.h"

namespace torv {
namespace {

std::string place(std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, std::min(offset, text.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const auto lineStart = before.rfind('\n') == std::string_view::npos ? 0 : before.rfind('\n') + 1;
    return "line " + std::to_string(line) + ", column " + std::to_string(before.size() - lineStart + 1);
}

}  // namespace

std::optional<Vehicle> vehicleFromFile(const std::filesystem::path& file, std::string& error) {
    const auto contents = contentsOfFile(file, error);
    if (!contents) return std::nullopt;
    const auto text = withoutByteOrderMark(*contents);
    SBJsonParser parser;
    auto document = parser.objectWithString(text);
    if (!document) {
        error = file.string() + ": " + place(text, parser.errorOffset()) + ": " +
                parser.errorTrace().front().description;
        return std::nullopt;
    }
    auto* info = document->dictionary();
    if (!info) {
        error = file.string() + ": a profile is an object, and this is a list";
        return std::nullopt;
    }
    auto vehicle = Vehicle::vehicleFromDictionary(*info);
    if (!vehicle.name()) {
        error = file.string() + ": the profile names no \"vehicle\"";
        return std::nullopt;
    }
    vehicle.setInfo(ProfileInfo{std::move(*info)});
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
