#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <tuple>

#include "bench/Bench.h"
#include "bench/ModuleState.h"
#include "bench/WriteFault.h"

namespace bench {
namespace {

using namespace std::chrono_literals;

const std::filesystem::path profilePath = std::filesystem::path(ITORV_RESOURCE_DIR) / "vehicle.json";

/// The handset's side of the socket, with no knowledge of frames: one chunk per read of 16 bytes.
class Client {
public:
    explicit Client(std::uint16_t port) : m_fd(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        inet_pton(AF_INET, "127.0.0.1", &address.sin_addr);
        EXPECT_EQ(connect(m_fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~Client() { close(m_fd); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /// Nothing after `limit` of silence, an empty chunk at the end of the stream.
    std::optional<Bytes> read(std::chrono::milliseconds limit = 2000ms, std::size_t most = maxFrame) {
        pollfd waiting{m_fd, POLLIN, 0};
        if (poll(&waiting, 1, static_cast<int>(limit.count())) <= 0) return std::nullopt;
        Bytes chunk(most);
        const ssize_t got = recv(m_fd, chunk.data(), chunk.size(), 0);
        chunk.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        return chunk;
    }
    void send(const Frame& frame) {
        const Bytes wire = encode(frame);
        ASSERT_EQ(::send(m_fd, wire.data(), wire.size(), MSG_NOSIGNAL), static_cast<ssize_t>(wire.size()));
    }
    /// The first frame of this kind among the next 200 chunks.
    std::optional<Frame> await(const std::function<bool(const Frame&)>& wanted) {
        for (int chunk = 0; chunk < 200; ++chunk) {
            const std::optional<Bytes> bytes = read();
            if (!bytes || bytes->empty()) return std::nullopt;
            const std::optional<Frame> frame = decode(*bytes);
            if (frame && wanted(*frame)) return frame;
        }
        return std::nullopt;
    }
    std::optional<Frame> await(FrameType type) {
        return await([type](const Frame& frame) { return frame.type == typeByte(type); });
    }
    Bytes payloadOf(FrameType type) { return await(type).value_or(Frame{}).payload; }

private:
    int m_fd;
};

class BenchTest : public testing::Test {
protected:
    BenchTest() { EXPECT_EQ(module.start(), std::nullopt); }

    Bench module{{.rate = 200, .profile = profilePath}};
};

Frame writeFrame(const Item& item) {
    Frame frame{typeByte(FrameType::write), {}};
    appendItem(frame.payload, item);
    return frame;
}

const struct {
    Frame frame;
    Bytes wire;
} frameRows[] = {
    {{4, {9}}, {0x42, 0x09, 0x39}},
    {{0, {5, 3}}, {0x03, 0x05, 0x03, 0x3B}},
    {{1, {100, 0x12, 0x34}}, {0x14, 0x64, 0x12, 0x34, 0x76}},
    {{0, {220, 3, 0xAA, 0xBB}}, {0x05, 0xDC, 0x03, 0xAA, 0xBB, 0xC8}},
    {{1, {224, 13, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
     {0x1F, 0xE0, 0x0D, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x6C}},
};

TEST(Codec, KnownFrames) {
    const std::string digits = "123456789";
    EXPECT_EQ(crc8(Bytes(digits.begin(), digits.end())), 0x4B);
    for (const auto& row : frameRows) {
        EXPECT_EQ(encode(row.frame), row.wire);
        EXPECT_EQ(decode(row.wire), row.frame);
    }
}

TEST(TroubleCodes, ReportBytes) {
    const std::tuple<std::vector<std::string>, Bytes, Bytes> rows[] = {
        {{"P0123", "U0158", "C0ABC"}, {13, 0, 3, 0x01, 0x23, 0xC1, 0x58, 0x4A, 0xBC, 0, 0, 0, 0}, {1}},
        {{}, {13, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, {1}},
        {{"P0001", "P0002", "P0003", "P0004", "P0005", "U0123", "P0420"},
         {13, 0, 7, 0, 1, 0, 2, 0, 3, 0, 4, 0, 5},
         {5, 0xC1, 0x23, 0x04, 0x20}}};
    for (const auto& [codes, first, second] : rows) {
        ModuleState state;
        state.setTroubleCodes(codes);
        EXPECT_TRUE(state.write({27, {0x55}}));
        EXPECT_EQ(state.value(224), first);
        EXPECT_EQ(state.value(225), second);
        EXPECT_TRUE(state.write({25, {0x55}}));
        EXPECT_EQ(state.value(26), Bytes{1});
        EXPECT_TRUE(state.write({27, {0x55}}));
        EXPECT_EQ(state.value(224)[2], 0);
    }
}

TEST_F(BenchTest, SpeaksFirstOneFrameAtATime) {
    Client client(module.port());
    int alone = 0;
    for (int chunk = 0; chunk < 100; ++chunk) {
        const Bytes bytes = client.read(2000ms, 64).value_or(Bytes{});
        const std::optional<Frame> frame = decode(bytes);
        ASSERT_TRUE(frame) << "chunk " << chunk;
        alone += encode(*frame) == bytes ? 1 : 0;
    }
    EXPECT_GE(alone, 95);  // a busy machine may make a reader late
}

TEST_F(BenchTest, AnswersInTimeAndGoesOn) {
    Client client(module.port());
    ASSERT_TRUE(client.await(FrameType::pushA));
    const auto begin = Clock::now();
    client.send(writeFrame({42, {77}}));
    EXPECT_EQ(client.payloadOf(FrameType::ack), Bytes{42});
    const std::optional<Bytes> next = client.read();
    ASSERT_TRUE(next && decode(*next));
    EXPECT_LT(Clock::now() - begin, 100ms);
    client.send({typeByte(FrameType::request), {224, 42, 226}});
    EXPECT_EQ(client.payloadOf(FrameType::response).size(), 14U);
    EXPECT_EQ(client.payloadOf(FrameType::response), (Bytes{42, 77, 226, 6, 0, 0, 0x18, 1, 0}));
}

TEST(Stand, HoldsTheDriveAtItsSecond) {
    Bench still({.rate = 400, .profile = profilePath, .standsAt = 48});
    ASSERT_FALSE(still.start());
    Client client(still.port());
    for (int frame = 0; frame < 60; ++frame)
        ASSERT_TRUE(client.await(FrameType::pushA));
    EXPECT_EQ(still.sent(78), std::set<Bytes>{still.value(78)});
    EXPECT_GT(still.value(78), (Bytes{3000 >> 8, 0}));  // rev/min at full throttle
}

TEST_F(BenchTest, ResetBringsTuningBack) {
    Client client(module.port());
    const Bytes before = module.value(42);
    for (const Item& item : {Item{42, {51}}, Item{24, {0x54}}, Item{24, {0x55}}}) {
        EXPECT_EQ(module.value(42), item.aid == 42 ? before : Bytes{51});
        client.send(writeFrame(item));
        ASSERT_TRUE(client.await([&](const Frame& frame) { return frame == Frame{2, {item.aid}}; }));
    }
    EXPECT_EQ(module.value(42), before);
}

/// A chunk of this kind among the next 20, which may each be more than a frame.
bool seesChunk(Client& client, bool (*wanted)(const Bytes&)) {
    for (int chunk = 0; chunk < 20; ++chunk) {
        const std::optional<Bytes> bytes = client.read(2000ms, 64);
        if (bytes && wanted(*bytes)) return true;
    }
    return false;
}
/// The stream falls silent for 700 ms, or ends.
bool stops(Client& client, bool ends) {
    auto chunk = client.read(700ms);
    while (chunk && !chunk->empty())
        chunk = client.read(700ms);
    return chunk.has_value() == ends;
}
bool isAcknowledged(Client& client) {
    client.send(writeFrame({42, {60}}));
    return client.await(FrameType::ack).has_value();
}
bool isDamaged(const Bytes& bytes) {
    return bytes.size() > 8 && !decode(bytes);
}
bool isCut(const Bytes& bytes) {
    return bytes.size() < 12 && !decode(bytes);
}
bool isJoined(const Bytes& bytes) {
    return decode(bytes) && bytes.size() > (bytes[0] & 15U) + 1U;
}

const std::pair<Fault, bool (*)(Client&)> faultRows[] = {
    {Fault::dropAck, [](Client& c) { return !isAcknowledged(c); }},
    {Fault::corrupt, [](Client& c) { return seesChunk(c, isDamaged); }},
    {Fault::split, [](Client& c) { return seesChunk(c, isCut); }},
    {Fault::join, [](Client& c) { return seesChunk(c, isJoined); }},
    {Fault::silent, [](Client& c) { return stops(c, false); }},
    {Fault::close, [](Client& c) { return stops(c, true); }},
};

TEST_F(BenchTest, EachFaultShowsOnTheWireAndCanBeCleared) {
    for (const auto& [fault, seen] : faultRows) {
        SCOPED_TRACE(faultNames[static_cast<std::size_t>(fault)].name);
        module.setFault(fault, {.probability = 1});
        {
            Client client(module.port());
            EXPECT_TRUE(seen(client));
        }
        module.clearFaults();
        Client client(module.port());
        EXPECT_TRUE(isAcknowledged(client));
    }
}

TEST(WriteFaults, ByTheirText) {
    using Parsed = std::optional<std::pair<std::uint8_t, WriteFault>>;
    for (const auto& [text, parsed] :
         std::vector<std::pair<const char*, Parsed>>{{"stuck:42", {{42, WriteFault::stuck}}},
                                                     {"clamp:0", {{0, WriteFault::clamp}}},
                                                     {"refuse:254", {{254, WriteFault::refuse}}},
                                                     {"stuck:255", {}},
                                                     {"stuck:-1", {}},
                                                     {"stuck:4.5", {}},
                                                     {"stuck:", {}},
                                                     {"stuck", {}},
                                                     {"Stuck:42", {}},
                                                     {"close@10", {}}})
        EXPECT_EQ(parseWriteFault(text), parsed) << text;
}

}  // namespace
}  // namespace bench
