#include "Faults.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "WriteFault.h"

namespace bench {
namespace {

constexpr Milliseconds lateAnswer{150};  // the handset waits 100

std::optional<double> number(std::string_view text) {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

}  // namespace

const std::array<FaultName, faultCount> faultNames{{
    {"drop-ack", "leave a write without its ack"},
    {"delay-ack", "send an ack too late", lateAnswer},
    {"drop-response", "leave a request without its response"},
    {"delay-response", "send a response too late", lateAnswer},
    {"corrupt", "damage one byte of a frame"},
    {"split", "send a frame in two segments"},
    {"join", "send two frames in one segment"},
    {"silent", "send nothing for a while", Milliseconds{1500}},
    {"close", "close the connection"},
    {"refuse", "refuse connections"},
    {"mute", "accept a connection and never speak"},
    {"stray-ack", "send an ack that nobody waits for"},
    {"reserved-type", "send a frame of type 6 to 15"},
    {"bad-aid", "send an item for AID 255"},
    {"cut-item", "send an item that is not whole"},
    {"own-request", "ask the handset for a value"},
    {"own-write", "write a value to the handset"},
}};

std::optional<std::pair<std::uint8_t, WriteFault>> parseWriteFault(const std::string& text) {
    constexpr std::array<std::pair<std::string_view, WriteFault>, 3> names{
        {{"stuck:", WriteFault::stuck}, {"clamp:", WriteFault::clamp}, {"refuse:", WriteFault::refuse}}};
    const auto row =
        std::ranges::find_if(names, [&](const auto& entry) { return text.starts_with(entry.first); });
    if (row == names.end()) return std::nullopt;
    const auto aid = number(std::string_view{text}.substr(row->first.size()));
    if (!aid || *aid < 0 || *aid > 254 || *aid != std::floor(*aid)) return std::nullopt;
    return std::pair{static_cast<std::uint8_t>(*aid), row->second};
}

std::optional<std::pair<Fault, Trigger>> parseFault(const std::string& text) {
    const std::size_t sign = text.find_first_of("=@");
    if (sign == std::string::npos) return std::nullopt;
    const auto name = std::ranges::find(faultNames, text.substr(0, sign), &FaultName::name);
    if (name == faultNames.end()) return std::nullopt;
    const std::string_view rest = std::string_view(text).substr(sign + 1);
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    const std::optional<double> when = number(rest.substr(0, colon));
    const std::optional<double> lasts = colon < rest.size() ? number(rest.substr(colon + 1)) : 0.0;
    constexpr double dayOfMilliseconds = 86'400'000;
    if (!when || !lasts || *when < 0 || *lasts < 0 || *lasts > dayOfMilliseconds) return std::nullopt;
    Trigger trigger;
    trigger.lasts = Milliseconds(static_cast<std::int64_t>(*lasts));
    if (text[sign] == '=') {
        if (*when > 1) return std::nullopt;
        trigger.probability = *when;
    } else {
        if (*when * 1000 > dayOfMilliseconds) return std::nullopt;
        trigger.at = Milliseconds(static_cast<std::int64_t>(*when * 1000));
    }
    return std::pair{static_cast<Fault>(name - faultNames.begin()), trigger};
}

Faults::Faults(std::uint64_t seed) {
    for (std::size_t index = 0; index < faultCount; ++index)
        m_entries[index].engine.seed(seed * 31 + index);
}

void Faults::set(Fault fault, const Trigger& trigger) {
    Entry& changed = entry(fault);
    changed.trigger = trigger;
    changed.setAt = Clock::now();
    changed.spent = false;
}

void Faults::clear() {
    for (Entry& each : m_entries)
        each.trigger = {};
}

bool Faults::strikes(Fault fault) {
    Entry& asked = entry(fault);
    if (asked.trigger.at) {
        if (asked.spent || Clock::now() < asked.setAt + *asked.trigger.at) return false;
        asked.spent = true;
        return true;
    }
    if (asked.trigger.probability <= 0) return false;
    return static_cast<double>(asked.engine() >> 11U) * 0x1p-53 < asked.trigger.probability;
}

bool Faults::holds(Fault fault) const {
    const Trigger& trigger = entry(fault).trigger;
    const Clock::duration age = Clock::now() - entry(fault).setAt;
    if (!trigger.at) return trigger.probability >= 1;
    return age >= *trigger.at && (trigger.lasts.count() == 0 || age < *trigger.at + trigger.lasts);
}

bool Faults::holdsOrStrikes(Fault fault) {
    return entry(fault).trigger.at ? holds(fault) : strikes(fault);
}

std::optional<Milliseconds> Faults::nextChange(Fault fault) const {
    const Trigger& trigger = entry(fault).trigger;
    if (!trigger.at) return std::nullopt;
    const auto age = std::chrono::floor<Milliseconds>(Clock::now() - entry(fault).setAt);
    if (age <= *trigger.at) return *trigger.at - age;
    const Milliseconds end = *trigger.at + trigger.lasts;
    return age <= end && trigger.lasts.count() != 0 ? std::optional(end - age) : std::nullopt;
}

Milliseconds Faults::lasting(Fault fault) const {
    const Milliseconds asked = entry(fault).trigger.lasts;
    return asked.count() != 0 ? asked : faultNames[static_cast<std::size_t>(fault)].lasts;
}

bool Faults::isEndless(Fault fault) const {
    const Trigger& trigger = entry(fault).trigger;
    return trigger.at && trigger.lasts.count() == 0;
}

std::uint64_t Faults::random(Fault fault, std::uint64_t below) {
    return entry(fault).engine() % below;
}

}  // namespace bench
