// The request and the clear in virtual time. Times are milliseconds.
#include "CodesModule.h"
#include "diagnostics/DtcClear.h"
#include "diagnostics/DtcRequest.h"
#include "diagnostics/TroubleCodeReport.h"
#include "platform/NotificationNames.h"

namespace {

using namespace codes_test;

class DtcExchangeTest : public CodesTest {
protected:
    std::shared_ptr<DtcRequest> makeRequest() {
        return std::make_shared<DtcRequest>(
            app->feeder(), [this] { doneAt.push_back(platform.loop.time().count() - start); });
    }
    void run() {
        start = platform.loop.time().count();
        request->begin();
        platform.loop.runFor(30000ms);
    }

    std::int64_t start = 0;
    std::vector<std::int64_t> doneAt;
    std::shared_ptr<DtcRequest> request = makeRequest();
};

TEST_F(DtcExchangeTest, WaitsForBothReportsAndAsksThreeTimes) {
    const Bytes first = report224(7);
    const Bytes second = report225(2);
    struct Row {
        const char* name;
        std::vector<std::pair<int, Bytes>> reports;
        std::size_t requests;
        int done;
    };
    const Row rows[] = {
        {"both", {{20, first}, {30, second}}, 1, 30},
        {"the other way round", {{20, second}, {30, first}}, 1, 30},
        {"the first alone", {{20, first}}, 3, 15000},
        {"the second alone", {{20, second}}, 3, 15000},
        {"none", {}, 3, 15000},
        {"one after each request", {{20, first}, {5300, second}}, 2, 5300},
        {"twice", {{20, first}, {40, first}, {60, second}, {60, second}, {6000, first}}, 1, 60},
        {"too late", {{16000, first}, {16100, second}}, 3, 15000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        askedAt.clear();
        doneAt.clear();
        for (const auto& [time, report] : row.reports)
            feedAfter(std::chrono::milliseconds{time}, report);
        run();
        ASSERT_EQ(doneAt.size(), 1U);
        EXPECT_NEAR(static_cast<double>(doneAt[0]), row.done, 300);
        ASSERT_EQ(askedAt.size(), row.requests);
        for (std::size_t i = 0; i < row.requests; ++i)
            EXPECT_NEAR(static_cast<double>(askedAt[i] - start), 5000.0 * static_cast<double>(i), 300);
    }
}

TEST_F(DtcExchangeTest, OneReportWithinTheWriteOfARetryIsWaitedOnFor) {
    onAsked = [this] {
        if (askedAt.size() == 2) platform.stream().feed(report224(7));
    };
    feedAfter(5800ms, report225(2));
    run();
    ASSERT_EQ(doneAt.size(), 1U);
    EXPECT_NEAR(static_cast<double>(doneAt[0]), 5800, 300);
}

TEST_F(DtcExchangeTest, ReportsForNobodyAndTimersOfTheLastReadAreNothing) {
    platform.notificationCenter().postNotificationName(dtc224Received);
    platform.loop.runFor(100ms);
    feedAfter(20ms, report224(1));
    feedAfter(20ms, report225(0));
    request->begin();
    platform.loop.runFor(1000ms);
    ASSERT_EQ(doneAt.size(), 1U);
    request->begin();
    request->begin();
    platform.loop.runFor(4500ms);  // the first read's timer has come
    EXPECT_EQ(askedAt.size(), 2U);
    EXPECT_EQ(doneAt.size(), 1U);
}

TEST_F(DtcExchangeTest, WhoeverAskedMayGoInEachState) {
    onAsked = [this] { request.reset(); };
    request->begin();  // gone within the write
    onAsked = nullptr;
    platform.loop.runFor(20000ms);
    request = makeRequest();
    request->begin();
    feedAfter(10ms, report224(1));
    feedAfter(10ms, report225(0));
    platform.loop.runFor(5ms);
    request.reset();
    platform.loop.runFor(20000ms);
    EXPECT_TRUE(doneAt.empty());
    EXPECT_EQ(askedAt.size(), 2U);
}

TEST_F(DtcExchangeTest, AReadEndsWhenTheLinkIsLostInAnyState) {
    for (const int lostAfter : {0, 50, 4999, 5050, 9000}) {
        SCOPED_TRACE(lostAfter);
        doneAt.clear();
        if (lostAfter == 0) fall();
        platform.loop.scheduleTimer(std::chrono::milliseconds{lostAfter}, false, [this](Timer&) { fall(); });
        run();
        ASSERT_EQ(doneAt.size(), 1U);
        EXPECT_GE(doneAt[0], 14900);
        EXPECT_LE(doneAt[0], 22500);  // each write in vain takes 2.1 seconds
        connect();
    }
}

TEST_F(DtcExchangeTest, AClearTellsAnOldAnswerFromOneOfItsOwn) {
    struct Row {
        const char* name;
        std::optional<std::uint8_t> answer;
        bool acknowledges;
        bool cleared;
        bool confirmed;
        bool arrived;
    };
    const Row rows[] = {
        {"silent from the first", {}, true, false, false, false},
        {"refuses", 0, true, false, true, true},
        {"clears", 1, true, true, true, true},
        {"silent, a 1 is left over", {}, true, true, false, false},
        {"not taken", 1, false, true, false, true},
        {"refuses after all", 2, true, false, true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        acknowledges = row.acknowledges;
        std::vector<DtcClear::Result> told;
        auto clear = std::make_shared<DtcClear>(app->feeder(),
                                                [&](DtcClear::Result result) { told.push_back(result); });
        if (row.answer) feedAfter(200ms, fakes::frame({0x13, 26, *row.answer}));
        feedAfter(250ms, report224(3));  // a report in the middle of it
        clear->begin();
        clear->begin();
        platform.loop.runFor(4800ms);
        EXPECT_TRUE(told.empty());
        platform.loop.runFor(400ms);
        ASSERT_EQ(told.size(), 1U);
        EXPECT_EQ(told[0].cleared, row.cleared);
        EXPECT_EQ(told[0].confirmed, row.confirmed);
        EXPECT_EQ(told[0].arrived, row.arrived);
        clear->begin();
        clear.reset();
        platform.loop.runFor(10000ms);
        EXPECT_EQ(told.size(), 1U);
    }
    // A 1 that comes before the module takes the request is no answer to it.
    acknowledges = false;
    platform.loop.scheduleTimer(1000ms, false, [this](Timer&) { acknowledges = true; });
    feedAfter(300ms, fakes::frame({0x13, 26, 1}));
    std::optional<DtcClear::Result> early;
    const auto taken =
        std::make_shared<DtcClear>(app->feeder(), [&](DtcClear::Result result) { early = result; });
    taken->begin();
    platform.loop.runFor(5500ms);
    ASSERT_TRUE(early);
    EXPECT_TRUE(early->cleared && early->arrived && !early->confirmed);
    for (const auto lostAfter : {0ms, 3000ms}) {
        std::optional<DtcClear::Result> told;
        const auto clear =
            std::make_shared<DtcClear>(app->feeder(), [&](DtcClear::Result result) { told = result; });
        platform.loop.scheduleTimer(lostAfter, false, [this](Timer&) { fall(); });
        platform.loop.runFor(lostAfter == 0ms ? 10ms : 0ms);
        clear->begin();
        platform.loop.runFor(5500ms);
        ASSERT_TRUE(told);
        EXPECT_FALSE(told->confirmed);
        connect();
    }
    EXPECT_FALSE(DtcClear::engineTurns(*app->feeder()));
    feedAfter(10ms, fakes::frame({0x14, 78, 0x00, 0x03}));
    platform.loop.runFor(500ms);
    EXPECT_TRUE(DtcClear::engineTurns(*app->feeder()));
}

TEST_F(DtcExchangeTest, RowsAreAsReportedAndWhatIsOldIsToldApart) {
    const auto report = [&] {
        return TroubleCodeReport::fromStore(*app->feeder(), request->begun(), {{"P0101", "One"}});
    };
    const auto lines = [](const TroubleCodeReport& r) {
        std::string all;
        for (const auto& row : r.rows)
            all += (row.old ? "old " : "") + row.text() + "; ";
        return all;
    };
    run();
    EXPECT_FALSE(report().answered);
    EXPECT_TRUE(report().rows.empty());
    EXPECT_NE(report().emptyText().find("has not reported"), std::string::npos);
    feedAfter(20ms, report224(0));
    feedAfter(20ms, report225(0));
    run();
    EXPECT_EQ(report().emptyText(), "The module reports no trouble codes.");
    feedAfter(20ms, report224(6));  // the sixth does not come
    run();
    EXPECT_EQ(lines(report()),
              "P0101 - One; P0102 - No Info; P0103 - No Info; P0104 - No Info; P0105 - No "
              "Info; Code not received; ");
    feedAfter(20ms, report225(2));
    run();
    EXPECT_EQ(lines(report()),
              "P0106 - No Info; old P0101 - One; old P0102 - No Info; old P0103 - No Info; "
              "old P0104 - No Info; old P0105 - No Info; ");
    run();
    platform.loop.runFor(3h);  // by a clock that has nothing to do with the one on the wall
    const auto all = report();
    EXPECT_TRUE(all.hasOldRows() && !all.answered && all.rows.size() == 6);
    EXPECT_EQ(all.lastAnswerText().find("Last answer from 20"), 0U);
    EXPECT_LT(wallNow() - all.lastAnswer.value(), 1h);
    const auto document = all.document("Truck", "Monday", std::chrono::system_clock::now());
    EXPECT_NE(document.find("recorded as Monday\n"), std::string::npos);
    EXPECT_LT(document.find("Last answer from"), document.find("P0101 - One"));
    // One that is shorter than it says, over the one before it.
    feedAfter(20ms, pushOf(224, {8, 0, 5, 1, 1, 1, 2, 1}));
    feedAfter(20ms, report225(0));
    run();
    EXPECT_EQ(lines(report()),
              "P0101 - One; P0102 - No Info; Code not received; Code not received; Code not received; ");
    feedAfter(20ms, pushOf(224, {2, 0}));
    feedAfter(20ms, report225(0));
    run();
    EXPECT_FALSE(report().answered);
    EXPECT_TRUE(report().rows.empty());
    feedAfter(20ms, report224(255));
    feedAfter(20ms, report225(6));
    run();
    EXPECT_EQ(report().rows.size(), 255U);
    EXPECT_EQ(report().rows[10].text(), "P01011 - No Info");
    EXPECT_EQ(report().rows[11].text(), "Code not received");
}

}  // namespace
