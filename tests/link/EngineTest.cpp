#include "link/x2comEngine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/FakePlatform.h"
#include "link/AVStore.h"

namespace {

using fakes::Bytes;
using Results = std::vector<int>;

Bytes framed(int type, const Bytes& payload) {
    Bytes frame{static_cast<std::uint8_t>(type << 4 | static_cast<int>(payload.size() + 1))};
    frame.insert(frame.end(), payload.begin(), payload.end());
    frame.push_back(x2comCrc8(frame.data(), static_cast<std::uint8_t>(frame.size())));
    return frame;
}

void push(const Bytes& chunk) {
    x2comPushChunk(chunk.data(), static_cast<std::uint8_t>(chunk.size()));
}

int receive() {
    x2comAIDList list;
    return x2comReceive(list);
}

const Bytes filler = framed(15, {});

/// The first chunk of the process, before any test: a buffer that nothing has come into is looked at, and
/// the chunk waits for one that never comes.
const Results firstEver = [] {
    push(framed(x2comFramePushA, {9, 1}));
    return Results{receive(), receive(), *x2comReceiveSlot(9)};
}();

struct Sink final : x2comSink {
    void sendBytes(std::span<const std::uint8_t> frame) override {
        sent.emplace_back(frame.begin(), frame.end());
    }
    [[nodiscard]] bool canSend() override { return open; }

    std::vector<Bytes> sent;
    bool open = true;
};

class EngineTest : public testing::Test {
protected:
    EngineTest() {
        x2comSetSink(&sink);
        do {  // ends what an earlier test has left under way
            x2comAckTimedOut();
            x2comRespTimedOut();
        } while (x2comTransmit() != x2comTxIdle);
        while (receive() != x2comRxIdle) {
        }
        x2comReset();
        deliver(filler);
        torv::receiveStore() = {};
        torv::sendStore() = {};
        sink.sent.clear();
        for (const auto name : {x2comStartAckTimerNotification, x2comStopAckTimerNotification,
                                x2comStartRespTimerNotification, x2comStopRespTimerNotification}) {
            observations.push_back(platform.notificationCenter().addObserver(name, [this, name] {
                posted.emplace_back(name);
                sentWhenPosted = sink.sent.size();
            }));
        }
    }
    ~EngineTest() override { x2comSetSink(nullptr); }

    /// The frame with one behind it, so that it takes effect.
    static int deliver(const Bytes& frame) {
        push(frame);
        push(filler);
        receive();
        x2comAIDList list;
        const auto result = x2comReceive(list);
        received.assign(list.aids.begin(), list.aids.begin() + list.count);
        return result;
    }
    static Results transmitAll(std::size_t most = 10) {
        Results results;
        while (results.size() < most && (results.empty() || results.back() != x2comTxIdle))
            results.push_back(x2comTransmit());
        return results;
    }
    static std::uint8_t stored(std::uint8_t aid) { return *x2comReceiveSlot(aid); }

    fakes::FakePlatform platform;
    Sink sink;
    std::vector<std::string> posted;
    std::size_t sentWhenPosted = 0;
    std::vector<torv::NotificationCenter::Observation> observations;
    static inline Bytes received;
};

TEST_F(EngineTest, StartsWithEmptyBuffers) {
    EXPECT_EQ(firstEver, (Results{x2comFrameEmpty, x2comRxIdle, 0}));
}

TEST_F(EngineTest, DecodesOneFrameBehind) {
    push(framed(x2comFramePushA, {9, 1}));
    EXPECT_EQ(receive(), x2comFrameGood);
    EXPECT_EQ(receive(), x2comRxIdle);
    EXPECT_EQ(stored(9), 0);
    push(framed(x2comFramePushB, {9, 2}));
    EXPECT_EQ(receive(), x2comFrameComplete);
    EXPECT_EQ(stored(9), 1);
    push(filler);
    EXPECT_EQ(receive(), x2comFrameComplete);
    EXPECT_EQ(stored(9), 2);
}

TEST_F(EngineTest, TakesAChunkForOneFrame) {
    const auto one = framed(x2comFramePushA, {100, 1, 2});
    auto two = one;
    two.insert(two.end(), {0x13, 9, 7, x2comCrc8(Bytes{0x13, 9, 7}.data(), 3)});
    EXPECT_EQ(deliver(two), x2comFrameComplete);
    EXPECT_EQ(received, Bytes{100});
    EXPECT_EQ(stored(9), 0) << "the second frame of a chunk is lost";

    const auto longest = framed(x2comFramePushA, {224, 13, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
    EXPECT_EQ(deliver({longest.begin() + 8, longest.end()}), x2comFrameBadCrc);
    EXPECT_EQ(deliver({longest.begin(), longest.begin() + 8}), x2comFrameBadCrc);
    auto tooLong = longest;
    tooLong.resize(200, 0xFF);
    EXPECT_EQ(deliver(tooLong), x2comFrameComplete);
}

TEST_F(EngineTest, StaleBytesStayBehindAShorterChunk) {
    const auto frame = framed(x2comFramePushA, {100, 1, 2});
    EXPECT_EQ(deliver(frame), x2comFrameComplete);
    EXPECT_EQ(deliver({frame.begin(), frame.begin() + 2}), x2comFrameComplete);
}

TEST_F(EngineTest, DispatchesByType) {
    const struct {
        std::string name;
        Bytes frame;
        int result;
        Bytes aids;
        int valueOf9;
        Results sends;
    } rows[] = {
        {"write", framed(0, {9, 1}), x2comFrameComplete, {9}, 1, {x2comTxAckSent, x2comTxIdle}},
        {"cut short", framed(0, {9, 2, 100}), x2comFramePartial, {9, 100}, 2, {x2comTxAckSent, x2comTxIdle}},
        {"write of nothing", framed(0, {}), x2comFramePartial, {}, 2, {x2comTxIdle}},
        {"push A", framed(1, {9, 3}), x2comFrameComplete, {9}, 3, {x2comTxIdle}},
        {"ack that nothing awaits", framed(2, {9}), x2comFrameGood, {}, 3, {x2comTxIdle}},
        {"push B", framed(3, {9, 4}), x2comFrameComplete, {9}, 4, {x2comTxIdle}},
        {"request", framed(4, {9}), x2comFramePartial, {9}, 4, {x2comTxRespSent, x2comTxIdle}},
        {"request of nothing", framed(4, {}), x2comFramePartial, {}, 4, {x2comTxIdle}},
        {"response that nothing awaits", framed(5, {9, 5}), x2comFrameGood, {}, 4, {x2comTxIdle}},
        {"type 6", framed(6, {9, 6}), x2comFrameGood, {}, 4, {x2comTxIdle}},
        {"type 15", framed(15, {9, 6}), x2comFrameGood, {}, 4, {x2comTxIdle}},
        {"bad CRC", {0x13, 9, 7, 0}, x2comFrameBadCrc, {}, 4, {x2comTxIdle}},
        {"length 0", {0, 9, 7, 0}, x2comFrameEmpty, {}, 4, {x2comTxIdle}},
        {"length 0 of another type", {0x10, 9, 7, 0}, x2comFrameBadCrc, {}, 4, {x2comTxIdle}},
    };
    for (const auto& [name, frame, result, aids, valueOf9, sends] : rows) {
        SCOPED_TRACE(name);
        EXPECT_EQ(deliver(frame), result);
        EXPECT_EQ(received, aids);
        EXPECT_EQ(stored(9), valueOf9);
        EXPECT_EQ(transmitAll(), sends);
    }
    EXPECT_EQ(posted, std::vector<std::string>{});
}

TEST_F(EngineTest, OnlyTheLatestNoteIsAnswered) {
    *x2comSendSlot(7) = 0x55;
    deliver(framed(0, {5, 1}));
    deliver(framed(0, {6, 1, 7, 2}));
    deliver(framed(4, {5}));
    deliver(framed(4, {7, 8}));
    EXPECT_EQ(transmitAll(), (Results{x2comTxAckSent, x2comTxRespSent, x2comTxIdle}));
    EXPECT_EQ(sink.sent, (std::vector{framed(2, {6, 7}), framed(5, {7, 0x55, 8, 0})}));
}

TEST_F(EngineTest, GivesUpAResidueThatDoesNotShrink) {
    const struct {
        Bytes requested;
        Results results;
        std::vector<Bytes> payloads;
    } rows[] = {
        {{255, 5}, {x2comTxRespMore, x2comTxRespSent, x2comTxIdle}, {{5, 0}, {}}},
        {{255}, {x2comTxRespMore, x2comTxRespSent, x2comTxIdle}, {{}, {}}},
        {{200, 201, 255, 202},
         {x2comTxRespMore, x2comTxRespMore, x2comTxRespSent, x2comTxIdle},
         {{200, 0, 0, 0, 0, 201, 0, 0, 0, 0}, {202, 0, 0, 0, 0}, {}}},
    };
    for (const auto& [requested, results, payloads] : rows) {
        sink.sent.clear();
        deliver(framed(4, requested));
        EXPECT_EQ(transmitAll(), results);
        std::vector<Bytes> frames;
        for (const auto& payload : payloads)
            frames.push_back(framed(5, payload));
        EXPECT_EQ(sink.sent, frames);
    }
}

TEST_F(EngineTest, ServesInOrder) {
    ASSERT_TRUE(x2comRequestRead(Bytes{2}));
    ASSERT_TRUE(x2comRequestWrite(Bytes{185, 186, 187}));
    deliver(framed(4, {200, 201, 202}));
    deliver(framed(0, {5, 1}));
    sink.open = false;
    EXPECT_EQ(x2comTransmit(), x2comTxBlocked);
    EXPECT_TRUE(sink.sent.empty());
    sink.open = true;
    EXPECT_EQ(transmitAll(2), (Results{x2comTxAckSent, x2comTxRespMore}));
    deliver(framed(0, {6, 1}));
    deliver(framed(4, {9}));  // takes the place of what the response still had to tell
    EXPECT_EQ(transmitAll(3), (Results{x2comTxAckSent, x2comTxRespSent, x2comTxRespSent}));
    EXPECT_EQ(x2comTransmit(), x2comTxWriteMore);
    EXPECT_EQ(x2comTransmit(), x2comTxRequestSent) << "the write waits for its ack";
    EXPECT_EQ(x2comTransmit(), x2comTxIdle);
    x2comAckTimedOut();
    x2comRespTimedOut();
    ASSERT_TRUE(x2comRequestRead(Bytes{3}));
    EXPECT_EQ(transmitAll(), (Results{x2comTxWriteSent, x2comTxRequestSent, x2comTxIdle}));
    std::vector<int> types;
    for (const auto& frame : sink.sent)
        types.push_back(x2comFrameType(frame.data()));
    EXPECT_EQ(types, (std::vector<int>{2, 5, 2, 5, 5, 0, 4, 0, 4}));
    x2comSetSink(nullptr);
    EXPECT_EQ(x2comTransmit(), x2comTxBlocked);
}

TEST_F(EngineTest, ResetKeepsAWriteThatHasNotBegun) {
    deliver(framed(0, {5, 1}));
    deliver(framed(4, {255, 5}));
    EXPECT_EQ(transmitAll(2), (Results{x2comTxAckSent, x2comTxRespMore}));
    deliver(framed(0, {5, 1}));
    deliver(framed(4, {5}));
    ASSERT_TRUE(x2comRequestWrite(Bytes{9}));
    ASSERT_TRUE(x2comRequestRead(Bytes{9}));
    x2comReset();
    EXPECT_FALSE(x2comRequestWrite(Bytes{8}));
    EXPECT_EQ(transmitAll(), (Results{x2comTxWriteSent, x2comTxIdle}));
    EXPECT_EQ(sink.sent.back(), framed(0, {9, 0}));
    EXPECT_TRUE(x2comRequestRead(Bytes{9}));
}

TEST_F(EngineTest, ResetTakesAChunkIntoTheCurrentBuffer) {
    push(framed(x2comFramePushA, {9, 1}));
    x2comReset();
    push(filler);
    EXPECT_EQ(receive(), x2comFrameComplete);
    EXPECT_EQ(stored(9), 1);
}

TEST_F(EngineTest, ARequestForNothingKeepsTheOldList) {
    ASSERT_TRUE(x2comRequestWrite(Bytes{185, 186, 187}));
    EXPECT_EQ(x2comTransmit(), x2comTxWriteMore);
    x2comReset();
    ASSERT_TRUE(x2comRequestWrite({}));
    EXPECT_EQ(x2comTransmit(), x2comTxWriteSent);
    EXPECT_EQ(sink.sent.back(), framed(0, {187, 0, 0, 0, 0}));
}

TEST_F(EngineTest, TakesFourteenAidsAtMost) {
    const Bytes aids(14, 220);
    ASSERT_TRUE(x2comRequestWrite(Bytes(20, 220)));
    ASSERT_TRUE(x2comRequestRead(Bytes(255, 220)));
    EXPECT_EQ(transmitAll(), (Results{x2comTxWriteSent, x2comTxRequestSent, x2comTxIdle}));
    EXPECT_EQ(sink.sent, (std::vector{framed(0, aids), framed(4, aids)}));
}

/// What a step of an exchange comes to; the last column is the timer notification that goes with it.
enum class Outcome { accepted, refused, idle, sent, more, ignored, parsed, settled, done, none };
enum class Event { request, transmit, answer, timeout };

struct Step {
    Event event;
    Bytes aids;  ///< asked for, in the frame sent, or in the answer
    Outcome outcome;
};

struct Script {
    std::string name;
    std::vector<Step> steps;
    bool needsResidue = false;  ///< a list of AIDs never leaves any, so only writes go this way
};

struct Channel {
    std::string name;
    bool (*request)(std::span<const std::uint8_t>);
    void (*timedOut)();
    std::uint32_t frameType;
    x2comTxResult sent;
    x2comResult done;
    std::string_view start, stop;
};

const Channel channels[] = {
    {"Write", x2comRequestWrite, x2comAckTimedOut, 0, x2comTxWriteSent, x2comRxAckDone,
     x2comStartAckTimerNotification, x2comStopAckTimerNotification},
    {"Read", x2comRequestRead, x2comRespTimedOut, 4, x2comTxRequestSent, x2comRxRespDone,
     x2comStartRespTimerNotification, x2comStopRespTimerNotification},
};

const Script scripts[] = {
    {"IdleIgnoresAnAnswer", {{Event::answer, {5}, Outcome::ignored}, {Event::transmit, {}, Outcome::idle}}},
    {"WantedRefusesAndIgnores",
     {{Event::request, {5}, Outcome::accepted},
      {Event::request, {6}, Outcome::refused},
      {Event::answer, {5}, Outcome::ignored},
      {Event::transmit, {5}, Outcome::sent}}},
    {"LastAnswerEndsTheExchange",
     {{Event::request, {5}, Outcome::accepted},
      {Event::transmit, {5}, Outcome::sent},
      {Event::transmit, {}, Outcome::idle},
      {Event::request, {6}, Outcome::refused},
      {Event::answer, {5}, Outcome::done},
      {Event::answer, {5}, Outcome::ignored},
      {Event::request, {6}, Outcome::accepted},
      {Event::transmit, {6}, Outcome::sent}}},
    {"AnyAnswerEndsTheExchange",
     {{Event::request, {5}, Outcome::accepted},
      {Event::transmit, {5}, Outcome::sent},
      {Event::answer, {9}, Outcome::done},
      {Event::request, {5}, Outcome::accepted},
      {Event::transmit, {5}, Outcome::sent},
      {Event::answer, {}, Outcome::done}}},
    {"TimerEndsTheExchangeAndNothingIsSentAgain",
     {{Event::request, {5}, Outcome::accepted},
      {Event::transmit, {5}, Outcome::sent},
      {Event::timeout, {}, Outcome::none},
      {Event::transmit, {}, Outcome::idle},
      {Event::answer, {5}, Outcome::ignored},
      {Event::request, {6}, Outcome::accepted}}},
    {"LateAnswerEndsTheNextExchange",
     {{Event::request, {5}, Outcome::accepted},
      {Event::transmit, {5}, Outcome::sent},
      {Event::timeout, {}, Outcome::none},
      {Event::request, {6}, Outcome::accepted},
      {Event::transmit, {6}, Outcome::sent},
      {Event::answer, {5}, Outcome::done}}},
    {"AnswersSettleAidByAid",
     {{Event::request, {185, 186, 187}, Outcome::accepted},
      {Event::transmit, {185, 186}, Outcome::more},
      {Event::request, {5}, Outcome::refused},
      {Event::answer, {186}, Outcome::parsed},
      {Event::answer, {187}, Outcome::parsed},
      {Event::transmit, {}, Outcome::idle},
      {Event::answer, {185}, Outcome::settled},
      {Event::request, {5}, Outcome::refused},
      {Event::answer, {185}, Outcome::ignored},
      {Event::transmit, {187}, Outcome::sent},
      {Event::request, {5}, Outcome::refused},
      {Event::answer, {}, Outcome::done},
      {Event::transmit, {}, Outcome::idle}},
     true},
    {"AnEmptyAnswerDoesNotSettle",
     {{Event::request, {185, 186, 187}, Outcome::accepted},
      {Event::transmit, {185, 186}, Outcome::more},
      {Event::answer, {}, Outcome::settled},  // the second list is empty, and that empties the first
      {Event::transmit, {187}, Outcome::sent}},
     true},
    {"TimerGoesOnToTheNextFrame",
     {{Event::request, {185, 186, 187, 188, 189}, Outcome::accepted},
      {Event::transmit, {185, 186}, Outcome::more},
      {Event::timeout, {}, Outcome::none},
      {Event::answer, {185, 186}, Outcome::ignored},
      {Event::transmit, {187, 188}, Outcome::more},
      {Event::answer, {187, 188}, Outcome::settled},
      {Event::transmit, {189}, Outcome::sent},
      {Event::timeout, {}, Outcome::none},
      {Event::transmit, {}, Outcome::idle},
      {Event::request, {5}, Outcome::accepted}},
     true},
    {"AResidueThatDoesNotShrinkIsTheLast",
     {{Event::request, {255, 5}, Outcome::accepted},
      {Event::transmit, {5}, Outcome::more},
      {Event::answer, {5}, Outcome::settled},
      {Event::transmit, {}, Outcome::sent},
      {Event::answer, {9}, Outcome::done},
      {Event::transmit, {}, Outcome::idle}},
     true},
};

class ChannelTest : public EngineTest, public testing::WithParamInterface<std::tuple<Channel, Script>> {
protected:
    const Channel channel = std::get<Channel>(GetParam());

    [[nodiscard]] int take(const Step& step) const {
        switch (step.event) {
            case Event::request:
                return channel.request(step.aids) ? 1 : 0;
            case Event::transmit:
                return x2comTransmit();
            case Event::answer:
                return deliver(answer(step.aids));
            case Event::timeout:
                break;
        }
        channel.timedOut();
        return 0;
    }
    [[nodiscard]] Bytes answer(const Bytes& aids) const {
        if (channel.frameType == x2comFrameWrite) return framed(x2comFrameAck, aids);
        Bytes items;
        for (const auto aid : aids)
            items.insert(items.end(), {aid, 0x77});
        return framed(x2comFrameResponse, items);
    }
    struct Expected {
        int result;
        std::string_view posted;
    };
    [[nodiscard]] Expected expected(const Step& step) const {
        switch (step.outcome) {
            case Outcome::accepted:
                return {1, {}};
            case Outcome::sent:
                return {channel.sent, channel.start};
            case Outcome::more:
                return {channel.sent + 1, channel.start};
            case Outcome::ignored:
                return {x2comFrameGood, {}};
            case Outcome::parsed:
                return {x2comFramePartial, {}};
            case Outcome::settled:
                return {x2comFramePartial, channel.stop};
            case Outcome::done:
                return {channel.done, channel.stop};
            default:
                return {0, {}};
        }
    }
};

TEST_P(ChannelTest, GoesThroughItsStates) {
    const auto& script = std::get<Script>(GetParam());
    if (script.needsResidue && channel.frameType == x2comFrameRequest) return;
    for (std::size_t i = 0; i < script.steps.size(); ++i) {
        SCOPED_TRACE("step " + std::to_string(i + 1));
        const auto& step = script.steps[i];
        const auto [result, notification] = expected(step);
        posted.clear();
        sink.sent.clear();
        EXPECT_EQ(take(step), result);
        EXPECT_EQ(posted,
                  notification.empty() ? std::vector<std::string>{} : std::vector{std::string{notification}});
        const bool sends = step.outcome == Outcome::sent || step.outcome == Outcome::more;
        ASSERT_EQ(sink.sent.size(), sends ? 1U : 0U);
        if (!sends) continue;
        EXPECT_EQ(sentWhenPosted, 1U) << "the timer starts once the frame is out";
        auto frame = sink.sent.front();
        ASSERT_EQ(frame.size(), x2comFrameLength(frame.data()) + 1U);
        frame.resize(x2comFrameSize);
        std::uint32_t type = x2comFrameNoType;
        x2comAIDList list;
        x2comParseFrame(frame.data(), type, list);
        EXPECT_EQ(type, channel.frameType);
        EXPECT_EQ(Bytes(list.aids.begin(), list.aids.begin() + list.count), step.aids);
    }
}

INSTANTIATE_TEST_SUITE_P(Channels, ChannelTest,
                         testing::Combine(testing::ValuesIn(channels), testing::ValuesIn(scripts)),
                         [](const auto& row) {
                             return std::get<Channel>(row.param).name + std::get<Script>(row.param).name;
                         });

TEST_F(EngineTest, AResponseIsStoredWhateverWasAskedFor) {
    ASSERT_TRUE(x2comRequestRead(Bytes{5}));
    x2comTransmit();
    EXPECT_EQ(deliver(framed(5, {9, 7})), x2comRxRespDone);
    EXPECT_EQ(received, Bytes{9});
    EXPECT_EQ(stored(9), 7);
}

}  // namespace
