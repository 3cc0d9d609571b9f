// The application without its looks ends at any moment of its first two seconds with the module.
#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <memory>

#include "bench/Bench.h"
#include "control/ConnectReplay.h"
#include "fakes/FreshEngine.h"
#include "platform/NotificationNames.h"
#include "platform/real/RealPlatform.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

std::size_t entries(const char* folder) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator{folder})
        count += entry.exists() ? 1 : 0;
    return count;
}

/// A hundred moments in all, in parts that can run side by side.
class QuitTest : public testing::TestWithParam<int> {
protected:
    enum Reached { nothing, session, replay };

    /// As the program does: whatever a pending timer owns goes with the loop.
    Reached runFor(std::chrono::microseconds moment) {
        auto reached = nothing;
        std::weak_ptr<iTorvAppDelegate> watched;
        {
            RealPlatform platform;
            Platform::install(&platform);
            fakes::freshenEngine();
            const auto application = std::make_shared<iTorvAppDelegate>();
            watched = application;
            ConnectReplay connectReplay{application, [](const auto&) {}};
            const auto observed = platform.notificationCenter().addObserver(sendNotification, [&] {
                reached = replay;
                connectReplay.run();
            });
            iTorvAppDelegate::LaunchOptions options;
            options.connection.module = Endpoint{"127.0.0.1", module.port()};
            application->applicationDidFinishLaunchingWithOptions(options, [](const auto&) {});
            auto& loop = platform.runLoop();
            const auto begin = loop.now();
            loop.scheduleTimer(std::chrono::duration_cast<std::chrono::milliseconds>(moment), false,
                               [&](Timer&) {
                                   while (loop.now() < begin + moment) {
                                   }
                                   loop.quit();
                               });
            while (loop.runOnce()) {
            }
            if (application->connected() && reached == nothing) reached = session;
            application->applicationWillTerminate();
        }
        EXPECT_TRUE(watched.expired());
        Platform::install(nullptr);
        return reached;
    }

    bench::Bench module{{.rate = 400, .profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json"}};
};

INSTANTIATE_TEST_SUITE_P(FourParts, QuitTest, testing::Range(0, 4));

TEST_P(QuitTest, AtAnyMomentOfTheFirstTwoSeconds) {
    ASSERT_EQ(module.start().value_or(""), "");
    const auto threads = entries("/proc/self/task");
    const auto files = entries("/proc/self/fd");
    std::array<int, 3> rounds{};
    for (int i = GetParam(); i < 100; i += 4) {
        SCOPED_TRACE(i);
        const QTemporaryDir folder;  // nothing is stored, so that the connect writes the settings
        qputenv("XDG_DATA_HOME", folder.path().toUtf8());
        // Far more of them early, when most happens.
        const auto moment = std::pow((i + 1) / 100.0, 3) * 2s;
        ++rounds[runFor(std::chrono::duration_cast<std::chrono::microseconds>(moment))];
        ASSERT_EQ(entries("/proc/self/task"), threads);
    }
    for (const auto count : rounds)
        EXPECT_GT(count, 0);
    EXPECT_LE(entries("/proc/self/fd"), files + 1);  // the module may not have seen the last one go
}

}  // namespace
