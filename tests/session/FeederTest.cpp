// Who is fed, and when.
#include "Session.h"

#include <atomic>
#include <thread>

namespace {

using namespace torv;
using namespace std::chrono_literals;
using namespace session_test;
using fakes::Bytes;
using fakes::frame;

class FeederTest : public SessionTest {
protected:
    void message(std::uint8_t aid) {
        Message m{{std::to_string(aid), AV::forAID(aid, Bytes{aid})}};
        feeder->zephrelaneDriverDidReceiveMessage(driver(), m);
    }
};

TEST_F(FeederTest, ReadersAreFedByPriorityAndKey) {
    const auto normal = reader("10");
    const auto marked = reader("10", 1);
    const auto skipped = reader("10", 2);
    const auto falling = reader("10", 1);
    falling->onRead = [&] { falling->current = 0; };
    feeder->addReaderForKey(normal, "10");  // twice under one key
    feeder->addReaderForKey(normal, "11");
    message(10);
    message(11);
    message(12);
    EXPECT_EQ(normal->reads.size(), 2U);
    EXPECT_EQ(marked->reads.size(), 1U);
    EXPECT_EQ(skipped->reads.size(), 0U);
    EXPECT_EQ(falling->reads.size(), 2U);
    std::shared_ptr<Reader> added;
    normal->onRead = [&] { added = reader("10"); };  // the list that is being read stays as it is
    message(10);
    EXPECT_EQ(marked->reads.size(), 2U);
    EXPECT_EQ(added->reads.size(), 0U);
    feeder->removeAllReaders();
    message(10);
    EXPECT_EQ(normal->reads.size(), 3U);
}

TEST_F(FeederTest, TakesItsTimerAlong) {
    feeder->enableTimedFeedMode();
    feeder.reset();
    EXPECT_FALSE(platform.loop.runOnce());  // there is none left
}

/// The reading thread delivers while screens come and go.
TEST_F(FeederTest, ReadersChangeWhileMessagesFlood) {
    struct Counter final : iTorvReader {
        void readAid(std::span<std::uint8_t> bytes, AID) override { sum += bytes[0]; }
        [[nodiscard]] std::int32_t priority() const override { return 0; }
        std::atomic<int> sum = 0;
    };
    const auto first = std::make_shared<Counter>();
    std::atomic<bool> ending = false;
    feeder->addReaderForKey(first, "10");
    std::atomic<int> messages = 0;  // counted without an order that would hide a race
    std::thread flood{[&] {
        for (; !ending; messages.fetch_add(1, std::memory_order_relaxed))
            message(10);
    }};
    while (first->sum == 0)
        std::this_thread::yield();
    for (int screen = 0; screen < 500; ++screen) {
        feeder->removeAllReaders();
        for (const auto* key : {"10", "11", "10"})
            feeder->addReaderForKey(std::make_shared<Counter>(), key);
        if (screen % 50 == 0) feeder->enableTimedFeedMode();
        if (screen % 50 == 25) feeder->disableTimedFeedMode();
        feeder->setFeeding(screen % 7 != 0);
        const int seen = messages.load(std::memory_order_relaxed);
        while (screen % 10 == 0 && messages.load(std::memory_order_relaxed) == seen)
            std::this_thread::yield();
    }
    const auto last = std::make_shared<Counter>();
    feeder->addReaderForKey(last, "10");
    feeder->disableTimedFeedMode();
    feeder->setFeeding(true);
    while (last->sum == 0)
        std::this_thread::yield();
    ending = true;
    flood.join();
    const int before = last->sum;
    message(10);
    EXPECT_EQ(last->sum, before + 10);
    EXPECT_EQ(first.use_count(), 1);
}

TEST_F(FeederTest, FeedModes) {
    const auto sensor = reader("10");
    const auto count = [&] { return std::exchange(sensor->reads, {}).size(); };
    const auto tenMessages = [&] {
        for (int i = 0; i < 10; ++i)
            message(10);
    };
    feeder->setFeeding(false);
    tenMessages();
    EXPECT_EQ(count(), 0U);
    connect();
    EXPECT_EQ(feeder->valueForAID(10).bytes()[0], 0x2A);  // the store goes on filling
    EXPECT_EQ(count(), 0U);
    feeder->setFeeding(true);
    tenMessages();
    EXPECT_EQ(count(), 10U);
    feeder->enableTimedFeedMode();
    tenMessages();
    EXPECT_EQ(count(), 0U);
    for (int second = 0; second < 3; ++second) {
        platform.loop.runFor(1000ms);
        tenMessages();
        EXPECT_EQ(count(), 1U);
    }
    feeder->disableTimedFeedMode();
    tenMessages();
    EXPECT_EQ(count(), 10U);
}

}  // namespace
