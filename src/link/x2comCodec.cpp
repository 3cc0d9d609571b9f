#include "link/x2comCodec.h"

#include <algorithm>

#include "link/AVStore.h"

namespace {

constexpr std::uint8_t residue = 59;
constexpr std::uint8_t firstCountedAID = 220;

/// Value bytes by AID, up to and including `last`.
struct Width {
    std::uint8_t last;
    std::uint8_t bytes;
};
constexpr std::array<Width, 4> widths{{{74, 1}, {149, 2}, {184, 3}, {219, 4}}};

bool isAIDList(std::uint32_t type) {
    return type == x2comFrameAck || type == x2comFrameRequest;
}

}  // namespace

std::uint8_t x2comCrc8(const std::uint8_t* bytes, std::uint8_t length) {
    std::uint8_t crc = 0xFF;
    for (std::uint8_t i = 0; i < length; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit) {
            const bool top = (crc & 0x80) != 0;
            crc = static_cast<std::uint8_t>(crc << 1);
            if (top) crc ^= 0x1D;
        }
    }
    return static_cast<std::uint8_t>(~crc);
}

x2comResult x2comCheckFrame(const std::uint8_t* frame, std::uint8_t length) {
    return x2comCrc8(frame, static_cast<std::uint8_t>(length + 1)) == residue ? x2comFrameGood
                                                                              : x2comFrameBadCrc;
}

std::uint8_t x2comFrameType(const std::uint8_t* frame) {
    return frame[0] >> 4;
}
std::uint8_t x2comFrameLength(const std::uint8_t* frame) {
    return frame[0] & 15;
}

std::uint8_t x2comValueLength(std::uint8_t aid, std::uint8_t first) {
    if (aid >= firstCountedAID) return first;
    return std::find_if(widths.begin(), widths.end(), [&](const Width& w) { return aid <= w.last; })->bytes;
}

x2comResult x2comParseFrame(const std::uint8_t* frame, std::uint32_t& type, x2comAIDList& list) {
    type = x2comFrameNoType;
    list.count = 0;
    const auto length = x2comFrameLength(frame);
    if (length == 0) return x2comFrameEmpty;
    if (const auto check = x2comCheckFrame(frame, length); check != x2comFrameGood) return check;
    type = x2comFrameType(frame);
    return x2comUnpack(frame + 1, static_cast<std::uint8_t>(length - 1), type, list);
}

x2comResult x2comUnpack(const std::uint8_t* payload, std::uint8_t length, std::uint32_t type,
                        x2comAIDList& list) {
    list.count = 0;
    length = std::min(length, x2comListSize);
    if (length == 0) return x2comFramePartial;
    if (isAIDList(type)) {
        std::copy_n(payload, length, list.aids.begin());
        list.count = length;
        return x2comFramePartial;
    }

    const std::scoped_lock lock{torv::avStoreMutex()};
    enum class State { aid, copy, skip } state = State::aid;
    std::uint8_t remaining = 1;
    std::uint8_t* slot = nullptr;
    for (std::uint8_t i = 0; i < length; ++i) {
        if (state == State::aid) {
            // Behind an AID in the payload's last place stands the CRC byte, and it is what is read here.
            remaining = x2comValueLength(payload[i], payload[i + 1]);
            slot = x2comReceiveSlot(payload[i]);
            if (slot) list.aids[list.count++] = payload[i];
            state = slot ? State::copy : State::skip;
        } else {
            if (state == State::copy) *slot++ = payload[i];
            // A length byte of 0 wraps to 255 and takes the rest of the payload.
            if (--remaining == 0) state = State::aid;
        }
    }
    return remaining == 0 ? x2comFrameComplete : x2comFramePartial;
}

std::uint8_t x2comBuildFrame(x2comFrame& frame, std::uint32_t type, x2comAIDList& list) {
    frame[0] = static_cast<std::uint8_t>(type << 4);
    const auto length = static_cast<std::uint8_t>(x2comPack(frame.data() + 1, type, list) + 1);
    frame[0] |= length;
    frame[length] = x2comCrc8(frame.data(), length);
    return list.count != 0 ? 2 : 1;
}

std::uint8_t x2comPack(std::uint8_t* payload, std::uint32_t type, x2comAIDList& list) {
    if (list.count == 0) return 0;
    const std::scoped_lock lock{torv::avStoreMutex()};
    std::uint8_t written = 0;
    x2comAIDList aside;
    for (std::uint8_t i = 0; i < list.count && written != x2comListSize; ++i) {
        const auto aid = list.aids[i];
        if (isAIDList(type)) {
            payload[written++] = aid;
            continue;
        }
        const auto* slot = x2comSendSlot(aid);
        const auto length = slot ? x2comValueLength(aid, slot[0]) : std::uint8_t{0};
        if (!slot || written + 1 + length > x2comListSize) {
            aside.aids[aside.count++] = aid;
            continue;
        }
        payload[written++] = aid;
        std::copy_n(slot, length, payload + written);
        written = static_cast<std::uint8_t>(written + length);
    }
    list = aside;
    return written;
}

void x2comRemoveAIDs(x2comAIDList& list, const x2comAIDList& second) {
    if (second.count == 0) list.count = 0;
    const auto* secondEnd = second.aids.data() + std::min(second.count, x2comListSize);
    auto* const begin = list.aids.data();
    const auto* kept = std::remove_if(begin, begin + list.count, [&](std::uint8_t aid) {
        return std::find(second.aids.data(), secondEnd, aid) != secondEnd;
    });
    list.count = static_cast<std::uint8_t>(kept - begin);
}
