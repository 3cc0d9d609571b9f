#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace bench {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

inline constexpr int aidCount = 255;               ///< AIDs 0 to 254 can hold a value
inline constexpr std::uint8_t firstLongAid = 220;  ///< from here a value begins with its own length
inline constexpr std::size_t maxPayload = 14;
inline constexpr std::size_t maxFrame = 16;

enum class FrameType : std::uint8_t { write, pushA, ack, pushB, request, response };

/// One frame without its framing: `type` is 0 to 15, the payload has at most 14 bytes.
struct Frame {
    std::uint8_t type = 0;
    Bytes payload;

    bool operator==(const Frame&) const = default;
};

[[nodiscard]] constexpr std::uint8_t typeByte(FrameType type) {
    return static_cast<std::uint8_t>(type);
}

/// One value as it stands on the wire: behind AIDs from 220 up `value[0]` is the length of `value`.
struct Item {
    std::uint8_t aid = 0;
    Bytes value;

    bool operator==(const Item&) const = default;
};

/// SAE J1850 CRC-8: polynomial 0x1D, preset 0xFF, complemented. By table.
[[nodiscard]] std::uint8_t crc8(ByteView bytes);

[[nodiscard]] Bytes encode(const Frame& frame);

/// The frame at the start of `bytes`, or nothing if it is not whole or its CRC is wrong.
[[nodiscard]] std::optional<Frame> decode(ByteView bytes);

/// Bytes that a value of this AID takes on the wire, below 220; 0 for the self-describing ones.
[[nodiscard]] std::size_t valueWidth(std::uint8_t aid);

/// The items of a value list up to the first one that is cut or has no length.
[[nodiscard]] std::vector<Item> parseItems(ByteView payload);

void appendItem(Bytes& payload, const Item& item);

/// Cuts what a client sends into frames, wherever TCP cut it.
///
/// After a bad CRC everything that has arrived is dropped: the link has no start marker to look for. One
/// thread at a time.
class FrameStream final {
public:
    [[nodiscard]] std::vector<Frame> feed(ByteView bytes);
    [[nodiscard]] std::uint64_t badFrames() const { return m_badFrames; }

private:
    Bytes m_pending;
    std::uint64_t m_badFrames = 0;
};

}  // namespace bench
