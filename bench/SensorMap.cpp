#include "SensorMap.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <numbers>
#include <string_view>

namespace bench {
namespace {

struct NameRow {
    std::string_view words;  ///< all of them stand in the name, in lower case
    Quantity quantity;
    double peak;         ///< the most that the model gives; tells a foreign unit by its range
    bool warns = false;  ///< passes its limit at full throttle
};

using enum Quantity;
/// The first row that fits counts.
constexpr std::array<NameRow, 49> names{{
    {"turbo speed", turboSpeed, 150000},
    {"turbine speed", turboSpeed, 150000},
    {"vehicle speed", vehicleSpeed, 95},
    {"engine speed", engineSpeed, 3600},
    {"rpm", engineSpeed, 3600},
    {"speed", vehicleSpeed, 95},
    {"boost target", boostTarget, 53},
    {"desired boost", boostTarget, 53},
    {"boost", boost, 51, true},
    {"drive pressure", drivePressure, 61},
    {"post egt", egtPost, 1260, true},
    {"dpf inlet", filterInlet, 1100},
    {"dpf outlet", filterOutlet, 1100},
    {"dpf pressure", filterDrop, 4},
    {"soot", sootLoad, 85},
    {"egt", egtPre, 1500, true},
    {"exhaust temp", egtPre, 1500, true},
    {"coolant", coolant, 206},
    {"oil temp", oilTemp, 226},
    {"oil press", oilPressure, 72},
    {"trans temp", transTemp, 198},
    {"intake temp", intakeTemp, 100},
    {"charge temp", chargeTemp, 170},
    {"ambient", ambient, 80},
    {"fuel temp", fuelTemp, 122},
    {"lift pump", liftPump, 18},
    {"fuel pressure", liftPump, 18},
    {"rail target", railTarget, 27000},
    {"desired rail", railTarget, 27000},
    {"rail", rail, 27000},
    {"timing", timing, 24},
    {"pulse", pulseWidth, 2000},
    {"air flow", airFlow, 62},
    {"economy", economy, 60},
    {"fuel rate", fuelRate, 28},
    {"fuel level", fuelLevel, 80},
    {"def level", defLevel, 90},
    {"egr", egr, 34},
    {"slip", slip, 22},
    {"volt", voltage, 15},
    {"battery", voltage, 15},
    {"vgt", vane, 84},
    {"vane", vane, 84},
    {"pedal", pedal, 100},
    {"throttle", pedal, 100},
    {"load", load, 100},
    {"last regen", sinceRegen, 200},
    {"since start", sinceStart, 3600},
    {"odometer", odometer, 48300},
}};
constexpr NameRow runTimeRow{"run time", runTime, 1300000};
/// Fixed on every vehicle, for a profile whose names say nothing.
constexpr std::uint8_t engineSpeedAid = 78;

bool fits(const std::string& name, std::string_view words) {
    while (!words.empty()) {
        const std::size_t end = std::min(words.find(' '), words.size());
        if (name.find(words.substr(0, end)) == std::string::npos) return false;
        words.remove_prefix(std::min(end + 1, words.size()));
    }
    return true;
}

const NameRow* rowFor(const Attribute& sensor) {
    std::string name = sensor.name;
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (sensor.layout == Layout::time || fits(name, runTimeRow.words)) return &runTimeRow;
    const auto row = std::ranges::find_if(names, [&](const NameRow& each) { return fits(name, each.words); });
    if (row != names.end()) return &*row;
    return sensor.aid == engineSpeedAid ? &names[3] : nullptr;
}

bool isUpperLimit(int rule) {
    return rule == 1 || rule == 3;
}
bool isLowerLimit(int rule) {
    return rule == 2 || rule == 4;
}

double drift(const Attribute& sensor, double low, double high, double seconds) {
    const double period = 20 + sensor.aid % 17;
    const double phase = 2 * std::numbers::pi * (seconds / period + sensor.aid / 8.0);
    return low + (high - low) * (0.5 + 0.4 * std::sin(phase));
}

}  // namespace

SensorMap::Channel SensorMap::sensorChannel(const Attribute& sensor) {
    Channel channel{sensor, std::nullopt, 1, sensor.minValue, sensor.maxValue};
    const NameRow* row = rowFor(sensor);
    const bool upper = isUpperLimit(sensor.warningRule);
    if (row != nullptr) {
        channel.quantity = row->quantity;
        if (sensor.maxValue < row->peak * 0.5) channel.scale = sensor.maxValue * 0.9 / row->peak;
        if (row->warns && upper) {
            const double needed = std::min(sensor.warningValue * 1.05, sensor.maxValue);
            channel.scale = std::max(channel.scale, needed / row->peak);
            return channel;
        }
    }
    const double margin = 0.02 * (sensor.maxValue - sensor.minValue);
    if (upper) channel.high = std::clamp(sensor.warningValue - margin, channel.low, channel.high);
    if (isLowerLimit(sensor.warningRule)) {
        channel.low = std::clamp(sensor.warningValue + margin, channel.low, channel.high);
    }
    return channel;
}

SensorMap::SensorMap(const Profile& profile) {
    for (const Attribute& sensor : profile.sensors)
        add(sensorChannel(sensor));
    const auto addState = [this](const std::optional<Attribute>& attribute, Quantity quantity) {
        if (attribute) add({*attribute, quantity, 1, 0, 255});
    };
    addState(profile.currentGear, gear);
    addState(profile.torqueLock, torqueLock);
    addState(profile.sootReg, sootRegen);
    addState(profile.soxReg, soxRegen);
}

void SensorMap::add(Channel channel) {
    if (std::ranges::find(m_aids, channel.attribute.aid) != m_aids.end()) return;
    m_aids.push_back(channel.attribute.aid);
    m_channels.push_back(std::move(channel));
}

std::vector<Item> SensorMap::items(const Readings& readings, double seconds) const {
    std::vector<Item> items;
    items.reserve(m_channels.size());
    for (const Channel& channel : m_channels) {
        const double value = channel.quantity
                                 ? readings[static_cast<std::size_t>(*channel.quantity)] * channel.scale
                                 : drift(channel.attribute, channel.low, channel.high, seconds);
        const double kept = std::clamp(value, channel.low, channel.high);
        items.push_back({channel.attribute.aid, channel.attribute.encode(kept)});
    }
    return items;
}

}  // namespace bench
