#include "ModuleState.h"

#include <algorithm>

namespace bench {
namespace {

constexpr std::uint8_t heartbeatAid = 9;
constexpr std::uint8_t maxLevelAid = 15;
constexpr std::uint8_t resetAid = 24;
constexpr std::uint8_t clearCodesAid = 25;
constexpr std::uint8_t clearResultAid = 26;
constexpr std::uint8_t reportCodesAid = 27;
constexpr std::uint8_t firstReportAid = 224;
constexpr std::uint8_t secondReportAid = 225;
constexpr std::uint8_t driveTrainAid = 226;

constexpr std::uint8_t doIt = 0x55;
constexpr std::uint8_t levels = 6;  // levels 0 to 5; the module reports how many there are
constexpr std::uint8_t startLevel = 3;
constexpr std::size_t firstReportCodes = 5;
constexpr std::size_t allReportCodes = 11;

/// Two bytes of 0.1 inch behind transmission and axle.
const Bytes plainDriveTrain{6, 0, 0, 0x3B, 0x01, 0};

Bytes blank(std::uint8_t aid) {
    if (aid >= firstLongAid) return {2, 0};
    return Bytes(valueWidth(aid), 0);
}

/// As numbers without a sign, the lowest byte first.
bool isLess(const Bytes& a, const Bytes& b) {
    return std::lexicographical_compare(a.rbegin(), a.rend(), b.rbegin(), b.rend());
}

}  // namespace

std::optional<std::array<std::uint8_t, 2>> troubleCodeBytes(const std::string& code) {
    constexpr std::string_view letters = "PCBU";
    constexpr std::string_view digits = "0123456789ABCDEF";
    if (code.size() != 5) return std::nullopt;
    std::size_t bits = letters.find(code[0]);
    if (bits == std::string_view::npos || code[1] < '0' || code[1] > '3') return std::nullopt;
    bits = bits * 4 + static_cast<std::size_t>(code[1] - '0');
    for (const char c : code.substr(2)) {
        const std::size_t digit = digits.find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        bits = bits * 16 + digit;
    }
    return std::array{static_cast<std::uint8_t>(bits >> 8U), static_cast<std::uint8_t>(bits & 0xFFU)};
}

ModuleState::ModuleState() {
    for (int aid = 0; aid < aidCount; ++aid) {
        m_values[static_cast<std::size_t>(aid)] = blank(static_cast<std::uint8_t>(aid));
    }
    m_values[firstReportAid] = Bytes(13, 0);
    m_values[firstReportAid][0] = 13;
    m_values[secondReportAid] = {1};
    m_values[driveTrainAid] = plainDriveTrain;
}

void ModuleState::adopt(const Profile& profile) {
    m_map = SensorMap(profile);
    m_defaults.clear();
    for (const Attribute& item : profile.tuning) {
        m_defaults.push_back({item.aid, item.encode(item.initial)});
        m_limits[item.aid] = item.encode((item.minValue + item.maxValue) / 2);
    }
    m_defaults.push_back({maxLevelAid, {levels}});
    for (const Attribute& setting : profile.settings) {
        put(setting.aid, setting.encode(setting.initial));
        m_limits[setting.aid] = setting.encode((setting.minValue + setting.maxValue) / 2);
    }
    put(heartbeatAid, {1});
    reset();
    m_ring.assign(m_map.aids().begin(), m_map.aids().end());
    if (profile.powerLevel) {
        m_powerLevel = profile.powerLevel->aid;
        put(*m_powerLevel, {startLevel});
        m_ring.push_back(*m_powerLevel);
    }
    m_changed.clear();
}

void ModuleState::put(std::uint8_t aid, Bytes value) {
    if (aid >= aidCount) return;
    if (!m_forced[aid]) m_values[aid] = std::move(value);
    if (std::ranges::find(m_changed, aid) == m_changed.end()) m_changed.push_back(aid);
}

void ModuleState::force(std::uint8_t aid, const Bytes& value) {
    if (aid >= aidCount) return;
    m_forced[aid] = false;
    Bytes whole = value;
    if (aid < firstLongAid) {
        whole.resize(valueWidth(aid), 0);
    } else {
        whole.resize(std::clamp<std::size_t>(whole.size(), 1, maxPayload - 1), 0);
        whole[0] = static_cast<std::uint8_t>(whole.size());
    }
    put(aid, std::move(whole));
    m_forced[aid] = true;
}

void ModuleState::advance(const Readings& readings, double seconds) {
    for (Item& item : m_map.items(readings, seconds)) {
        if (!m_forced[item.aid]) m_values[item.aid] = std::move(item.value);
    }
}

bool ModuleState::write(const Item& item) {
    Bytes value = item.value;
    const auto fault = m_writeFaults[item.aid];
    if (fault == WriteFault::refuse) return false;
    if (fault != WriteFault::none && item.aid < aidCount) {
        const auto& limit = m_limits[item.aid];
        const bool fits = fault == WriteFault::clamp && !limit.empty();
        value = fits ? std::min(value, limit, isLess) : m_values[item.aid];
    }
    put(item.aid, std::move(value));
    if (item.value[0] != doIt) return true;
    if (item.aid == resetAid) reset();
    if (item.aid == clearCodesAid) clearCodes();
    if (item.aid == reportCodesAid) reportCodes();
    return true;
}

void ModuleState::reset() {
    for (const Item& item : m_defaults)
        put(item.aid, item.value);
}

void ModuleState::clearCodes() {
    put(clearResultAid, {1});
    if (m_values[clearResultAid].front() == 1) m_codes.clear();  // a forced result keeps them
}

void ModuleState::reportCodes() {
    Bytes first{13, 0, static_cast<std::uint8_t>(std::min<std::size_t>(m_codes.size(), 255))};
    Bytes second{1};
    for (std::size_t index = 0; index < std::min(m_codes.size(), allReportCodes); ++index) {
        const auto pair = troubleCodeBytes(m_codes[index]).value_or(std::array<std::uint8_t, 2>{});
        Bytes& report = index < firstReportCodes ? first : second;
        report.insert(report.end(), pair.begin(), pair.end());
    }
    first.resize(13, 0);
    second[0] = static_cast<std::uint8_t>(second.size());
    put(firstReportAid, std::move(first));
    put(secondReportAid, std::move(second));
}

void ModuleState::leaveOut(const std::set<std::uint8_t>& aids) {
    std::erase_if(m_ring, [&](std::uint8_t aid) { return aids.contains(aid); });
    for (const auto aid : aids)
        m_forced[aid] = true;
}

std::vector<Item> ModuleState::nextPush(std::vector<Item> push) {
    std::size_t room = maxPayload;
    std::bitset<aidCount> taken;
    for (const auto& item : push) {
        m_values[item.aid] = item.value;
        taken[item.aid] = true;
        room -= 1 + item.value.size();
    }
    // An item that would leave one spare byte waits, because nothing fits into that. Frames should be full: a
    // reader that gets several at once then still finds where each begins.
    const auto take = [&](std::deque<std::uint8_t>& queue) {
        std::erase_if(queue, [&](std::uint8_t aid) {
            const std::size_t size = 1 + m_values[aid].size();
            if (taken[aid]) return &queue == &m_changed;
            if (size > room || (room - size == 1 && !push.empty())) return false;
            taken[aid] = true;
            room -= size;
            push.push_back({aid, m_values[aid]});
            return true;
        });
    };
    take(m_changed);
    const std::size_t before = push.size();
    take(m_ring);
    for (std::size_t index = before; index < push.size(); ++index)
        m_ring.push_back(push[index].aid);
    return push;
}

}  // namespace bench
