#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>

#include "bench/Bench.h"
#include "bench/FrameCodec.h"
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

TEST(WriteFaults, ByTheirText) {
    using Parsed = std::optional<std::pair<std::uint8_t, WriteFault>>;
    EXPECT_EQ(parseWriteFault("stuck:42"), (Parsed{{42, WriteFault::stuck}}));
    EXPECT_EQ(parseWriteFault("clamp:0"), (Parsed{{0, WriteFault::clamp}}));
    EXPECT_EQ(parseWriteFault("refuse:254"), (Parsed{{254, WriteFault::refuse}}));
    for (const auto* bad : {"stuck:255", "stuck:-1", "stuck:4.5", "stuck:", "stuck", "Stuck:42", "close@10"})
        EXPECT_EQ(parseWriteFault(bad), Parsed{}) << bad;
}

}  // namespace
}  // namespace bench
