#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace torv {

/// An attribute identifier. A byte on the wire; 0 to 254 are usable.
using AID = std::int64_t;

constexpr AID lastShortAID = 219;
constexpr std::size_t shortSlotSize = 4;
constexpr std::size_t longSlotSize = 13;

/// How many bytes the AID's slot has: 4 up to 219, above that 13, of which byte 0 is a length that
/// counts itself.
[[nodiscard]] constexpr std::size_t slotSize(AID aid) {
    return aid <= lastShortAID ? shortSlotSize : longSlotSize;
}

/// A copy of one slot: the raw value of one AID, little-endian, 4 or 13 bytes. One object is not for two
/// threads while one of them writes.
class AV final {
public:
    AV() = default;
    AV(std::span<const std::uint8_t> bytes, std::size_t size);

    /// As many bytes as the AID's slot has, filled up with zeros.
    [[nodiscard]] static AV forAID(AID aid, std::span<const std::uint8_t> bytes) {
        return {bytes, slotSize(aid)};
    }

    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return {m_bytes.data(), m_size}; }
    [[nodiscard]] std::span<std::uint8_t> bytes() { return {m_bytes.data(), m_size}; }

private:
    std::array<std::uint8_t, longSlotSize> m_bytes{};
    std::size_t m_size = shortSlotSize;
};

}  // namespace torv
