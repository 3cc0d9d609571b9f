#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "fakes/FakePlatform.h"
#include "fakes/Frames.h"
#include "fakes/FreshEngine.h"
#include "platform/NotificationNames.h"
#include "session/iTorvFeeder.h"

/// A session in virtual time, with a module that the test plays.
namespace session_test {

using namespace torv;
using fakes::Bytes;
using fakes::frame;

inline const Bytes push = frame({0x13, 10, 0x2A});              // AID 10 is 42
inline const Bytes otherPush = frame({0x14, 100, 0x12, 0x34});  // AID 100 is 0x3412
inline const Bytes ackOf5 = frame({0x22, 5});
inline const Bytes ignored = frame({0x62, 1});

struct Listener final : iTorvConnectionListener {
    void iTorvFeederDidEstablishConnection(iTorvFeeder&) override { ++established; }
    void iTorvFeederDidFailToConnect(iTorvFeeder&) override { failedAt.push_back(loop->time().count()); }

    fakes::VirtualRunLoop* loop = nullptr;
    int established = 0;
    std::vector<std::int64_t> failedAt;
};

struct Reader final : iTorvReader {
    explicit Reader(std::int32_t p) : current(p) {}
    void readAid(std::span<std::uint8_t> bytes, AID aid) override {
        reads.push_back({aid, {bytes.begin(), bytes.end()}});
        if (onRead) onRead();
    }
    [[nodiscard]] std::int32_t priority() const override { return current; }
    void setPriority(std::int32_t p) override { current = p; }

    std::int32_t current;
    std::vector<std::pair<AID, Bytes>> reads;
    std::function<void()> onRead;
};

class SessionTest : public testing::Test {
protected:
    SessionTest() {
        fakes::freshenEngine();
        listener->loop = &platform.loop;
        feeder = std::make_shared<iTorvFeeder>();
        feeder->addConnectionListener(listener);
        feeder->setFeeding(true);
    }

    void start() { feeder->start(); }
    ZephrelaneDriver& driver() { return feeder->driver(); }
    void chunk(const Bytes& bytes) {
        platform.stream().feed(bytes);
        platform.loop.runWork();
    }
    void connect() {
        start();
        for (int i = 0; i < 3; ++i)
            chunk(push);
        ASSERT_TRUE(driver().connected());
    }
    /// How often these very bytes went out; the heartbeat's own requests may stand between.
    [[nodiscard]] std::ptrdiff_t count(const Bytes& bytes) {
        const auto& sent = platform.stream().sent;
        return std::count(sent.begin(), sent.end(), bytes);
    }
    std::shared_ptr<Reader> reader(const std::string& key, std::int32_t priority = 0) {
        auto made = std::make_shared<Reader>(priority);
        feeder->addReaderForKey(made, key);
        return made;
    }
    /// The module answers whatever is sent: with an ack or a response, and another frame behind it.
    void answerEverything() {
        platform.stream().onWrite = [this](const Bytes& sent) {
            const bool isWrite = sent[0] >> 4 == x2comFrameWrite;
            platform.stream().feed(isWrite ? frame({0x22, sent[1]}) : frame({0x53, sent[1], 7}));
            platform.stream().feed(push);
        };
    }

    fakes::FakePlatform platform;
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    std::shared_ptr<iTorvFeeder> feeder;
};

}  // namespace session_test
