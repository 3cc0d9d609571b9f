#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <tuple>

#include "bench/Bench.h"
#include "bench/ModuleState.h"
#include "bench/ShadowReader.h"

namespace bench {
namespace {

using namespace std::chrono_literals;

constexpr std::uint8_t boostAid = 8;
const std::filesystem::path profilePath = std::filesystem::path(ITORV_RESOURCE_DIR) / "vehicle.json";

Profile vehicle() {
    std::string error;
    return loadProfile(profilePath, error).value_or(Profile{});
}

/// The handset's side of the socket, with no knowledge of frames: one chunk per read of 16 bytes.
class Client {
public:
    explicit Client(std::uint16_t port) : m_fd(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        inet_pton(AF_INET, "127.0.0.1", &address.sin_addr);
        m_connected = connect(m_fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }
    ~Client() { close(m_fd); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    [[nodiscard]] bool connected() const { return m_connected; }

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
    bool m_connected = false;
};

Options options(std::uint64_t seed = 1) {
    Options wanted;
    wanted.rate = 400;
    wanted.seed = seed;
    wanted.profile = profilePath;
    return wanted;
}

Frame writeFrame(const Item& item) {
    Frame frame{typeByte(FrameType::write), {}};
    appendItem(frame.payload, item);
    return frame;
}

bool holdsItem(const Frame& frame, const Item& item) {
    const std::vector<Item> items = parseItems(frame.payload);
    return std::ranges::find(items, item) != items.end();
}

const struct {
    Frame frame;
    Bytes wire;
} frameRows[] = {
    {{4, {9}}, {0x42, 0x09, 0x39}},
    {{5, {9, 1}}, {0x53, 0x09, 0x01, 0x0E}},
    {{0, {5, 3}}, {0x03, 0x05, 0x03, 0x3B}},
    {{2, {5}}, {0x22, 0x05, 0x3A}},
    {{2, {}}, {0x21, 0xA1}},
    {{1, {100, 0x12, 0x34}}, {0x14, 0x64, 0x12, 0x34, 0x76}},
    {{5, {200, 1, 2, 3, 4}}, {0x56, 0xC8, 1, 2, 3, 4, 0xCE}},
    {{0, {220, 3, 0xAA, 0xBB}}, {0x05, 0xDC, 0x03, 0xAA, 0xBB, 0xC8}},
    {{1, {224, 13, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
     {0x1F, 0xE0, 0x0D, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x6C}},
};

TEST(Codec, KnownFrames) {
    const std::string digits = "123456789";
    EXPECT_EQ(crc8(Bytes(digits.begin(), digits.end())), 0x4B);
    for (const auto& row : frameRows) {
        SCOPED_TRACE(testing::PrintToString(row.wire));
        EXPECT_EQ(encode(row.frame), row.wire);
        EXPECT_EQ(decode(row.wire), row.frame);
        for (std::size_t at = 0; at < row.wire.size(); ++at) {
            Bytes damaged = row.wire;
            damaged[at] ^= 0x10;
            EXPECT_NE(decode(damaged), row.frame);
        }
    }
}

TEST(Codec, StreamIsCutIntoFramesWhereverTcpCutIt) {
    Bytes all;
    for (const auto& row : frameRows)
        all.insert(all.end(), row.wire.begin(), row.wire.end());
    for (std::size_t step : {1U, 3U, 16U, 500U}) {
        FrameStream stream;
        std::vector<Frame> frames;
        for (std::size_t at = 0; at < all.size(); at += step) {
            for (Frame& frame : stream.feed(ByteView(all).subspan(at, std::min(step, all.size() - at)))) {
                frames.push_back(std::move(frame));
            }
        }
        EXPECT_EQ(frames.size(), std::size(frameRows));
        EXPECT_EQ(stream.badFrames(), 0U);
    }
    FrameStream stream;
    EXPECT_TRUE(stream.feed(Bytes{0x42, 0x09, 0x38, 0x00}).empty());
    EXPECT_EQ(stream.badFrames(), 1U);
    EXPECT_EQ(stream.feed(frameRows[0].wire).size(), 1U);
}

TEST(Codec, CutItemsEndTheList) {
    EXPECT_EQ(parseItems(Bytes{5, 3, 100, 1}), (std::vector<Item>{{5, {3}}}));
    EXPECT_TRUE(parseItems(Bytes{220, 0, 1, 2}).empty());
}

TEST(Shadow, SeesAFrameCompletedByStaleBytes) {
    ShadowReader reader;
    const Bytes whole = frameRows[5].wire;
    reader.take(whole);
    EXPECT_TRUE(reader.misleads(Bytes{0x14, 0x64, 0x12}, {}));
    EXPECT_FALSE(reader.misleads(Bytes{0x14, 0x64, 0x12}, std::array{whole}));
    EXPECT_FALSE(reader.misleads(Bytes{0x14, 0x64, 0x13}, {}));
}

TEST(Values, RawBytesOfAnAttribute) {
    Attribute boost{.aid = 8, .factor = 0.25};
    EXPECT_EQ(boost.encode(45), Bytes{180});
    EXPECT_EQ(boost.encode(500), Bytes{255});
    EXPECT_EQ(boost.encode(-1), Bytes{0});
    EXPECT_EQ((Attribute{.aid = 100, .factor = 0.1, .offset = -40}.encode(60)), (Bytes{0xE8, 0x03}));
    EXPECT_EQ((Attribute{.aid = 226, .layout = Layout::driveTrain}.encode(31.5)),
              (Bytes{6, 0, 0, 0x3B, 1, 0}));
    EXPECT_EQ((Attribute{.aid = 185, .layout = Layout::time}.encode(257 * 3600 + 30 * 60 + 45)),
              (Bytes{2, 1, 30, 45}));
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
        state.write({27, {0x55}});
        EXPECT_EQ(state.value(224), first);
        EXPECT_EQ(state.value(225), second);
        state.write({25, {0x55}});
        EXPECT_EQ(state.value(26), Bytes{1});
        state.write({27, {0x55}});
        EXPECT_EQ(state.value(224)[2], 0);
    }
    for (const char* bad : {"", "P012", "X0123", "P4123", "P01g3", "P01234"})
        EXPECT_FALSE(troubleCodeBytes(bad));
}

TEST(Drive, PassesTheLimitsOfBoostAndExhaustAndOfNothingElse) {
    const Profile profile = vehicle();
    ASSERT_FALSE(profile.sensors.empty());
    const SensorMap map(profile);
    std::set<std::string> warned;
    std::set<Bytes> gears;
    for (double seconds = 0; seconds < EngineModel::cycleSeconds; seconds += 0.25) {
        for (const Item& item : map.items(EngineModel(7).at(seconds), seconds)) {
            if (profile.currentGear && item.aid == profile.currentGear->aid) gears.insert(item.value);
            const auto sensor = std::ranges::find(profile.sensors, item.aid, &Attribute::aid);
            if (sensor == profile.sensors.end() || sensor->layout == Layout::time) continue;
            double raw = 0;
            for (std::size_t at = item.value.size(); at-- > 0;)
                raw = raw * 256 + item.value[at];
            const double value = raw * sensor->factor + sensor->offset;
            EXPECT_GE(value, sensor->minValue - sensor->factor) << sensor->name << " at " << seconds;
            EXPECT_LE(value, sensor->maxValue + sensor->factor) << sensor->name << " at " << seconds;
            const bool high = sensor->warningRule % 2 == 1 && value >= sensor->warningValue;
            const bool low =
                sensor->warningRule != 0 && sensor->warningRule % 2 == 0 && value <= sensor->warningValue;
            if (high || low) warned.insert(sensor->name);
        }
    }
    EXPECT_EQ(warned, (std::set<std::string>{"Boost", "EGT Pre-Turbo", "EGT Post-Turbo"}));
    EXPECT_GE(gears.size(), 6U);
}

TEST(Link, SpeaksFirstOneFrameAtATime) {
    Options wanted = options();
    wanted.rate = 200;
    Bench module(wanted);
    ASSERT_EQ(module.start(), std::nullopt);
    Client client(module.port());
    std::set<std::uint8_t> seen;
    int alone = 0;
    for (int chunk = 0; chunk < 100; ++chunk) {
        const Bytes bytes = client.read(2000ms, 64).value_or(Bytes{});
        const std::optional<Frame> frame = decode(bytes);
        ASSERT_TRUE(frame) << "chunk " << chunk;
        alone += encode(*frame) == bytes ? 1 : 0;
        for (const Item& item : parseItems(frame->payload))
            seen.insert(item.aid);
    }
    EXPECT_GE(alone, 95);  // a busy machine may make a reader late
    for (const Attribute& sensor : vehicle().sensors)
        EXPECT_TRUE(seen.contains(sensor.aid)) << sensor.name;
}

TEST(Link, AnswersInTimeAndGoesOn) {
    Bench module(options());
    ASSERT_EQ(module.start(), std::nullopt);
    Client client(module.port());
    ASSERT_TRUE(client.await(FrameType::pushA));
    const Item item{42, {77}};
    const auto begin = Clock::now();
    client.send(writeFrame(item));
    EXPECT_EQ(client.payloadOf(FrameType::ack), Bytes{42});
    const std::optional<Bytes> next = client.read();
    ASSERT_TRUE(next && decode(*next));
    EXPECT_LT(Clock::now() - begin, 100ms);
    EXPECT_TRUE(holdsItem(*decode(*next), item));
    client.send({typeByte(FrameType::request), {9}});
    EXPECT_EQ(client.payloadOf(FrameType::response), (Bytes{9, 1}));
    client.send({typeByte(FrameType::request), {224, 42, 226}});
    EXPECT_EQ(client.payloadOf(FrameType::response).size(), 14U);
    EXPECT_EQ(client.payloadOf(FrameType::response), (Bytes{42, 77, 226, 6, 0, 0, 0x18, 1, 0}));
    EXPECT_EQ(module.statistics().writes, std::vector<Item>{item});
    EXPECT_TRUE(module.sent(42).contains({77}));
}

TEST(Link, ResetBringsTuningBack) {
    Bench module(options());
    ASSERT_EQ(module.start(), std::nullopt);
    Client client(module.port());
    const Bytes before = module.value(42);
    for (const Item& item : {Item{42, {51}}, Item{24, {0x54}}, Item{24, {0x55}}}) {
        EXPECT_EQ(module.value(42), item.aid == 42 ? before : Bytes{51});
        client.send(writeFrame(item));
        ASSERT_TRUE(client.await([&](const Frame& frame) { return frame == Frame{2, {item.aid}}; }));
    }
    EXPECT_EQ(module.value(42), before);
}

TEST(Link, ForcedValuesHoldAndNewConnectionsReplaceOld) {
    Bench module(options());
    ASSERT_EQ(module.start(), std::nullopt);
    Client old(module.port());
    ASSERT_TRUE(old.await(FrameType::pushA));
    module.setValue(boostAid, {99});
    const Item forced{boostAid, {99}};
    ASSERT_TRUE(old.await([&](const Frame& frame) { return holdsItem(frame, forced); }));
    Client fresh(module.port());
    ASSERT_TRUE(fresh.await(FrameType::pushA));
    EXPECT_FALSE(old.await([](const Frame&) { return false; }));
    EXPECT_EQ(module.value(boostAid), Bytes{99});
    const std::uint16_t port = module.port();
    module.stop();
    EXPECT_FALSE(Client(port).connected());
    ASSERT_EQ(module.start(), std::nullopt);
    EXPECT_EQ(module.port(), port);
    Client again(port);
    EXPECT_TRUE(again.await([&](const Frame& frame) { return holdsItem(frame, forced); }));
    EXPECT_EQ(module.statistics().connections, 3U);
}

std::vector<Bytes> opening(std::uint64_t seed) {
    Options wanted = options(seed);
    wanted.faults = {{Fault::corrupt, {.probability = 0.2}}, {Fault::ownRequest, {.probability = 0.1}}};
    Bench module(wanted);
    EXPECT_EQ(module.start(), std::nullopt);
    Client client(module.port());
    std::vector<Bytes> chunks;
    for (int chunk = 0; chunk < 60; ++chunk)
        chunks.push_back(client.read().value_or(Bytes{}));
    return chunks;
}

TEST(Link, SameSeedSameBytes) {
    EXPECT_EQ(opening(5), opening(5));
    EXPECT_NE(opening(5), opening(6));
}

bool sees(Client& client, const std::function<bool(const Frame&)>& wanted) {
    return client.await(wanted).has_value();
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
/// How long the answer to this takes to come; more than a second if it never does.
Clock::duration answerTime(Client& client, const Frame& asked, FrameType type) {
    client.send(asked);
    const auto begin = Clock::now();
    const auto answered = client.await(
        [&](const Frame& frame) { return frame.type == typeByte(type) || Clock::now() - begin > 300ms; });
    return answered && answered->type == typeByte(type) ? Clock::now() - begin : Clock::duration(10s);
}
const Frame aWrite = writeFrame({42, {60}});
Clock::duration ackTime(Client& client) {
    return answerTime(client, aWrite, FrameType::ack);
}
Clock::duration responseTime(Client& client) {
    return answerTime(client, {typeByte(FrameType::request), {9}}, FrameType::response);
}
bool isLate(Clock::duration time) {
    return time > 100ms && time < 1s;
}
bool cutsItem(const Frame& frame) {
    Bytes whole;
    for (const Item& item : parseItems(frame.payload))
        appendItem(whole, item);
    return frame.type == 1 && whole != frame.payload;
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
    {Fault::dropAck, [](Client& c) { return ackTime(c) == 10s; }},
    {Fault::delayAck, [](Client& c) { return isLate(ackTime(c)); }},
    {Fault::dropResponse, [](Client& c) { return responseTime(c) == 10s; }},
    {Fault::delayResponse, [](Client& c) { return isLate(responseTime(c)); }},
    {Fault::corrupt, [](Client& c) { return seesChunk(c, isDamaged); }},
    {Fault::split, [](Client& c) { return seesChunk(c, isCut); }},
    {Fault::join, [](Client& c) { return seesChunk(c, isJoined); }},
    {Fault::silent, [](Client& c) { return stops(c, false); }},
    {Fault::close, [](Client& c) { return stops(c, true); }},
    {Fault::refuse, [](Client& c) { return !c.connected(); }},
    {Fault::mute, [](Client& c) { return c.connected() && !c.read(300ms); }},
    {Fault::strayAck, [](Client& c) { return sees(c, [](const Frame& f) { return f.type == 2; }); }},
    {Fault::reservedType, [](Client& c) { return sees(c, [](const Frame& f) { return f.type > 5; }); }},
    {Fault::badAid, [](Client& c) { return sees(c, [](const Frame& f) { return f.payload[0] == 255; }); }},
    {Fault::cutItem, [](Client& c) { return sees(c, cutsItem); }},
    {Fault::ownRequest, [](Client& c) { return sees(c, [](const Frame& f) { return f.type == 4; }); }},
    {Fault::ownWrite, [](Client& c) { return sees(c, [](const Frame& f) { return f.type == 0; }); }},
};

TEST(Faults, EachShowsOnTheWireAndCanBeCleared) {
    ASSERT_EQ(std::size(faultRows), faultCount);
    for (const auto& [fault, seen] : faultRows) {
        SCOPED_TRACE(faultNames[static_cast<std::size_t>(fault)].name);
        Bench module(options());
        ASSERT_EQ(module.start(), std::nullopt);
        module.setFault(fault, {.probability = 1});
        {
            Client client(module.port());
            EXPECT_TRUE(seen(client));
        }
        EXPECT_GE(module.statistics().struck(fault), 1U);
        module.clearFaults();
        Client client(module.port());
        ASSERT_TRUE(client.await(FrameType::pushA));
        EXPECT_LT(ackTime(client), 1s);
    }
}

TEST(Faults, MomentsStrikeOnceAndDamageNeverReadsAsAnotherFrame) {
    Bench module(options(3));
    ASSERT_EQ(module.start(), std::nullopt);
    module.setFault(Fault::strayAck, {.at = 0ms});
    for (const Fault fault : {Fault::corrupt, Fault::split, Fault::join})
        module.setFault(fault, {.probability = 0.3});
    Client client(module.port());
    std::array<std::array<std::uint8_t, maxFrame>, 2> buffers{};
    for (std::size_t chunk = 0; chunk < 800; ++chunk) {
        const std::optional<Bytes> bytes = client.read();
        ASSERT_TRUE(bytes && !bytes->empty());
        auto& buffer = buffers[chunk % 2];
        std::ranges::copy(*bytes, buffer.begin());
        const std::optional<Frame> frame = decode(buffer);
        if (!frame || frame->type == typeByte(FrameType::ack)) continue;
        for (const Item& item : parseItems(frame->payload)) {
            EXPECT_TRUE(module.sent(item.aid).contains(item.value)) << int(item.aid);
        }
    }
    EXPECT_EQ(module.statistics().struck(Fault::strayAck), 1U);
    EXPECT_GT(module.statistics().struck(Fault::corrupt), 50U);
}

TEST(Faults, Arguments) {
    const auto late = parseFault("silent@1.5:2000");
    ASSERT_TRUE(late);
    EXPECT_EQ(late->first, Fault::silent);
    EXPECT_EQ(late->second.at, 1500ms);
    EXPECT_EQ(late->second.lasts, 2000ms);
    EXPECT_EQ(parseFault("corrupt=0.05")->second.probability, 0.05);
    for (const char* bad : {"", "corrupt", "corrupt=", "corrupt=1.1", "corrupt=-1", "corrupt=x", "nothing=1",
                            "close@-1", "close@1e99", "close@nan", "close@1:", "close@1:-5"}) {
        EXPECT_FALSE(parseFault(bad)) << bad;
    }
}

TEST(Start, SaysWhatIsWrong) {
    const std::filesystem::path broken = std::filesystem::path(testing::TempDir()) / "broken-profile.json";
    std::ofstream(broken) << R"({"parameters": )";
    for (const std::filesystem::path& path :
         {broken, std::filesystem::path("/nowhere.json"), std::filesystem::path()}) {
        Options wanted = options();
        wanted.profile = path;
        const std::optional<std::string> error = Bench(wanted).start();
        ASSERT_TRUE(error);
        EXPECT_EQ(error->find('\n'), std::string::npos);
    }
    Bench first(options());
    ASSERT_EQ(first.start(), std::nullopt);
    Options taken = options();
    taken.port = first.port();
    EXPECT_TRUE(Bench(taken).start());
}

}  // namespace
}  // namespace bench
