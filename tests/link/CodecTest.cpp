#include "link/x2comCodec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
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

struct Slot {
    std::uint8_t aid;
    Hex bytes;
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

class CodecTest : public testing::Test {
protected:
    CodecTest() { clear(); }
    static void clear() {
        torv::receiveStore() = {};
        torv::sendStore() = {};
    }
    static Bytes stores() {
        Bytes all;
        for (const auto* half : {&torv::receiveStore(), &torv::sendStore()}) {
            all.insert(all.end(), half->shortSlots.begin(), half->shortSlots.end());
            all.insert(all.end(), half->longSlots.begin(), half->longSlots.end());
        }
        return all;
    }
    static void expectSlot(const std::uint8_t* slot, const Slot& expected) {
        const auto av = torv::AV::forAID(expected.aid, expected.bytes).bytes();
        EXPECT_TRUE(std::equal(av.begin(), av.end(), slot)) << "slot of " << int{expected.aid};
    }
    static x2comResult parse(const x2comFrame& frame, std::uint32_t& type, Bytes& aids) {
        auto list = listOf({});
        const auto result = x2comParseFrame(frame.data(), type, list);
        aids = aidsOf(list);
        return result;
    }
};

const struct {
    std::string name;
    Hex frame;
    std::uint32_t type;
    Hex aids;
    std::vector<Slot> slots;
} worked[] = {
    {"request of 9", "42 09 39", 4, "09", {}},
    {"response: 9 is 1", "53 09 01 0E", 5, "09", {{9, "01"}}},
    {"write: 5 to 3", "03 05 03 3B", 0, "05", {{5, "03"}}},
    {"ack of 5", "22 05 3A", 2, "05", {}},
    {"ack of nothing", "21 A1", 2, "", {}},
    {"push A of 100", "14 64 12 34 76", 1, "64", {{100, "12 34"}}},
    {"response of 200", "56 C8 01 02 03 04 CE", 5, "C8", {{200, "01 02 03 04"}}},
    {"write of 220", "05 DC 03 AA BB C8", 0, "DC", {{220, "03 AA BB"}}},
    {"push A of 224",
     "1F E0 0D 0102030405060708090A0B0C 6C",
     1,
     "E0",
     {{224, "0D 0102030405060708090A0B0C"}}},
};

TEST_F(CodecTest, ParsesAndBuildsTheWorkedFrames) {
    for (const auto& [name, bytes, type, aids, slots] : worked) {
        SCOPED_TRACE(name);
        clear();
        std::uint32_t parsedType = 0;
        Bytes parsed;
        EXPECT_EQ(parse(padded(bytes), parsedType, parsed), slots.empty() ? partial : complete);
        EXPECT_EQ(parsedType, type);
        EXPECT_EQ(parsed, aids);
        for (const auto& slot : slots) {
            expectSlot(x2comReceiveSlot(slot.aid), slot);
            std::copy(slot.bytes.begin(), slot.bytes.end(), x2comSendSlot(slot.aid));
        }
        x2comFrame built{};
        auto list = listOf(aids);
        EXPECT_EQ(x2comBuildFrame(built, type, list), 1);
        EXPECT_EQ(built, padded(bytes));
        EXPECT_EQ(list.count, 0);
    }
}

TEST_F(CodecTest, AFlippedBitIsNoticedAndChangesNoStore) {
    for (const auto& row : worked) {
        for (std::size_t bit = 0; bit < row.frame.size() * 8; ++bit) {
            auto frame = padded(row.frame);
            frame[bit / 8] = static_cast<std::uint8_t>(frame[bit / 8] ^ (1U << (bit % 8)));
            std::uint32_t type = 0;
            Bytes aids{1};
            const auto result = parse(frame, type, aids);
            EXPECT_EQ(result, x2comFrameLength(frame.data()) == 0 ? x2comFrameEmpty : x2comFrameBadCrc)
                << row.name << ", bit " << bit;
            EXPECT_EQ(type, x2comFrameNoType);
            EXPECT_EQ(aids, Bytes{});
        }
    }
    EXPECT_EQ(stores(), Bytes(stores().size()));
}

TEST_F(CodecTest, CrcHasThePublishedCheckValueAndResidue) {
    const std::string digits = "123456789";
    const Bytes bytes{digits.begin(), digits.end()};
    EXPECT_EQ(x2comCrc8(bytes.data(), 9), 0x4B);
    EXPECT_EQ(x2comCrc8(bytes.data(), 0), 0);
    const x2comFrame zeros{};
    EXPECT_EQ(x2comCrc8(zeros.data(), 1), 59);
    EXPECT_EQ(x2comCheckFrame(zeros.data(), 0), x2comFrameGood);
    std::uint32_t type = 0;
    Bytes aids;
    EXPECT_EQ(parse(zeros, type, aids), x2comFrameEmpty);
    EXPECT_EQ(type, x2comFrameNoType);
    for (const auto& row : worked)
        EXPECT_EQ(x2comCrc8(row.frame.data(), static_cast<std::uint8_t>(row.frame.size())), 59) << row.name;
}

TEST_F(CodecTest, SlotsLieInAidOrderUpTo254) {
    for (int aid = 0; aid < 255; ++aid) {
        const auto byte = static_cast<std::uint8_t>(aid);
        const bool isShort = aid < 220;
        const auto place = static_cast<std::size_t>(isShort ? 4 * aid : 13 * (aid - 220));
        EXPECT_EQ(x2comReceiveSlot(byte),
                  (isShort ? torv::receiveStore().shortSlots.data() : torv::receiveStore().longSlots.data()) +
                      place);
        EXPECT_EQ(
            x2comSendSlot(byte),
            (isShort ? torv::sendStore().shortSlots.data() : torv::sendStore().longSlots.data()) + place);
    }
    EXPECT_EQ(x2comSendSlot(255), nullptr);
    EXPECT_EQ(x2comReceiveSlot(255), x2comSendSlot(0));
}

TEST_F(CodecTest, UnpacksEvenOddPayloads) {
    const struct {
        std::string name;
        std::uint8_t type;
        Hex payload;
        x2comResult result;
        Hex aids;
        std::vector<Slot> slots;
    } rows[] = {
        {"no items", 1, "", partial, "", {}},
        {"cut short", 1, "09 01 C8 0708", partial, "09 C8", {{9, "01"}, {200, "0708"}}},
        {"an AID alone", 3, "05", partial, "05", {{5, ""}}},
        {"length 0", 1, "DC 00 050609", partial, "DC", {{220, "00 050609"}, {9, ""}}},
        {"length 0, most",
         1,
         "FE 00 0102030405060708090A0B0C",
         partial,
         "FE",
         {{254, "00 0102030405060708090A0B0C"}}},
        {"length 1", 1, "DC 01 09 04", complete, "DC 09", {{220, "01"}, {9, "04"}}},
        {"length beyond", 1, "DC 0E 01", partial, "DC", {{220, "0E 01"}}},
        {"last of each width",
         1,
         "4A 01 95 0102 B8 010203 01 01",
         complete,
         "4A 95 B8 01",
         {{74, "01"}, {149, "0102"}, {184, "010203"}, {1, "01"}}},
        {"first of each width",
         1,
         "4B 0102 96 010203 B9 01020304",
         complete,
         "4B 96 B9",
         {{75, "0102"}, {150, "010203"}, {185, "01020304"}}},
        {"last of four bytes",
         1,
         "DB 01020304 DC 02 09",
         complete,
         "DB DC",
         {{219, "01020304"}, {220, "0209"}}},
        {"seven items", 0, "0101020203030404050506060707", complete, "01020304050607", {}},
        {"an AID twice", 1, "09 01 09 02", complete, "09 09", {{9, "02"}}},
        {"14 AIDs", 2, "010203040506070809C8DCFEFF00", partial, "010203040506070809C8DCFEFF00", {{9, ""}}},
    };
    for (const auto& [name, type, payload, result, aids, slots] : rows) {
        SCOPED_TRACE(name);
        clear();
        std::uint32_t parsedType = 0;
        Bytes parsed;
        EXPECT_EQ(parse(frameWith(type, payload), parsedType, parsed), result);
        EXPECT_EQ(parsed, aids);
        for (const auto& slot : slots)
            expectSlot(x2comReceiveSlot(slot.aid), slot);
    }
}

TEST_F(CodecTest, UnpackTakesNoMoreThanFourteenBytes) {
    const Bytes payload(255, 9);
    auto list = listOf({});
    EXPECT_EQ(x2comUnpack(payload.data(), 255, x2comFrameRequest, list), partial);
    EXPECT_EQ(list.count, 14);
    EXPECT_EQ(x2comUnpack(payload.data(), 255, x2comFramePushA, list), complete);
    EXPECT_EQ(list.count, 7);
}

TEST_F(CodecTest, BytesThatTheWireDoesNotTouchStay) {
    std::fill_n(x2comReceiveSlot(9), 4, std::uint8_t{0xEE});
    std::uint32_t type = 0;
    Bytes aids;
    parse(frameWith(x2comFramePushA, {9, 1}), type, aids);
    expectSlot(x2comReceiveSlot(9), {9, "01EEEEEE"});
}

TEST_F(CodecTest, AnItemFor255LandsInTheSendSlotOf0) {
    std::uint32_t type = 0;
    Bytes aids;
    EXPECT_EQ(parse(frameWith(x2comFramePushA, {255, 2, 0xAA, 9, 1}), type, aids), complete);
    EXPECT_EQ(aids, (Bytes{255, 9}));
    expectSlot(x2comSendSlot(0), {0, "02AA"});
    expectSlot(x2comReceiveSlot(0), {0, ""});
}

TEST_F(CodecTest, ACountedAidInTheLastPlaceTakesTheCrcForItsLength) {
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
    expectSlot(x2comReceiveSlot(220), {220, ""});
}

TEST_F(CodecTest, PacksFirstFit) {
    const char* const fourteen = "0102030405060708090A0B0CDCFF";
    const struct {
        std::string name;
        std::uint8_t type;
        Hex list;
        std::vector<Slot> slots;
        Hex payload, left;
    } rows[] = {
        {"nothing", 0, "", {}, "", ""},
        {"two of four bytes", 0, "B9 BA DB", {}, "B9 00000000 BA 00000000", "DB"},
        {"first fit", 5, "B9 BA BB 4B", {{75, "0102"}}, "B9 00000000 BA 00000000 4B 0102", "BB"},
        {"behind 14 all is lost", 0, "010203040506070809", {}, "0100020003000400050006000700", ""},
        {"but what was set aside", 0, "B9 BA BB 01 02 03", {}, "B9 00000000 BA 00000000 0100 0200", "BB"},
        {"255 has no slot", 0, "FF 05", {{5, "07"}}, "05 07", "FF"},
        {"length 0", 0, "DC 05", {}, "DC 05 00", ""},
        {"length 13", 1, "DC", {{220, "0D 0102"}}, "DC 0D 0102000000000000000000 00", ""},
        {"length 14", 1, "DC 05", {{220, "0E"}}, "05 00", "DC"},
        {"length 255", 1, "DC DD", {{220, "FF"}, {221, "01"}}, "DD 01", "DC"},
        {"ack", 2, fourteen, {}, fourteen, ""},
        {"request", 4, fourteen, {}, fourteen, ""},
    };
    for (const auto& [name, type, aids, slots, payload, left] : rows) {
        SCOPED_TRACE(name);
        clear();
        for (const auto& slot : slots)
            std::copy(slot.bytes.begin(), slot.bytes.end(), x2comSendSlot(slot.aid));
        x2comFrame built{};
        auto list = listOf(aids);
        EXPECT_EQ(x2comBuildFrame(built, type, list), left.empty() ? 1 : 2);
        EXPECT_EQ(built, frameWith(type, payload));
        EXPECT_EQ(aidsOf(list), left);
        EXPECT_EQ(x2comCheckFrame(built.data(), x2comFrameLength(built.data())), x2comFrameGood);
    }
}

TEST_F(CodecTest, RemovesAids) {
    const struct {
        Hex list, second, left;
    } rows[] = {
        {"010203", "02", "0103"},
        {"010203", "0301", "02"},
        {"01020203", "0209", "0103"},
        {"010203", "03020100", ""},
        {"0102", "07", "0102"},
        {"010203", "", ""},
        {"", "01", ""},
        {"", "", ""},
    };
    for (const auto& [aids, second, left] : rows) {
        auto list = listOf(aids);
        x2comRemoveAIDs(list, listOf(second));
        EXPECT_EQ(aidsOf(list), left);
    }
}

}  // namespace
