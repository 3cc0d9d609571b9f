#include "link/x2comCodec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <tuple>
#include <vector>

#include "link/AVStore.h"
#include "support/Hexadecimal.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr auto complete = x2comFrameComplete, partial = x2comFramePartial;

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
void expectSlots(const std::vector<Hex>& slots) {
    for (Hex slot : slots) {
        const auto aid = slot.front();
        slot.resize(aid < 220 ? 5 : 14, untouched);
        EXPECT_TRUE(std::equal(slot.begin() + 1, slot.end(), x2comReceiveSlot(aid))) << "of " << int{aid};
    }
}
void fillSendSlots(const std::vector<Hex>& slots) {
    for (const auto& slot : slots)
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
    for (const auto& [bytes, type, aids, slots] : worked) {
        SCOPED_TRACE(testing::PrintToString(bytes));
        clear();
        std::uint32_t parsedType = 0;
        Bytes parsed;
        EXPECT_EQ(parse(padded(bytes), parsedType, parsed), slots.empty() ? partial : complete);
        EXPECT_EQ(parsedType, type);
        EXPECT_EQ(parsed, aids);
        expectSlots(slots);
        fillSendSlots(slots);
        x2comFrame built{};
        auto list = listOf(aids);
        EXPECT_EQ(x2comBuildFrame(built, type, list), 1);
        EXPECT_EQ(built, padded(bytes));
        EXPECT_EQ(list.count, 0);
    }
}

TEST(Codec, AFlippedBitIsNoticedAndChangesNoStore) {
    clear();
    const auto received = torv::receiveStore(), sent = torv::sendStore();
    for (const auto& [bytes, goodType, goodAids, slots] : worked) {
        for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
            auto frame = padded(bytes);
            frame[bit / 8] = static_cast<std::uint8_t>(frame[bit / 8] ^ (1U << (bit % 8)));
            std::uint32_t type = 0;
            Bytes aids{1};
            EXPECT_EQ(parse(frame, type, aids), (frame[0] & 15) == 0 ? x2comFrameEmpty : x2comFrameBadCrc)
                << testing::PrintToString(bytes) << ", bit " << bit;
            EXPECT_EQ(type, x2comFrameNoType);
            EXPECT_EQ(aids, Bytes{});
        }
    }
    EXPECT_EQ(torv::receiveStore().shortSlots, received.shortSlots);
    EXPECT_EQ(torv::receiveStore().longSlots, received.longSlots);
    EXPECT_EQ(torv::sendStore().shortSlots, sent.shortSlots);
    EXPECT_EQ(torv::sendStore().longSlots, sent.longSlots);
}

TEST(Codec, CrcHasThePublishedCheckValueAndResidue) {
    EXPECT_EQ(x2comCrc8(Hex{"313233343536373839"}.data(), 9), 0x4B);
    const x2comFrame zeros{};
    EXPECT_EQ(x2comCrc8(zeros.data(), 0), 0);
    EXPECT_EQ(x2comCrc8(zeros.data(), 1), 59);
    EXPECT_EQ(x2comCheckFrame(zeros.data(), 0), x2comFrameGood);
    for (const auto& [bytes, type, aids, slots] : worked)
        EXPECT_EQ(x2comCrc8(bytes.data(), static_cast<std::uint8_t>(bytes.size())), 59);
}

TEST(Codec, SlotsLieInAidOrderUpTo254) {
    for (std::uint8_t aid = 0; aid < 255; ++aid) {
        const auto slotIn = [&](auto& half) {
            return aid < 220 ? &half.shortSlots[4U * aid] : &half.longSlots[13U * (aid - 220U)];
        };
        EXPECT_EQ(x2comReceiveSlot(aid), slotIn(torv::receiveStore()));
        EXPECT_EQ(x2comSendSlot(aid), slotIn(torv::sendStore()));
    }
    EXPECT_EQ(x2comSendSlot(255), nullptr);
    EXPECT_EQ(x2comReceiveSlot(255), x2comSendSlot(0));
}

TEST(Codec, UnpacksEvenOddPayloads) {
    const std::tuple<std::string, std::uint8_t, Hex, x2comResult, Hex, std::vector<Hex>> rows[] = {
        {"no items", 1, "", partial, "", {}},
        {"cut short", 1, "09 01 C8 0708", partial, "09 C8", {"09 01", "C8 0708"}},
        {"an AID alone", 3, "05", partial, "05", {"05"}},
        {"length 0", 1, "DC 00 050609", partial, "DC", {"DC 00 050609", "09"}},
        {"length 0, most",
         1,
         "FE 00 0102030405060708090A0B0C",
         partial,
         "FE",
         {"FE 000102030405060708090A0B0C"}},
        {"length 1", 1, "DC 01 09 04", complete, "DC 09", {"DC 01", "09 04"}},
        {"length beyond", 1, "DC 0E 01", partial, "DC", {"DC 0E 01"}},
        {"last of 1, 2, 3",
         1,
         "4A 01 95 0102 B8 010203",
         complete,
         "4A95B8",
         {"4A 01", "95 0102", "B8 010203"}},
        {"first of 2, 3, 4",
         1,
         "4B 0102 96 010203 B9 01020304",
         complete,
         "4B96B9",
         {"4B 0102", "96 010203", "B901020304"}},
        {"last of 4", 1, "DB 01020304 DC 02 09", complete, "DB DC", {"DB 01020304", "DC 0209"}},
        {"seven items", 0, "0101020203030404050506060707", complete, "01020304050607", {}},
        {"an AID twice", 1, "09 01 09 02", complete, "09 09", {"09 02"}},
        {"an item for 255", 1, "FF 02AA 09 01", complete, "FF 09", {"00", "09 01"}},
        {"14 AIDs", 2, "010203040506070809C8DCFEFF00", partial, "010203040506070809C8DCFEFF00", {"09"}}};
    for (const auto& [name, type, payload, result, aids, slots] : rows) {
        SCOPED_TRACE(name);
        clear();
        std::uint32_t parsedType = 0;
        Bytes parsed;
        EXPECT_EQ(parse(frameWith(type, payload), parsedType, parsed), result);
        EXPECT_EQ(parsed, aids);
        expectSlots(slots);
        const bool lost = payload.size() > 1 && payload.front() == 255;  // lands where AID 0 is sent from
        EXPECT_EQ(Bytes(x2comSendSlot(0), x2comSendSlot(1)), lost ? Hex{"02AA0000"} : Hex{"00000000"});
    }
    const Bytes tooLong(255, 9);
    auto list = listOf({});
    EXPECT_EQ(x2comUnpack(tooLong.data(), 255, x2comFrameRequest, list), partial);
    EXPECT_EQ(list.count, 14);
    EXPECT_EQ(x2comUnpack(tooLong.data(), 255, x2comFramePushA, list), complete);
    EXPECT_EQ(list.count, 7);
}

TEST(Codec, ACountedAidInTheLastPlaceTakesTheCrcForItsLength) {
    int whole = 0;
    for (int value = 0; value < 256; ++value) {
        const auto frame = frameWith(x2comFramePushA, {9, static_cast<std::uint8_t>(value), 220});
        std::uint32_t type = 0;
        Bytes aids;
        const auto result = parse(frame, type, aids);
        EXPECT_EQ(result, frame[4] == 0 ? complete : partial);
        EXPECT_EQ(aids, (Bytes{9, 220}));
        whole += result == complete ? 1 : 0;
    }
    EXPECT_EQ(whole, 1);
}

TEST(Codec, PacksFirstFit) {
    const char* const fourteen = "0102030405060708090A0B0CDCFF";
    const std::tuple<std::string, std::uint8_t, Hex, std::vector<Hex>, Hex, Hex> rows[] = {
        {"nothing", 0, "", {}, "", ""},
        {"two of four bytes", 0, "B9 BA DB", {}, "B9 00000000 BA 00000000", "DB"},
        {"first fit", 5, "B9 BA BB 4B", {"4B 0102"}, "B9 00000000 BA 00000000 4B 0102", "BB"},
        {"behind 14 all is lost", 0, "010203040506070809", {}, "0100020003000400050006000700", ""},
        {"but what was set aside", 0, "B9 BA BB 01 02 03", {}, "B9 00000000 BA 00000000 0100 0200", "BB"},
        {"255 has no slot", 0, "FF 05", {"05 07"}, "05 07", "FF"},
        {"length 0", 0, "DC 05", {}, "DC 05 00", ""},
        {"length 13", 1, "DC", {"DC 0D 0102"}, "DC 0D 0102000000000000000000 00", ""},
        {"length 14", 1, "DC 05", {"DC 0E"}, "05 00", "DC"},
        {"length 255", 1, "DC DD", {"DC FF", "DD 01"}, "DD 01", "DC"},
        {"ack", 2, fourteen, {}, fourteen, ""},
        {"request", 4, fourteen, {}, fourteen, ""}};
    for (const auto& [name, type, aids, slots, payload, left] : rows) {
        SCOPED_TRACE(name);
        clear();
        fillSendSlots(slots);
        x2comFrame built{};
        auto list = listOf(aids);
        EXPECT_EQ(x2comBuildFrame(built, type, list), left.empty() ? 1 : 2);
        EXPECT_EQ(built, frameWith(type, payload));
        EXPECT_EQ(aidsOf(list), left);
    }
}

TEST(Codec, RemovesAids) {
    const std::array<Hex, 3> rows[] = {// the list, the second list, what is left
                                       {"010203", "02", "0103"},
                                       {"010203", "0301", "02"},
                                       {"01020203", "0209", "0103"},
                                       {"010203", "03020100", ""},
                                       {"0102", "07", "0102"},
                                       {"010203", "", ""},
                                       {"", "01", ""},
                                       {"", "", ""}};
    for (const auto& [aids, second, left] : rows) {
        auto list = listOf(aids);
        x2comRemoveAIDs(list, listOf(second));
        EXPECT_EQ(aidsOf(list), left);
    }
}

}  // namespace
