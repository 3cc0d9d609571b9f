#include "vehicles/VehicleArchive.h"

#include <algorithm>
#include <array>

#include "JSON/SBJsonParser.h"
#include "JSON/SBJsonWriter.h"

namespace torv {
namespace {

constexpr std::string_view heading = "iTorv vehicles 1";

struct TextField {
    std::string_view key;
    const Vehicle::Text& (Vehicle::*get)() const;
    void (Vehicle::*set)(Vehicle::Text);
};
constexpr std::array<TextField, 4> textFields{{
    {"name", &Vehicle::name, &Vehicle::setName},
    {"version", &Vehicle::version, &Vehicle::setVersion},
    {"DTC", &Vehicle::DTC, &Vehicle::setDTC},
    {"url", &Vehicle::url, &Vehicle::setUrl},
}};

/// Up to the next line feed, which is dropped; nothing when there is none.
std::optional<std::string_view> takeLine(std::string_view& text) {
    const auto end = text.find('\n');
    if (end == std::string_view::npos) return std::nullopt;
    const auto line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

/// Nothing when the text is damaged.
std::optional<Vehicle> takeVehicle(std::string_view& text) {
    const auto line = takeLine(text);
    const auto fields = line ? SBJsonParser{}.objectWithString(*line) : std::nullopt;
    if (!fields || !fields->dictionary() || !(*fields)["updateAvailable"].truth()) return std::nullopt;
    Vehicle vehicle;
    for (const auto& [key, get, set] : textFields) {
        const auto& value = (*fields)[key];
        if (!value.isNull() && !value.text()) return std::nullopt;
        (vehicle.*set)(value.textValue());
    }
    vehicle.setUpdateAvailable(*(*fields)["updateAvailable"].truth());
    const auto size = (*fields)["infoBytes"].longLongValue();
    if (size < 0 || static_cast<std::uint64_t>(size) >= text.size()) return std::nullopt;
    const auto length = static_cast<std::size_t>(size);
    if (text[length] != '\n') return std::nullopt;
    vehicle.setInfo(ProfileInfo{std::string{text.substr(0, length)}});
    text.remove_prefix(length + 1);
    return vehicle;
}

}  // namespace

std::string archivedVehicles(std::span<const Vehicle> vehicles) {
    std::string text{heading};
    text += '\n';
    for (const auto& vehicle : vehicles) {
        Dictionary fields;
        for (const auto& [key, get, set] : textFields) {
            const auto& value = (vehicle.*get)();
            fields.set(std::string{key}, value ? Value{*value} : Value{});
        }
        fields.set("updateAvailable", vehicle.updateAvailable());
        fields.set("infoBytes", Number::fromInteger(static_cast<std::int64_t>(vehicle.info().text().size())));
        text += SBJsonWriter{}.stringWithObject(fields).value_or("{}");
        text += '\n';
        text += vehicle.info().text();
        text += '\n';
    }
    return text;
}

std::optional<std::vector<Vehicle>> vehiclesFromArchive(std::string_view text, std::string& error) {
    const auto line = takeLine(text);
    if (!line || *line != heading) {
        error = "it does not begin with \"" + std::string{heading} + "\"";
        return std::nullopt;
    }
    std::vector<Vehicle> vehicles;
    while (!text.empty()) {
        auto vehicle = takeVehicle(text);
        if (!vehicle) {
            error = "vehicle " + std::to_string(vehicles.size() + 1) + " is damaged";
            return std::nullopt;
        }
        vehicles.push_back(std::move(*vehicle));
    }
    return vehicles;
}

}  // namespace torv
