// Frames of the x2com link: bytes to AIDs and AVs and back.
//
// A frame has at most 16 bytes: a header (type in bits 7 to 4, in bits 3 to 0 the length L, which counts
// header and payload), L - 1 payload bytes, and a CRC over the L bytes before it. Pure byte arithmetic:
// no timers, no input or output, no allocation. The two halves of the AV store are reached through
// `x2comReceiveSlot` and `x2comSendSlot`; `x2comUnpack` and `x2comPack` take the store's mutex for as long
// as they walk. Any thread.
#pragma once

#include <array>
#include <cstdint>
#include <span>

constexpr std::uint8_t x2comFrameSize = 16;
constexpr std::uint8_t x2comListSize = 14;
using x2comFrame = std::array<std::uint8_t, x2comFrameSize>;

/// Up to 14 AIDs. The count is what holds; bytes behind it are stale.
struct x2comAIDList {
    std::array<std::uint8_t, x2comListSize> aids{};
    std::uint8_t count = 0;
};

enum x2comType : std::uint8_t {
    x2comFrameWrite = 0,
    x2comFramePushA = 1,
    x2comFrameAck = 2,
    x2comFramePushB = 3,
    x2comFrameRequest = 4,
    x2comFrameResponse = 5,
    x2comFrameNoType = 6,  ///< given out until the CRC has passed
};

enum x2comResult : std::uint8_t {
    x2comRxIdle = 0,         ///< no chunk was queued
    x2comFrameComplete = 1,  ///< CRC good, the AV list ended on an item boundary
    x2comFramePartial = 2,   ///< CRC good, and the payload was empty, ended inside an item, or is an AID list
    x2comFrameGood = 3,      ///< CRC good, payload not looked at
    x2comFrameBadCrc = 4,
    x2comFrameEmpty = 5,  ///< the length field is 0
    x2comRxRespDone = 6,  ///< the read exchange finished with this response
    x2comRxAckDone = 7,   ///< the write exchange finished with this ack
};

/// SAE J1850 CRC-8: polynomial 0x1D, preset 0xFF, most significant bit first, complemented. Bit by bit.
/// No bytes give 0.
[[nodiscard]] std::uint8_t x2comCrc8(const std::uint8_t* bytes, std::uint8_t length);

/// Runs the CRC over the frame with its own CRC byte; 59 is what a right one leaves. A frame that begins
/// with 0x00 passes as good: that byte alone leaves 59 too. The frame has room for 16 bytes.
[[nodiscard]] x2comResult x2comCheckFrame(const std::uint8_t* frame, std::uint8_t length);

[[nodiscard]] std::uint8_t x2comFrameType(const std::uint8_t* frame);
[[nodiscard]] std::uint8_t x2comFrameLength(const std::uint8_t* frame);

/// How many value bytes an item of this AID has on the wire; from 220 up it is `first`, the first value byte.
[[nodiscard]] std::uint8_t x2comValueLength(std::uint8_t aid, std::uint8_t first);

/// `frame` has 16 bytes. `type` is `x2comFrameNoType` unless the CRC has passed.
x2comResult x2comParseFrame(const std::uint8_t* frame, std::uint32_t& type, x2comAIDList& list);

/// Writes the AVs to the store as it walks: when the payload ends inside an item, the bytes that came stay
/// in the slot and the AID in the list, and only the result tells. One byte behind the payload is readable.
x2comResult x2comUnpack(const std::uint8_t* payload, std::uint8_t length, std::uint32_t type,
                        x2comAIDList& list);

/// 2 if AIDs were left over, else 1. The list keeps what did not fit.
std::uint8_t x2comBuildFrame(x2comFrame& frame, std::uint32_t type, x2comAIDList& list);

/// First fit: a short item behind one that did not fit still enters the frame. AIDs not reached because the
/// payload was exactly full are gone, neither written nor set aside; kept as it is. Returns the number of
/// payload bytes written.
std::uint8_t x2comPack(std::uint8_t* payload, std::uint32_t type, x2comAIDList& list);

/// Takes every AID of the second list out of the first. An empty second list empties the first, and the
/// engine counts on that.
void x2comRemoveAIDs(x2comAIDList& list, const x2comAIDList& second);
