// What is captured comes back, and what is no capture harms nobody.
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <random>
#include <sstream>

#include "connection/CaptureReader.h"
#include "connection/CaptureWriter.h"
#include "session/Session.h"
#include "support/Hexadecimal.h"

namespace {

using namespace torv;

struct All {
    std::vector<CapturedPacket> packets;
    std::string error;
};

All readAll(std::string bytes) {
    CaptureReader reader{std::make_unique<std::istringstream>(std::move(bytes))};
    All all;
    while (auto packet = reader.next(all.error))
        all.packets.push_back(std::move(*packet));
    return all;
}

std::string textOf(const CapturedPacket& packet) {
    return {packet.bytes.begin(), packet.bytes.end()};
}

class CaptureTest : public session_test::SessionTest {
protected:
    CaptureTest() { std::filesystem::remove(file); }

    std::string contents() {
        std::ifstream stream{file, std::ios::binary};
        return {std::istreambuf_iterator<char>{stream}, {}};
    }
    /// Of a session with a damaged frame, an answer and a loss.
    std::string capture() {
        std::string error;
        auto writer = CaptureWriter::begin(
            file, [](const auto&) {}, error);
        EXPECT_TRUE(writer) << error;
        writer->setNames({{9, "Beat"}, {100, "Two\nlines\tand a tab"}});
        driver().addMonitor(writer);
        connect();
        answerEverything();
        EXPECT_TRUE(driver().requestValueForAID(20));
        platform.stream().lose();
        platform.loop.runWork();
        EXPECT_EQ(CaptureWriter::begin(file, {}, error), nullptr) << "what is there is left alone";
        return contents();
    }

    const std::filesystem::path file = std::filesystem::path{testing::TempDir()} / "drive.pcapng";
};

TEST_F(CaptureTest, WhatWentOverTheLinkComesBackByteForByte) {
    const auto bytes = capture();
    const auto hex = hexadecimalText({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    EXPECT_EQ(hex.substr(0, 160),
              "0a0d0d0a2c0000004d3c2b1a01000000ffffffffffffffff0400050069546f727600000000000000"
              "2c00000001000000240000009300000000000000020005007832636f6d0000000000000024000000")
        << "as other programs want it";
    EXPECT_NE(hex.find("02000400010000000000000"), std::string::npos) << "inbound";
    EXPECT_NE(hex.find("02000400020000000000000"), std::string::npos) << "outbound";
    const auto all = readAll(bytes);
    EXPECT_EQ(all.error, "");
    const auto& sent = platform.opened.front()->sent;
    std::vector<fakes::Bytes> to;
    std::vector<fakes::Bytes> from;
    std::vector<std::string> words;
    for (const auto& packet : all.packets) {
        if (packet.kind == CapturedKind::toModule) to.push_back(packet.bytes);
        if (packet.kind == CapturedKind::fromModule) from.push_back(packet.bytes);
        if (packet.kind == CapturedKind::note || packet.kind == CapturedKind::names)
            words.push_back(textOf(packet));
        EXPECT_GE(packet.time, all.packets.front().time);
    }
    EXPECT_EQ(to, (std::vector<fakes::Bytes>{sent.begin(), sent.end()}));
    ASSERT_EQ(from.size(), 5U);
    EXPECT_EQ(from[0], session_test::push);
    EXPECT_EQ(from[3], fakes::frame({0x53, 20, 7}));
    EXPECT_EQ(words, (std::vector<std::string>{
                         "9\tBeat\n100\tTwo lines and a tab\n", "connecting to 1.2.3.4:2000", "session up",
                         "session over with 1.2.3.4:2000", "connecting to 1.2.3.4:2000"}));
}

TEST_F(CaptureTest, CutDamagedAndForeignFilesEndWithASentence) {
    const auto whole = capture();
    const auto count = readAll(whole).packets.size();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto cut = readAll(whole.substr(0, length));
        EXPECT_LT(cut.packets.size(), count);
        EXPECT_LE(cut.packets.size(), length / 32);
    }
    EXPECT_EQ(readAll(whole.substr(0, whole.size() - 1)).error, "the capture is cut");
    std::mt19937 random{7};
    for (int i = 0; i < 2000; ++i) {
        auto damaged = whole;
        damaged[random() % damaged.size()] ^= static_cast<char>(1U << random() % 8);
        EXPECT_LE(readAll(damaged).packets.size(), count);
    }
    for (const auto* foreign : {"", "no capture at all", "SQLite format 3"})
        EXPECT_EQ(readAll(foreign).error, "this is no capture");
    // A section of the other byte order with nanoseconds, a foreign interface ahead of ours, and an unknown
    // block.
    const std::string other{
        "\x0a\x0d\x0d\x0a\0\0\0\x1c\x1a\x2b\x3c\x4d\0\1\0\0\xff\xff\xff\xff\xff\xff\xff\xff\0\0\0\x1c"
        "\0\0\0\1\0\0\0\x14\0\1\0\0\0\0\0\0\0\0\0\x14"
        "\0\0\0\1\0\0\0\x1c\0\x93\0\0\0\0\0\0\0\x09\0\1\x09\0\0\0\0\0\0\x1c"
        "\0\0\x0b\xad\0\0\0\x10????\0\0\0\x10"
        "\0\0\0\6\0\0\0\x24\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\2\0\0\0\2\0\x42\0\0\0\0\0\x24"
        "\0\0\0\6\0\0\0\x24\0\0\0\1\0\0\0\0\x77\x35\x94\0\0\0\0\2\0\0\0\2\1\x42\0\0\0\0\0\x24",
        28 + 20 + 28 + 16 + 36 + 36};
    const auto all = readAll(other);
    EXPECT_EQ(all.error, "");
    ASSERT_EQ(all.packets.size(), 1U);
    EXPECT_EQ(all.packets[0].kind, CapturedKind::toModule);
    EXPECT_EQ(all.packets[0].bytes, fakes::Bytes{0x42});
    EXPECT_EQ(all.packets[0].time.time_since_epoch(), std::chrono::seconds{2});
}

TEST_F(CaptureTest, WithoutRoomItEndsWholeAndSaysSoOnce) {
    std::string error;
    EXPECT_EQ(CaptureWriter::begin("/none/here.pcapng", {}, error), nullptr);
    EXPECT_EQ(error, "/none/here.pcapng: No such file or directory");
    std::vector<std::string> told;
    auto writer = CaptureWriter::begin(
        file, [&](const auto& why) { told.push_back(why); }, error);
    ASSERT_TRUE(writer) << error;
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{1000, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    for (int i = 0; i < 100; ++i)
        writer->chunkReceived(session_test::push, x2comFrameGood);
    ::setrlimit(RLIMIT_FSIZE, &before);
    writer->chunkReceived(session_test::push, x2comFrameGood);
    platform.loop.runWork();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told[0].find("The capture has ended: " + file.string()), 0U);
    const auto all = readAll(contents());
    EXPECT_EQ(all.error, "");
    EXPECT_GT(all.packets.size(), 10U);
    EXPECT_LT(all.packets.size(), 25U);
}

}  // namespace
