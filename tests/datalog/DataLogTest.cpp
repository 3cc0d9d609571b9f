#include <gtest/gtest.h>

#include "datalog/DataLog.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

TEST(DataLog, TheRingForgetsTheOldest) {
    DataLog log;
    const DataLog::Clock::time_point now{};
    log.record(8, 6, now + 1500ms);
    EXPECT_EQ(log.sample(8, 0).time, now + 1500ms);
    for (int i = 0; i < 10000; ++i)
        log.record(8, static_cast<float>(i), now);
    EXPECT_EQ(log.sampleCount(8), 10000U);
    EXPECT_EQ(log.sample(8, 0).value, 0);
    EXPECT_EQ(log.sample(8, 9999).value, 9999);
}

TEST(DataLog, TheGateFollowsWhatItFindsBeforeEachSample) {
    DataLog log;
    const DataLog::Clock::time_point now{};
    const auto record = [&](AID aid, float value) { log.record(aid, value, now); };
    record(78, 500.9F);
    record(8, 7);
    EXPECT_FALSE(log.minimum(8));
    record(78, 600);  // opens it for what comes next, and has no minimum of its own yet
    EXPECT_FALSE(log.minimum(78));
    record(78, 400);  // is both, for it found the gate open
    EXPECT_EQ(log.minimum(78), 400);
    EXPECT_EQ(log.maximum(78), 400);  // the latest: there was no minimum as of then
    record(8, 3);                     // the maximum has fallen, and the gate is closed again
    EXPECT_FALSE(log.minimum(8));
    EXPECT_EQ(log.maximum(8), 3);
    record(78, 900);
    record(8, 5);
    EXPECT_EQ(log.minimum(8), 5);
    EXPECT_EQ(log.maximum(8), 5);
    record(8, 2);
    EXPECT_EQ(log.minimum(8), 2);
    EXPECT_EQ(log.maximum(8), 5);
    log = {};
    record(8, 1);
    EXPECT_FALSE(log.minimum(8));
}

}  // namespace
