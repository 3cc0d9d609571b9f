#pragma once

#include <bitset>
#include <deque>
#include <set>

#include "SensorMap.h"
#include "WriteFault.h"

namespace bench {

/// A trouble code such as P0123 or C0ABC as its two bytes (SAE J2012).
[[nodiscard]] std::optional<std::array<std::uint8_t, 2>> troubleCodeBytes(const std::string& code);

/// What the module holds: a value for each AID, the defaults behind the reset, the trouble codes, and the
/// order in which all this is pushed. One thread at a time.
class ModuleState final {
public:
    ModuleState();

    /// Takes the values and defaults of this vehicle. Values that were forced before stay.
    void adopt(const Profile& profile);

    [[nodiscard]] const Bytes& value(std::uint8_t aid) const { return m_values[aid]; }
    /// Holds an AID at a value against the model and against writes, and pushes it soon.
    void force(std::uint8_t aid, const Bytes& value);
    /// Moves all sensors to this time of the drive.
    void advance(const Readings& readings, double seconds);
    /// Takes what the handset wrote: echoes it and does what the AID stands for. False for what is not to be
    /// acknowledged.
    [[nodiscard]] bool write(const Item& item);
    void setWriteFault(std::uint8_t aid, WriteFault fault) { m_writeFaults[aid] = fault; }
    void setTroubleCodes(std::vector<std::string> codes) { m_codes = std::move(codes); }

    /// The payload of the next push: values that changed first, then the sensors in turn.
    [[nodiscard]] std::vector<Item> nextPush() { return nextPush({}); }
    /// The same with these in front, which it then holds.
    [[nodiscard]] std::vector<Item> nextPush(std::vector<Item> push);
    /// From now on these are neither pushed in turn nor moved by the drive.
    void leaveOut(const std::set<std::uint8_t>& aids);
    [[nodiscard]] const std::vector<std::uint8_t>& sensorAids() const { return m_map.aids(); }

private:
    void put(std::uint8_t aid, Bytes value);
    void reset();
    void clearCodes();
    void reportCodes();

    std::array<Bytes, aidCount> m_values;
    std::bitset<aidCount> m_forced;
    std::array<WriteFault, 256> m_writeFaults{};
    std::array<Bytes, aidCount> m_limits;  ///< of writes that are clamped
    SensorMap m_map;
    std::vector<Item> m_defaults;
    std::optional<std::uint8_t> m_powerLevel;
    std::vector<std::string> m_codes;
    std::deque<std::uint8_t> m_changed;
    std::deque<std::uint8_t> m_ring;
};

}  // namespace bench
