// A session's life in virtual time: every row of what can go wrong between handset and module.
#include "Session.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using namespace session_test;
using fakes::Bytes;
using fakes::frame;

TEST_F(SessionTest, HostFollowsTheAddressOfTheInterface) {
    struct Row {
        const char* name;
        std::optional<std::vector<NetworkInterfaces::Address>> addresses;
        Endpoint endpoint;
    };
    const std::vector<Row> rows{
        {"self-assigned", {{{"en0", "169.254.7.7"}}}, {"169.254.1.1", 2000}},
        {"given", {{{"en0", "10.0.0.2"}}}, {"1.2.3.4", 2000}},
        {"the last one wins",
         {{{"en0", "10.0.0.2"}, {"lo", "169.1.1.1"}, {"en0", "169.254.1.9"}}},
         {"169.254.1.1", 2000}},
        {"another name", {{{"en01", "169.254.7.7"}}}, {"1.2.3.4", 2000}},
        {"no list", std::nullopt, {"1.2.3.4", 2000}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        platform.network.list = row.addresses;
        ZephrelaneDriver driver;
        driver.openSockets();
        EXPECT_EQ(platform.stream().endpoint, row.endpoint);
    }
    ZephrelaneDriver fixed{{.interface = "en0", .module = endpointFromText("localhost:4000")}};
    fixed.openSockets();
    EXPECT_EQ(platform.stream().endpoint, (Endpoint{"127.0.0.1", 4000}));
    for (const auto* bad :
         {"", "1.2.3.4", "1.2.3:1", "1.2.3.4:0", "1.2.3.4:65536", "1.2.3.256:1", "host:1", "1.2.3.4:1x"}) {
        EXPECT_FALSE(endpointFromText(bad)) << bad;
    }
}

TEST_F(SessionTest, TheThirdChunkBringsTheSessionUp) {
    const auto sensor = reader("10");
    start();
    EXPECT_EQ(driver().counter(), 6);
    chunk(push);
    EXPECT_FALSE(driver().firstAVSeen());
    chunk(otherPush);
    EXPECT_TRUE(driver().firstAVSeen());
    EXPECT_EQ(listener->established, 0);
    ASSERT_EQ(sensor->reads.size(), 1U);
    EXPECT_EQ(sensor->reads[0].second, (Bytes{0x2A, 0, 0, 0}));
    chunk(ignored);
    EXPECT_EQ(listener->established, 1);
    platform.loop.runFor(20s);
    EXPECT_EQ(platform.opened.size(), 1U);  // the chain has ended
}

TEST_F(SessionTest, NothingButWholeAVsBringsItUp) {
    const std::vector<std::pair<const char*, Bytes>> rows{
        {"response nobody waits for", frame({0x53, 9, 1})},
        {"reserved type", ignored},
        {"ack", ackOf5},
        {"cut item", frame({0x13, 100, 1})},
        {"bad CRC", {0x13, 10, 1, 0}},
        {"empty", {0}},
        {"a read of nothing", {}},
    };
    start();
    for (const auto& [name, bytes] : rows) {
        for (int i = 0; i < 4; ++i)
            chunk(bytes);
        EXPECT_FALSE(driver().firstAVSeen()) << name;
    }
    EXPECT_EQ(listener->established, 0);
}

TEST_F(SessionTest, ASilentModuleFailsFromTheSeventhReconnectOn) {
    start();
    platform.loop.runFor(31s);
    EXPECT_EQ(listener->failedAt, (std::vector<std::int64_t>{21000, 24000, 27000, 30000}));
    EXPECT_EQ(listener->established, 0);
    EXPECT_EQ(platform.opened.size(), 11U);
    EXPECT_TRUE(std::all_of(platform.opened.begin(), platform.opened.end() - 1,
                            [](const auto& s) { return s->closed; }));

    for (int i = 0; i < 3; ++i)
        chunk(push);  // comes up late; the credit stays spent
    EXPECT_EQ(listener->established, 1);
    platform.stream().lose();
    platform.loop.runWork();
    EXPECT_EQ(listener->failedAt.back(), 31000);
}

TEST_F(SessionTest, AStreamThatCannotBeOpenedIsToldAtOnce) {
    platform.streamsOpen = false;
    start();
    EXPECT_EQ(listener->failedAt, (std::vector<std::int64_t>{0}));
    platform.loop.runFor(6s);
    EXPECT_EQ(listener->failedAt, (std::vector<std::int64_t>{0, 3000, 6000}));
}

TEST_F(SessionTest, LossWhileUpReconnectsAtOnceAndTellsNobody) {
    connect();
    for (const auto event : {ByteStream::Event::error, ByteStream::Event::end}) {
        const auto before = platform.opened.size();
        platform.stream().lose(event);
        platform.loop.runWork();
        EXPECT_FALSE(driver().connected());
        EXPECT_FALSE(driver().firstAVSeen());
        EXPECT_EQ(platform.opened.size(), before + 1);
        // The frame held from before is decoded with the new connection's first chunk: two are enough.
        chunk(push);
        EXPECT_FALSE(driver().connected());
        chunk(push);
        EXPECT_TRUE(driver().connected());
    }
    EXPECT_EQ(listener->established, 3);
    EXPECT_TRUE(listener->failedAt.empty());
}

TEST_F(SessionTest, LossBeforeUpIsLeftToTheChain) {
    start();
    chunk(push);
    chunk(push);
    platform.stream().lose();
    platform.loop.runWork();
    EXPECT_EQ(platform.opened.size(), 1U);
    platform.loop.runFor(3s);
    EXPECT_EQ(platform.opened.size(), 2U);
    EXPECT_TRUE(driver().firstAVSeen());  // survives a reconnect of the chain
    chunk(ignored);
    EXPECT_TRUE(driver().connected());
}

TEST_F(SessionTest, WritesAreAcknowledgedOrGivenUpAfterTwentyOneAttempts) {
    connect();
    EXPECT_FALSE(feeder->setValueForAID(Bytes{1}, 5));
    EXPECT_EQ(count(frame({0x03, 5, 1})), 21);
    EXPECT_GE(platform.loop.time(), 2100ms);
    const auto received = feeder->valueForAID(5).bytes()[0];

    answerEverything();
    const auto sentBefore = platform.stream().sent.size();
    EXPECT_TRUE(feeder->setValueForAID(Bytes{3}, 5));
    EXPECT_EQ(platform.stream().sent.size(), sentBefore + 1);
    EXPECT_EQ(platform.stream().sent.back(), frame({0x03, 5, 3}));
    EXPECT_EQ(feeder->valueForAID(5).bytes()[0], received);  // until the module sends it back
    EXPECT_TRUE(feeder->setValueForAID(Bytes{4, 1, 2, 3}, 230));
    EXPECT_EQ(platform.stream().sent.back(), frame({0x06, 230, 4, 1, 2, 3}));
    EXPECT_TRUE(feeder->setValueForAID(Bytes{0, 9, 9}, 230));  // no length: the old slot goes out
    EXPECT_EQ(platform.stream().sent.back(), frame({0x06, 230, 4, 1, 2, 3}));
    for (const AID bad : {AID{-1}, AID{255}, AID{256}, AID{1} << 40}) {
        EXPECT_FALSE(feeder->setValueForAID(Bytes{1}, bad));
        EXPECT_FALSE(feeder->requestValueForAID(bad));
    }
    for (const AID edge : {0, 254}) {
        EXPECT_TRUE(feeder->setValueForAID(Bytes{2, 1}, edge)) << edge;
        EXPECT_TRUE(feeder->requestValueForAID(edge)) << edge;
    }
}

TEST_F(SessionTest, OnlyTheLastEntryOfAMessageIsWritten) {
    connect();
    answerEverything();
    EXPECT_TRUE(driver().writeAV({{"5", AV::forAID(5, Bytes{1})}, {"6", AV::forAID(6, Bytes{2})}}));
    EXPECT_EQ(platform.stream().sent, (std::vector<Bytes>{frame({0x03, 6, 2})}));
    EXPECT_FALSE(driver().writeAV({}));
}

TEST_F(SessionTest, RequestsAreOneAttempt) {
    connect();
    const auto begin = platform.loop.time();
    EXPECT_FALSE(feeder->requestValueForAID(12));
    EXPECT_EQ(platform.loop.time() - begin, 100ms);
    EXPECT_EQ(platform.stream().sent, (std::vector<Bytes>{frame({0x42, 12})}));
    answerEverything();
    EXPECT_TRUE(feeder->requestValueForAID(12));
    EXPECT_EQ(feeder->valueForAID(12).bytes()[0], 7);
}

TEST_F(SessionTest, BeforeASessionNothingReachesTheWire) {
    start();
    EXPECT_FALSE(feeder->setValueForAID(Bytes{1}, 5));
    EXPECT_TRUE(std::all_of(platform.opened.begin(), platform.opened.end(),
                            [](const auto& s) { return s->sent.empty(); }));
}

TEST_F(SessionTest, AStreamThatTakesNothingIsWaitedForUntilTheLoopGivesUp) {
    connect();
    answerEverything();
    platform.stream().accepts = false;
    platform.loop.scheduleTimer(1500ms, false, [&](Timer&) { platform.stream().accepts = true; });
    EXPECT_TRUE(feeder->setValueForAID(Bytes{1}, 5));
    EXPECT_GE(platform.loop.time(), 1500ms);

    platform.stream().accepts = false;
    bool nested = true;
    platform.loop.performOnMainThread([&] { nested = feeder->setValueForAID(Bytes{2}, 6); });
    platform.loop.scheduleTimer(10s, false, [&](Timer&) { platform.loop.quit(); });
    EXPECT_FALSE(feeder->setValueForAID(Bytes{1}, 5));
    EXPECT_FALSE(nested);  // refused while the other waited
}

TEST_F(SessionTest, AFailedWriteOfTheStreamIsTriedAgain) {
    connect();
    answerEverything();
    platform.stream().failingWrites = 2;
    EXPECT_TRUE(feeder->setValueForAID(Bytes{1}, 5));
    EXPECT_EQ(count(frame({0x03, 5, 1})), 1);
    platform.stream().failingWrites = 1000;
    platform.loop.quit();
    EXPECT_FALSE(feeder->setValueForAID(Bytes{2}, 5));
    EXPECT_GT(platform.stream().failingWrites, 990);
}

TEST_F(SessionTest, AFrameThatCanNotLeaveIsGivenUpWithTheLink) {
    connect();
    const auto broken = platform.opened.back();
    broken->failingWrites = 1000;
    platform.loop.scheduleTimer(50ms, false, [&](Timer&) { broken->lose(); });
    const auto begin = platform.loop.time();
    EXPECT_FALSE(driver().writeValueForAID(AV::forAID(5, Bytes{1}), 5));
    EXPECT_EQ(platform.loop.time() - begin, 150ms);  // the time of an answer, from the loss
    EXPECT_GT(broken->failingWrites, 900);
    EXPECT_NE(platform.opened.back(), broken);
    EXPECT_TRUE(platform.stream().sent.empty());
}

TEST_F(SessionTest, ARespTimerThatHasLostItsGuardEndsTheNextRequestEarly) {
    connect();
    auto& center = platform.notificationCenter();
    for (const auto name :
         {x2comStartRespTimerNotification, x2comStartAckTimerNotification, x2comStopAckTimerNotification})
        center.postNotificationName(std::string{name});
    platform.loop.runFor(60ms);
    const auto begin = platform.loop.time();
    EXPECT_FALSE(feeder->requestValueForAID(12));
    EXPECT_EQ(platform.loop.time() - begin, 40ms);
}

TEST_F(SessionTest, HeartbeatSpeaksOnlyIntoSilence) {
    connect();
    for (int i = 0; i < 10; ++i) {
        platform.loop.runFor(500ms);
        chunk(push);
    }
    EXPECT_TRUE(platform.stream().sent.empty());
    platform.loop.runFor(599ms);
    EXPECT_TRUE(platform.stream().sent.empty());
    platform.loop.runFor(1ms + 3 * 1100ms);  // an unanswered request takes 0.1 s, then 1.0 s to the next
    EXPECT_EQ(platform.stream().sent, std::vector<Bytes>(4, frame({0x42, 9})));
    platform.loop.runFor(60s);
    EXPECT_TRUE(driver().connected());  // silence never ends a session
}

TEST_F(SessionTest, AWriteOfTheModuleIsAnsweredAtTheNextExchange) {
    connect();
    chunk(frame({0x03, 20, 5}));
    chunk(push);
    EXPECT_EQ(feeder->valueForAID(20).bytes()[0], 5);
    EXPECT_TRUE(platform.stream().sent.empty());
    answerEverything();
    static_cast<void>(feeder->requestValueForAID(9));
    ASSERT_GE(platform.stream().sent.size(), 2U);
    EXPECT_EQ(platform.stream().sent[0], frame({0x22, 20}));
    EXPECT_EQ(platform.stream().sent[1], frame({0x42, 9}));
}

TEST_F(SessionTest, AnExchangeInsideAnotherEndsBoth) {
    connect();
    answerEverything();
    bool inner = false;
    platform.loop.performOnMainThread([&] { inner = feeder->setValueForAID(Bytes{2}, 6); });
    EXPECT_TRUE(feeder->setValueForAID(Bytes{1}, 5));
    EXPECT_TRUE(inner);
}

}  // namespace
