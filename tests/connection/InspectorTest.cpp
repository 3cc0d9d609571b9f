// Each fault of the bench is found, and none where there is none.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <set>

#include "bench/Bench.h"
#include "connection/LinkInspector.h"
#include "fakes/FreshEngine.h"
#include "fakes/HasReadAll.h"
#include "fakes/WaitUntil.h"
#include "platform/real/RealPlatform.h"
#include "session/iTorvFeeder.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using bench::Fault;

class InspectorTest : public testing::Test {
protected:
    InspectorTest() {
        Platform::install(&platform);
        fakes::freshenEngine();
    }
    ~InspectorTest() override { Platform::install(nullptr); }

    /// Asks and writes until the rule is broken, or for as long; which rules were broken.
    std::set<LinkRule> broken(std::vector<std::pair<Fault, bench::Trigger>> faults,
                              std::optional<LinkRule> awaited, std::chrono::milliseconds limit) {
        std::atomic<std::uint16_t> port{0};
        bench::Bench module{{.rate = 200,
                             .profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json",
                             .faults = std::move(faults),
                             .hasReadAll = [&port] { return fakes::hasReadAllFrom(port); }}};
        EXPECT_EQ(module.start().value_or(""), "");
        port = module.port();
        const auto inspector = std::make_shared<LinkInspector>(platform.runLoop());
        const auto feeder = std::make_shared<iTorvFeeder>(
            ConnectionOptions{.interface = "en0", .module = Endpoint{"127.0.0.1", port}});
        auto& driver = feeder->driver();
        driver.addMonitor(inspector);
        feeder->start();
        const auto found = [&] {
            std::set<LinkRule> rules;
            for (const auto& finding : inspector->findings())
                rules.insert(finding.rule);
            rules.erase(LinkRule::ownLag);  // this machine may be busy
            return rules;
        };
        const auto end = std::chrono::steady_clock::now() + limit;
        while (std::chrono::steady_clock::now() < end && !(awaited && found().contains(*awaited))) {
            fakes::waitUntil(
                platform.runLoop(), [] { return false; }, 20ms);
            if (!driver.connected()) continue;
            const bool answered = driver.requestValueForAID(9) && driver.requestValueForAID(95) &&
                                  driver.writeValueForAID(driver.readValueForAID(95), 95);
            if (!answered)
                fakes::waitUntil(
                    platform.runLoop(), [] { return false; }, 200ms);  // it may be late
        }
        return found();
    }

    RealPlatform platform;
};

struct Case {
    Fault fault;
    LinkRule rule;
    bench::Trigger trigger{.probability = 0.1};
};
constexpr std::array<Case, bench::faultCount> cases{{
    {Fault::dropAck, LinkRule::missingAck},
    {Fault::delayAck, LinkRule::lateAck},
    {Fault::dropResponse, LinkRule::missingResponse},
    {Fault::delayResponse, LinkRule::lateResponse},
    {Fault::corrupt, LinkRule::checksum},
    {Fault::split, LinkRule::split},
    {Fault::join, LinkRule::joined},
    {Fault::silent, LinkRule::silence, {.at = 300ms, .lasts = 1000ms}},
    {Fault::close, LinkRule::lostConnection, {.at = 300ms}},
    {Fault::refuse, LinkRule::refusedConnection, {.probability = 1}},
    {Fault::mute, LinkRule::noFrames, {.probability = 1}},
    {Fault::strayAck, LinkRule::strayAck},
    {Fault::reservedType, LinkRule::reservedType},
    {Fault::badAid, LinkRule::wrongAID},
    {Fault::cutItem, LinkRule::cutItem},
    {Fault::ownRequest, LinkRule::ownRequest},
    {Fault::ownWrite, LinkRule::ownWrite},
}};

class FaultTest : public InspectorTest, public testing::WithParamInterface<Case> {};

TEST_P(FaultTest, IsFound) {
    const auto& [fault, rule, trigger] = GetParam();
    EXPECT_TRUE(broken({{fault, trigger}}, rule, 15s).contains(rule));
}

INSTANTIATE_TEST_SUITE_P(Bench, FaultTest, testing::ValuesIn(cases), [](const auto& row) {
    std::string name{bench::faultNames[static_cast<std::size_t>(row.param.fault)].name};
    std::erase(name, '-');
    return name;
});

TEST_F(InspectorTest, NothingIsFoundWhereAllIsWell) {
    std::set<LinkRule> found;
    for (int again = 0; again < 8; ++again) {  // a machine that is busy may be late with an answer
        found = broken({}, {}, 1s);
        if (found.empty()) break;
    }
    EXPECT_EQ(found, std::set<LinkRule>{});
}

}  // namespace
