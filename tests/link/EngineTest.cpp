#include "link/x2comEngine.h"
#include "platform/NotificationNames.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "link/AVStore.h"

namespace {

using fakes::Bytes;
using Frames = std::vector<Bytes>;
using Results = std::vector<int>;
using Names = std::vector<std::string_view>;
constexpr auto complete = x2comFrameComplete, partial = x2comFramePartial, good = x2comFrameGood;
constexpr auto badCrc = x2comFrameBadCrc, empty = x2comFrameEmpty;
constexpr auto idle = x2comTxIdle, ackSent = x2comTxAckSent, respSent = x2comTxRespSent,
               respMore = x2comTxRespMore, writeSent = x2comTxWriteSent, writeMore = x2comTxWriteMore,
               requestSent = x2comTxRequestSent;

Bytes framed(int type, const Bytes& payload) {
    Bytes frame{static_cast<std::uint8_t>(type << 4 | static_cast<int>(payload.size() + 1))};
    frame.insert(frame.end(), payload.begin(), payload.end());
    frame.push_back(x2comCrc8(frame.data(), static_cast<std::uint8_t>(frame.size())));
    return frame;
}

/// An item for each AID, every byte of its value the same; for AIDs below 220.
Bytes items(const Bytes& aids, std::uint8_t value) {
    Bytes all;
    for (const auto aid : aids) {
        all.push_back(aid);
        all.insert(all.end(), x2comValueLength(aid, 0), value);
    }
    return all;
}

void push(const Bytes& chunk) {
    x2comPushChunk(chunk.data(), static_cast<std::uint8_t>(chunk.size()));
}

Bytes received;
int receive() {
    x2comAIDList list;
    const auto result = x2comReceive(list);
    received.assign(list.aids.begin(), list.aids.begin() + list.count);
    return result;
}

const Bytes filler = framed(15, {});

struct Sink final : x2comSink {
    void sendBytes(std::span<const std::uint8_t> frame) override {
        sent.emplace_back(frame.begin(), frame.end());
    }
    [[nodiscard]] bool canSend() override { return true; }

    Frames sent;
};

class EngineTest : public testing::Test {
protected:
    EngineTest() {
        fakes::freshenEngine();
        x2comSetSink(&sink);
        torv::receiveStore() = torv::sendStore() = {};
        for (const auto name :
             {torv::x2comStartAckTimerNotification, torv::x2comStopAckTimerNotification,
              torv::x2comStartRespTimerNotification, torv::x2comStopRespTimerNotification}) {
            observations.push_back(
                platform.notificationCenter().addObserver(name, [this, name] { posted.emplace_back(name); }));
        }
    }
    ~EngineTest() override { x2comSetSink(nullptr); }

    /// The frame with one behind it, so that it takes effect.
    static int deliver(const Bytes& frame) {
        push(frame);
        push(filler);
        receive();
        return receive();
    }
    static Results transmitAll(std::size_t most = 10) {
        Results results;
        while (results.size() < most && (results.empty() || results.back() != idle))
            results.push_back(x2comTransmit());
        return results;
    }
    static std::uint8_t stored(std::uint8_t aid) { return *x2comReceiveSlot(aid); }

    fakes::FakePlatform platform;
    Sink sink;
    Names posted;
    std::vector<torv::NotificationCenter::Observation> observations;
};

TEST_F(EngineTest, DecodesOneFrameBehind) {
    push(framed(1, {9, 1}));
    EXPECT_EQ(receive(), empty);
    EXPECT_EQ(receive(), x2comRxIdle);
    EXPECT_EQ(stored(9), 0);
    push(framed(3, {9, 2}));
    EXPECT_EQ(receive(), complete);
    EXPECT_EQ(stored(9), 1);
    x2comReset();  // takes a chunk into the current buffer
    push(filler);
    EXPECT_EQ(receive(), complete);
    EXPECT_EQ(stored(9), 2);
}

TEST_F(EngineTest, AResetTakesAWaitingChunkInPlaceOfTheFrameThatIsHeld) {
    push(framed(1, {9, 1}));
    receive();
    push(framed(1, {9, 2}));
    x2comReset();
    push(filler);
    EXPECT_EQ(receive(), complete);
    EXPECT_EQ(stored(9), 2);
}

TEST_F(EngineTest, DispatchesByType) {
    const std::tuple<std::string, Bytes, int, Bytes, int, Results> rows[] = {
        {"write", framed(0, {9, 1}), complete, {9}, 1, {ackSent, idle}},
        {"cut short", framed(0, {9, 2, 100}), partial, {9, 100}, 2, {ackSent, idle}},
        {"push A", framed(1, {9, 3}), complete, {9}, 3, {idle}},
        {"push B", framed(3, {9, 4}), complete, {9}, 4, {idle}},
        {"request", framed(4, {9}), partial, {9}, 4, {respSent, idle}},
        {"request of what has no width", framed(4, {255}), partial, {255}, 4, {respMore, respSent, idle}},
        {"ack that nobody waits for", framed(2, {9}), good, {}, 4, {idle}},
        {"response that nobody waits for", framed(5, {9, 5}), good, {}, 4, {idle}},
        {"type 15", framed(15, {9, 6}), good, {}, 4, {idle}},
        {"bad CRC", {0x13, 9, 7, 0}, badCrc, {}, 4, {idle}},
        {"length 0", {0, 9, 7, 0}, empty, {}, 4, {idle}}};
    for (const auto& [name, frame, result, aids, valueOf9, sends] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(deliver(frame), result);
        EXPECT_EQ(received, aids);
        EXPECT_EQ(stored(9), valueOf9);
        EXPECT_EQ(transmitAll(), sends);
    }
    EXPECT_TRUE(posted.empty());
}

TEST_F(EngineTest, ServesInOrder) {
    ASSERT_TRUE(x2comRequestRead(Bytes{2}));
    ASSERT_TRUE(x2comRequestWrite(Bytes{185, 186, 187}));
    deliver(framed(4, {200, 201, 202}));
    deliver(framed(0, {5, 1}));
    EXPECT_EQ(transmitAll(2), (Results{ackSent, respMore}));
    deliver(framed(0, {6, 1}));
    deliver(framed(4, {9}));  // takes the place of what the response still had to tell
    EXPECT_EQ(transmitAll(4), (Results{ackSent, respSent, respSent, writeMore}));
    EXPECT_EQ(transmitAll(), (Results{requestSent, idle})) << "the write waits for its ack";
    x2comAckTimedOut();
    x2comRespTimedOut();
    ASSERT_TRUE(x2comRequestRead(Bytes{3}));
    EXPECT_EQ(transmitAll(), (Results{writeSent, requestSent, idle}));
    Results types;
    for (const auto& frame : sink.sent)
        types.push_back(x2comFrameType(frame.data()));
    EXPECT_EQ(types, (Results{2, 5, 2, 5, 5, 0, 4, 0, 4}));
}

/// While a frame leaves, the loop may turn, and the module may write again.
TEST_F(EngineTest, AnAckOwedWhileAnotherLeavesIsSentToo) {
    struct Turning final : x2comSink {
        void sendBytes(std::span<const std::uint8_t> frame) override {
            if (std::exchange(acks, acks + 1) == 0) deliver(framed(0, {6, 1}));
            last.assign(frame.begin(), frame.end());
        }
        [[nodiscard]] bool canSend() override { return true; }

        int acks = 0;
        Bytes last;
    } turning;
    x2comSetSink(&turning);
    deliver(framed(0, {5, 1}));
    EXPECT_EQ(transmitAll(), (Results{ackSent, ackSent, idle}));
    EXPECT_EQ(turning.last, framed(2, {6}));
}

struct Channel {
    std::string name;
    bool (*request)(std::span<const std::uint8_t>);
    void (*timedOut)();
    int frameType, sent, done;
    std::string_view start, stop;
};

const Channel channels[] = {{"Write", x2comRequestWrite, x2comAckTimedOut, 0, writeSent, x2comRxAckDone,
                             torv::x2comStartAckTimerNotification, torv::x2comStopAckTimerNotification},
                            {"Read", x2comRequestRead, x2comRespTimedOut, 4, requestSent, x2comRxRespDone,
                             torv::x2comStartRespTimerNotification, torv::x2comStopRespTimerNotification}};

/// Steps with their AIDs: a request that is taken or refused; a turn that sends the last frame, sends one of
/// several or rests; an answer that is ignored, parsed, settles a frame or ends the exchange; the timer.
/// Only writes go out in several frames: a list of AIDs alone always fits.
const char* const scripts[] = {
    "ignore 5, rest",
    "take 5, refuse 6, ignore 5, send 5",
    "take 5, send 5, rest, refuse 6, end 5, ignore 5, take 6, send 6",
    "take 5, send 5, end 9, take 5, send 5, end",
    "take 5, send 5, timer, rest, ignore 5, take 6",
    "take 185 186 187, several 185 186, refuse 5, parse 186, parse 187, rest, settle 185, refuse 5, "
    "ignore 185, send 187, refuse 5, end, rest",
    "take 185 186 187, several 185 186, settle, send 187",  // an empty second list empties the first
    "take 185 186 187 188 189, several 185 186, timer, ignore 185 186, several 187 188, settle 187 188, "
    "send 189, timer, rest, take 5",
    "take 255 5, several 5, settle 5, send, end 9, rest",  // a residue that does not shrink is the last
};

class ChannelTest : public EngineTest,
                    public testing::WithParamInterface<std::tuple<Channel, const char*>> {};

TEST_P(ChannelTest, GoesThroughItsStates) {
    const auto& [channel, script] = GetParam();
    const bool writes = channel.frameType == 0;
    if (!writes && std::string_view{script}.find("several") != std::string_view::npos) return;
    enum Event { request, turn, answer, timeout };
    struct Expected {
        Event event;
        int result;
        std::string_view posted{};
    };
    const std::map<std::string, Expected> steps{{"take", {request, 1}},
                                                {"refuse", {request, 0}},
                                                {"send", {turn, channel.sent, channel.start}},
                                                {"several", {turn, channel.sent + 1, channel.start}},
                                                {"rest", {turn, idle}},
                                                {"ignore", {answer, good}},
                                                {"parse", {answer, partial}},
                                                {"settle", {answer, partial, channel.stop}},
                                                {"end", {answer, channel.done, channel.stop}},
                                                {"timer", {timeout, 0}}};
    std::istringstream lines{script};
    for (std::string line, step; std::getline(lines, line, ',');) {
        SCOPED_TRACE(line + " in: " + script);
        std::istringstream words{line};
        words >> step;
        Bytes aids;
        for (int aid = 0; words >> aid;)
            aids.push_back(static_cast<std::uint8_t>(aid));
        const auto& [event, result, notification] = steps.at(step);
        posted.clear();
        sink.sent.clear();
        int came = 0;
        if (event == request) came = channel.request(aids) ? 1 : 0;
        if (event == turn) came = x2comTransmit();
        if (event == answer) came = deliver(writes ? framed(2, aids) : framed(5, items(aids, 7)));
        if (event == timeout) channel.timedOut();
        EXPECT_EQ(came, result);
        EXPECT_EQ(posted, notification.empty() ? Names{} : Names{notification});
        const auto sends = event == turn && result != idle;
        EXPECT_EQ(sink.sent,
                  sends ? Frames{framed(channel.frameType, writes ? items(aids, 0) : aids)} : Frames{});
    }
}

INSTANTIATE_TEST_SUITE_P(Channels, ChannelTest,
                         testing::Combine(testing::ValuesIn(channels), testing::ValuesIn(scripts)),
                         [](const auto& row) {
                             return std::get<Channel>(row.param).name + std::to_string(row.index);
                         });

}  // namespace
