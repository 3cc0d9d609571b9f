// The session and the bench on real loopback sockets, with every fault that the bench knows.
#include <gtest/gtest.h>
#include <malloc.h>

#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <thread>

#include "bench/Bench.h"
#include "fakes/FreshEngine.h"
#include "fakes/HasReadAll.h"
#include "fakes/WaitUntil.h"
#include "platform/real/RealPlatform.h"
#include "session/iTorvFeeder.h"
#include "vehicles/ProfileDocument.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using bench::Fault;

const std::filesystem::path profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json";

/// Keeps each distinct value it was given, by AID and in wire width.
class Witness final : public iTorvReader {
public:
    void readAid(std::span<std::uint8_t> bytes, AID aid) override {
        const auto byte = static_cast<std::uint8_t>(aid);
        const std::size_t width = x2comValueLength(byte, bytes[0]);
        const std::scoped_lock lock{m_mutex};
        ++m_count;
        m_values[byte].insert(
            bench::Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(width)));
    }
    [[nodiscard]] std::int32_t priority() const override { return 0; }

    [[nodiscard]] std::size_t count() const {
        const std::scoped_lock lock{m_mutex};
        return m_count;
    }
    [[nodiscard]] std::map<std::uint8_t, std::set<bench::Bytes>> values() const {
        const std::scoped_lock lock{m_mutex};
        return m_values;
    }

private:
    mutable std::mutex m_mutex;
    std::size_t m_count = 0;
    std::map<std::uint8_t, std::set<bench::Bytes>> m_values;
};

class LoopbackTest : public testing::Test {
protected:
    LoopbackTest() : folder(testing::TempDir() + "itorv-loopback") {
        qputenv("XDG_DATA_HOME", folder.c_str());
        platform = std::make_unique<RealPlatform>();
        Platform::install(platform.get());
        fakes::freshenEngine();
        module = std::make_unique<bench::Bench>(
            bench::Options{.rate = 400, .seed = 7, .profile = profile, .hasReadAll = [this] {
                               return fakes::hasReadAllFrom(port);
                           }});
        EXPECT_EQ(module->start().value_or(""), "");
        port = module->port();
        makeFeeder();
    }
    ~LoopbackTest() override {
        feeder.reset();
        Platform::install(nullptr);
    }

    void makeFeeder() {
        feeder = std::make_shared<iTorvFeeder>(
            ConnectionOptions{.interface = "en0", .module = Endpoint{"127.0.0.1", port}});
        for (int aid = 0; aid < 255; ++aid)
            feeder->addReaderForKey(witness, std::to_string(aid));
        feeder->setFeeding(true);
    }
    bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = 20s) {
        return fakes::waitUntil(platform->runLoop(), condition, limit);
    }
    bool connect() {
        feeder->start();
        return waitUntil([&] { return feeder->driver().connected(); });
    }
    bool valuesFlow() {
        const auto before = witness->count();
        return waitUntil([&] { return witness->count() > before + 20; });
    }
    /// Of everything that was delivered: not one value that the module has not meant for that AID.
    void expectNothingWrong() {
        for (const auto& [aid, values] : witness->values()) {
            const auto sent = module->sent(aid);
            for (const auto& value : values)
                EXPECT_TRUE(sent.contains(value)) << "AID " << int{aid};
        }
    }

    std::string folder;
    std::atomic<std::uint16_t> port = 0;
    std::unique_ptr<RealPlatform> platform;
    std::unique_ptr<bench::Bench> module;
    std::shared_ptr<Witness> witness = std::make_shared<Witness>();
    std::shared_ptr<iTorvFeeder> feeder;
};

TEST_F(LoopbackTest, AnExchangeOfAnotherThreadFailsAndLeavesNoTrace) {
    ASSERT_TRUE(connect());
    ASSERT_TRUE(feeder->setValueForAID(bench::Bytes{7}, 33));
    std::thread{[&] {
        EXPECT_FALSE(feeder->setValueForAID(bench::Bytes{8}, 33));
        EXPECT_FALSE(feeder->requestValueForAID(33));
    }}.join();
    const std::scoped_lock lock{avStoreMutex()};
    EXPECT_EQ(*x2comSendSlot(33), 7);
}

TEST_F(LoopbackTest, ValuesFlowUnderEachFaultAndAfterIt) {
    struct Row {
        const char* name;
        Fault fault;
        bench::Trigger trigger;
        bool exchangesEnd;  ///< an exchange still succeeds in the end
    };
    const std::vector<Row> rows{
        {"dropped acks", Fault::dropAck, {.probability = 0.5}, true},
        {"delayed acks", Fault::delayAck, {.probability = 0.5}, true},
        {"dropped responses", Fault::dropResponse, {.probability = 0.5}, true},
        {"delayed responses", Fault::delayResponse, {.probability = 0.5}, true},
        {"damaged bytes", Fault::corrupt, {.probability = 0.2}, true},
        {"split frames", Fault::split, {.probability = 0.2}, true},
        {"joined frames", Fault::join, {.probability = 0.2}, true},
        {"silence", Fault::silent, {.at = 0ms, .lasts = 900ms}, false},
        {"a closed connection", Fault::close, {.at = 50ms}, false},
        {"stray acks", Fault::strayAck, {.probability = 0.2}, true},
        {"reserved types", Fault::reservedType, {.probability = 0.2}, true},
        {"items for AID 255", Fault::badAid, {.probability = 0.2}, true},
        {"cut items", Fault::cutItem, {.probability = 0.2}, true},
        {"requests of the module", Fault::ownRequest, {.probability = 0.2}, true},
        {"writes of the module", Fault::ownWrite, {.probability = 0.2}, true},
    };
    ASSERT_TRUE(connect());
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto struckBefore = module->statistics().struck(row.fault);
        module->setFault(row.fault, row.trigger);
        int acknowledged = 0;
        for (int i = 0; i < 10; ++i) {
            acknowledged += feeder->setValueForAID(bench::Bytes{static_cast<std::uint8_t>(i), 3}, 96) ? 1 : 0;
            static_cast<void>(feeder->requestValueForAID(78));
        }
        if (row.exchangesEnd) {
            EXPECT_EQ(acknowledged, 10);
        }
        EXPECT_TRUE(waitUntil([&] { return module->statistics().struck(row.fault) > struckBefore; }));
        module->clearFaults();
        EXPECT_TRUE(waitUntil([&] { return feeder->driver().connected(); }));
        EXPECT_TRUE(valuesFlow());
        EXPECT_TRUE(feeder->setValueForAID(bench::Bytes{0x20, 3}, 96));
    }
    expectNothingWrong();
}

/// Ten thousand exchanges in all, in parts that can run side by side.
class ExchangesTest : public LoopbackTest, public testing::WithParamInterface<std::uint64_t> {};

INSTANTIATE_TEST_SUITE_P(FourSeeds, ExchangesTest, testing::Values(20240607, 20240608, 20240609, 20240610));

TEST_P(ExchangesTest, UnderFaultsEndAndDecodeNothingWrong) {
    constexpr int exchanges = 2500;
    constexpr int dropEach = 800;
    constexpr std::array mix{Fault::dropAck, Fault::delayAck,     Fault::dropResponse, Fault::delayResponse,
                             Fault::corrupt, Fault::split,        Fault::join,         Fault::strayAck,
                             Fault::badAid,  Fault::reservedType, Fault::cutItem,      Fault::ownRequest,
                             Fault::ownWrite};
    ASSERT_TRUE(connect());
    for (const auto fault : mix)
        module->setFault(fault, {.probability = 0.003});
    module->setFault(Fault::silent, {.probability = 0.0004, .lasts = 200ms});
    module->setFault(Fault::refuse, {.probability = 0.2});
    module->setFault(Fault::mute, {.probability = 0.2});
    std::mt19937_64 random{GetParam()};
    auto& loop = platform->runLoop();
    int ended = 0;
    int succeeded = 0;
    auto longest = 0ms;
    for (int i = 0; i < exchanges; ++i) {
        const auto begin = loop.now();
        if (i % dropEach == dropEach / 2) module->dropConnections();
        const bool isWrite = random() % 2 == 0;
        const auto value = static_cast<std::uint8_t>(random());
        const bool done =
            isWrite ? feeder->driver().writeValueForAID(AV::forAID(95, bench::Bytes{value, 11}), 95)
                    : feeder->driver().requestValueForAID(static_cast<std::int32_t>(random() % 220));
        ++ended;
        succeeded += done ? 1 : 0;
        longest =
            std::max(longest, std::chrono::duration_cast<std::chrono::milliseconds>(loop.now() - begin));
        if (!feeder->driver().connected()) {
            ASSERT_TRUE(waitUntil([&] { return feeder->driver().connected(); }, 60s));
        }
    }
    EXPECT_EQ(ended, exchanges);
    EXPECT_GT(succeeded, exchanges * 9 / 10);
    // An exchange is 0.1 s; without a connection it waits for one, which is tried every 3 s.
    EXPECT_LT(longest, 30s);
    const auto statistics = module->statistics();
    for (const auto fault : mix)
        EXPECT_GT(statistics.struck(fault), 0U) << bench::faultNames[std::size_t(fault)].name;
    EXPECT_GT(statistics.connections, std::uint64_t{exchanges / dropEach});
    EXPECT_EQ(statistics.valuesNotKept, 0U);
    expectNothingWrong();
}

TEST_F(LoopbackTest, AFeederGoesWhileItsReadersRun) {
    for (int round = 0; round < 20; ++round) {
        ASSERT_TRUE(connect()) << round;
        ASSERT_TRUE(valuesFlow()) << round;
        feeder.reset();
        makeFeeder();
    }
}

TEST_F(LoopbackTest, TwoHundredLossesLeaveNothingBehind) {
    ASSERT_TRUE(connect());
    const auto openFiles = [] {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/fd"})
            count += entry.exists() ? 1 : 0;
        return count;
    };
    const auto threads = [] {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator{"/proc/self/task"})
            count += entry.exists() ? 1 : 0;
        return count;
    };
    const auto filesBefore = openFiles();
    const auto threadsBefore = threads();
    std::size_t inUse = 0;
    std::mt19937 random{11};
    for (int i = 0; i < 200; ++i) {
        // In any order: dropped by the module, closed by a fault, and now and then the module gone for a
        // while.
        const bool gone = random() % 40 == 0;
        if (gone) {
            module->stop();
        } else if (random() % 2 == 0) {
            module->setFault(Fault::close, {.at = 0ms});
        } else {
            module->dropConnections();
        }
        ASSERT_TRUE(waitUntil([&] { return !feeder->driver().connected(); })) << i;
        if (gone) {
            ASSERT_EQ(module->start().value_or(""), "");
        }
        ASSERT_TRUE(waitUntil([&] { return feeder->driver().connected(); })) << i;
        EXPECT_TRUE(feeder->driver().firstAVSeen());
        if (i == 50) inUse = mallinfo2().uordblks;
    }
    EXPECT_LE(mallinfo2().uordblks, inUse + (1U << 20U));
    EXPECT_TRUE(valuesFlow());
    EXPECT_LE(openFiles(), filesBefore + 2);
    EXPECT_EQ(threads(), threadsBefore);
}

}  // namespace
