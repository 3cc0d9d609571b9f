// Reads of trouble codes on a real socket and a real reading thread, with askers that go at any moment.
#include <gtest/gtest.h>

#include <atomic>

#include "bench/Bench.h"
#include "diagnostics/DtcRequest.h"
#include "diagnostics/TroubleCodeReport.h"
#include "fakes/FreshEngine.h"
#include "fakes/HasReadAll.h"
#include "fakes/WaitUntil.h"
#include "platform/real/RealPlatform.h"

namespace {

using namespace torv;

TEST(DtcLoopback, ReadsOfTwoThreadsEndOrAreLeft) {
    RealPlatform platform;
    Platform::install(&platform);
    fakes::freshenEngine();
    std::atomic<std::uint16_t> port{0};
    bench::Bench module{{.rate = 400,
                         .profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json",
                         .troubleCodes = {"P0101", "P0102", "P0103", "P0104", "P0105", "P0106"},
                         .hasReadAll = [&port] { return fakes::hasReadAllFrom(port); }}};
    ASSERT_EQ(module.start().value_or(""), "");
    port = module.port();
    auto feeder = std::make_shared<iTorvFeeder>(
        ConnectionOptions{.interface = "en0", .module = Endpoint{"127.0.0.1", port}});
    feeder->setFeeding(true);
    feeder->start();
    const auto waitUntil = [&](const std::function<bool()>& condition) {
        return fakes::waitUntil(platform.runLoop(), condition);
    };
    ASSERT_TRUE(waitUntil([&] { return feeder->driver().connected(); }));
    for (int round = 0; round < 20; ++round) {
        bool done = false;
        auto request = std::make_shared<DtcRequest>(feeder, [&done] { done = true; });
        request->begin();
        if (round % 2 == 0) continue;  // its reports come to nobody
        ASSERT_TRUE(waitUntil([&] { return done; }));
        const auto report = TroubleCodeReport::fromStore(*feeder, request->begun(), {});
        ASSERT_EQ(report.rows.size(), 6U);
        EXPECT_FALSE(report.hasOldRows());
        EXPECT_EQ(report.rows[5].code, "P0106");
    }
    feeder.reset();
    module.stop();
    Platform::install(nullptr);
}

}  // namespace
