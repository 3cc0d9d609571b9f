#include "link/x2comCodec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "link/AVStore.h"
#include "support/Hexadecimal.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Bytes told in hexadecimal, blanks for the eye.
struct Hex : Bytes {
    Hex(std::string text) {
        std::erase(text, ' ');
        Bytes::operator=(torv::bytesFromHexadecimal(text).value());
    }
    Hex(const char* text) : Hex(std::string{text}) {}
};

x2comFrame padded(const Bytes& bytes) {
    x2comFrame frame{};
    std::copy_n(bytes.begin(), std::min<std::size_t>(bytes.size(), frame.size()), frame.begin());
    return frame;
}

x2comAIDList listOf(const Bytes& aids) {
    x2comAIDList list;
    std::copy(aids.begin(), aids.end(), list.aids.begin());
    list.count = static_cast<std::uint8_t>(aids.size());
    return list;
}

Bytes aidsOf(const x2comAIDList& list) {
    return {list.aids.begin(), list.aids.begin() + list.count};
}

/// A good frame: the header's length and the CRC are reckoned here.
x2comFrame frameWith(std::uint8_t type, const Bytes& payload) {
    auto frame = padded(payload);
    std::copy_backward(frame.begin(), frame.end() - 1, frame.end());
    const auto length = static_cast<std::uint8_t>(payload.size() + 1);
    frame[0] = static_cast<std::uint8_t>(type << 4 | length);
    frame[length] = x2comCrc8(frame.data(), length);
    return frame;
}

/// What the receive slots are filled with, so that it shows which bytes the wire has touched.
constexpr std::uint8_t untouched = 0xEE;

void clear() {
    torv::receiveStore().shortSlots.fill(untouched);
    torv::receiveStore().longSlots.fill(untouched);
    torv::sendStore() = {};
}

/// A slot is told as its AID and the bytes at its beginning.
void expectSlots(const std::vector<Hex>& fills) {
    for (Hex slot : fills) {
        const auto aid = slot.front();
        slot.resize(aid < 220 ? 5 : 14, untouched);
        EXPECT_TRUE(std::equal(slot.begin() + 1, slot.end(), x2comReceiveSlot(aid))) << "of " << int{aid};
    }
}
void fillSendSlots(const std::vector<Hex>& fills) {
    for (const auto& slot : fills)
        std::copy(slot.begin() + 1, slot.end(), x2comSendSlot(slot.front()));
}

x2comResult parse(const x2comFrame& frame, std::uint32_t& type, Bytes& aids) {
    auto list = listOf({});
    const auto result = x2comParseFrame(frame.data(), type, list);
    aids = aidsOf(list);
    return result;
}

const std::tuple<Hex, std::uint32_t, Hex, std::vector<Hex>> worked[] = {
    {"42 09 39", 4, "09", {}},
    {"53 09 01 0E", 5, "09", {"09 01"}},
    {"03 05 03 3B", 0, "05", {"05 03"}},
    {"22 05 3A", 2, "05", {}},
    {"21 A1", 2, "", {}},
    {"14 64 12 34 76", 1, "64", {"64 12 34"}},
    {"56 C8 01 02 03 04 CE", 5, "C8", {"C8 01 02 03 04"}},
    {"05 DC 03 AA BB C8", 0, "DC", {"DC 03 AA BB"}},
    {"1F E0 0D 0102030405060708090A0B0C 6C", 1, "E0", {"E0 0D 0102030405060708090A0B0C"}}};

TEST(Codec, ParsesAndBuildsTheWorkedFrames) {
    for (const auto& [bytes, type, aids, fills] : worked) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        clear();
        std::uint32_t parsedType = 0;
        Bytes parsed;
        EXPECT_EQ(parse(padded(bytes), parsedType, parsed),
                  fills.empty() ? x2comFramePartial : x2comFrameComplete);
        EXPECT_EQ(parsedType, type);
        EXPECT_EQ(parsed, aids);
        expectSlots(fills);
        fillSendSlots(fills);
        x2comFrame built{};
        auto list = listOf(aids);
        EXPECT_EQ(x2comBuildFrame(built, type, list), 1);
        EXPECT_EQ(built, padded(bytes));
        EXPECT_EQ(list.count, 0);
    }
}

TEST(Codec, CrcHasThePublishedCheckValueAndResidue) {
    EXPECT_EQ(x2comCrc8(Hex{"313233343536373839"}.data(), 9), 0x4B);
    for (const auto& [bytes, type, aids, fills] : worked)
        EXPECT_EQ(x2comCrc8(bytes.data(), static_cast<std::uint8_t>(bytes.size())), 59);
}

TEST(Codec, Aid255HasNoSlotOfItsOwn) {
    EXPECT_EQ(x2comSendSlot(255), nullptr);
    EXPECT_EQ(x2comReceiveSlot(255), x2comSendSlot(0));
}

TEST(Codec, UnpacksEvenOddPayloads) {
    const std::tuple<std::string, std::uint8_t, Hex, x2comResult, Hex, std::vector<Hex>> rows[] = {
        {"no items", 1, "", x2comFramePartial, "", {}},
        {"cut short", 1, "09 01 C8 0708", x2comFramePartial, "09 C8", {"09 01", "C8 0708"}},
        {"length 0", 1, "DC 00 050609", x2comFramePartial, "DC", {"DC 00 050609", "09"}},
        {"length beyond", 1, "DC 0E 01", x2comFramePartial, "DC", {"DC 0E 01"}},
        {"last of 1, 2, 3", 1, "4A 01 95 0102 B8 010203", x2comFrameComplete, "4A95B8", {"B8 010203"}},
        {"first of 2, 3, 4",
         1,
         "4B 0102 96 010203 B9 01020304",
         x2comFrameComplete,
         "4B96B9",
         {"B901020304"}},
        {"last of 4", 1, "DB 01020304 DC 02 09", x2comFrameComplete, "DB DC", {"DB 01020304", "DC 0209"}},
        {"an item for 255", 1, "FF 02AA 09 01", x2comFrameComplete, "FF 09", {"00", "09 01"}},
        {"14 AIDs",
         2,
         "010203040506070809C8DCFEFF00",
         x2comFramePartial,
         "010203040506070809C8DCFEFF00",
         {"09"}}};
    for (const auto& [name, type, payload, result, aids, fills] : rows) {
        SCOPED_TRACE(name);
        clear();
        std::uint32_t parsedType = 0;
        Bytes parsed;
        EXPECT_EQ(parse(frameWith(type, payload), parsedType, parsed), result);
        EXPECT_EQ(parsed, aids);
        expectSlots(fills);
        const bool lost = payload.size() > 1 && payload.front() == 255;  // lands where AID 0 is sent from
        EXPECT_EQ(Bytes(x2comSendSlot(0), x2comSendSlot(1)), lost ? Hex{"02AA0000"} : Hex{"00000000"});
    }
}

TEST(Codec, PacksFirstFit) {
    const char* const fourteen = "0102030405060708090A0B0CDCFF";
    const std::tuple<std::string, std::uint8_t, Hex, std::vector<Hex>, Hex, Hex> rows[] = {
        {"first fit", 5, "B9 BA BB 4B", {"4B 0102"}, "B9 00000000 BA 00000000 4B 0102", "BB"},
        {"behind 14 all is lost", 0, "010203040506070809", {}, "0100020003000400050006000700", ""},
        {"but what was set aside", 0, "B9 BA BB 01 02 03", {}, "B9 00000000 BA 00000000 0100 0200", "BB"},
        {"255 has no slot", 0, "FF 05", {"05 07"}, "05 07", "FF"},
        {"length 13", 1, "DC", {"DC 0D 0102"}, "DC 0D 0102000000000000000000 00", ""},
        {"length 14", 1, "DC 05", {"DC 0E"}, "05 00", "DC"},
        {"request", 4, fourteen, {}, fourteen, ""}};
    for (const auto& [name, type, aids, fills, payload, left] : rows) {
        SCOPED_TRACE(name);
        clear();
        fillSendSlots(fills);
        x2comFrame built{};
        auto list = listOf(aids);
        EXPECT_EQ(x2comBuildFrame(built, type, list), left.empty() ? 1 : 2);
        EXPECT_EQ(built, frameWith(type, payload));
        EXPECT_EQ(aidsOf(list), left);
    }
}

}  // namespace
