#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "fakes/WaitUntil.h"
#include "platform/Log.h"
#include "platform/real/OnScreenKeyboard.h"
#include "platform/real/QtRunLoop.h"
#include "platform/real/SystemLog.h"
#include "platform/real/ThreadWorkQueue.h"
#include "platform/real/WaylandGlobals.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

TEST(RunLoop, WorkFromAnotherThreadKeepsItsOrderAndWakesTheLoop) {
    QtRunLoop loop;
    std::vector<int> order;
    {
        ThreadWorkQueue queue{"test"};
        queue.post([&] {
            for (int i = 0; i < 1000; ++i)
                loop.performOnMainThread([&, i] { order.push_back(i); });
        });
        while (order.size() < 1000)
            ASSERT_TRUE(loop.runOnce());
    }
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(order[static_cast<std::size_t>(i)], i);
}

TEST(RunLoop, TimersStopFromAnywhereEvenWithinThemselves) {
    QtRunLoop loop;
    int once = 0;
    int repeated = 0;
    int never = 0;
    std::shared_ptr<Timer> self;
    loop.scheduleTimer(1ms, false, [&](Timer& timer) {
        EXPECT_TRUE(timer.isValid());
        ++once;
    });
    loop.scheduleTimer(1ms, true, [&](Timer& timer) {
        if (++repeated == 3) timer.invalidate();
    });
    const auto stopped = loop.scheduleTimer(1ms, true, [&](Timer&) { ++never; });
    std::thread{[&] { stopped->invalidate(); }}.join();
    // Stopped inside its own handler, with the loop turning there: what stopping must not pull away.
    self = loop.scheduleTimer(2ms, false, [&](Timer&) {
        self->invalidate();
        self = nullptr;
        static_cast<void>(loop.runOnce());  // the end of the test, at the latest
    });
    bool done = false;
    loop.scheduleTimer(30ms, false, [&](Timer&) { done = true; });
    EXPECT_TRUE(fakes::waitUntil(loop, [&] { return done && repeated >= 3; }));  // a slow machine joins ticks
    EXPECT_EQ(once, 1);
    EXPECT_EQ(repeated, 3);
    EXPECT_EQ(never, 0);
    EXPECT_EQ(self, nullptr);
}

/// What the program's timers and work own may have threads, which end only now and still hand over work.
TEST(RunLoop, WhatItsTimersAndWorkOwnEndsWhileItStillTakesWork) {
    const auto openFiles = [] {
        const std::filesystem::directory_iterator files{"/proc/self/fd"};
        return std::distance(begin(files), end(files));
    };
    auto loop = std::make_unique<QtRunLoop>();
    const auto filesOfTheLoop = openFiles();
    const auto handedOver = std::make_shared<int>(0);
    struct Owner {
        explicit Owner(std::function<void()> end) : atTheEnd(std::move(end)) {}
        ~Owner() { atTheEnd(); }
        std::function<void()> atTheEnd;
    };
    int ended = 0;
    const auto own = [&] {
        return std::make_shared<Owner>([&, loop = loop.get()] {
            ThreadWorkQueue{"test"}.post([loop, handedOver] {
                loop->performOnMainThread([handedOver] {});
                loop->scheduleTimer(1ms, false, [handedOver](Timer&) {});
            });
            loop->scheduleTimer(1ms, false, [handedOver](Timer&) {});
            EXPECT_EQ(openFiles(), filesOfTheLoop);
            ++ended;
        });
    };
    loop->scheduleTimer(1ms, false, [owner = own()](Timer&) {});
    loop->scheduleTimer(1ms, true, [owner = own()](Timer&) {});
    loop->performOnMainThread([owner = own()] {});
    loop.reset();
    EXPECT_EQ(ended, 3);
    EXPECT_EQ(handedOver.use_count(), 1);
}

TEST(RunLoop, QuittingEndsEveryTurn) {
    QtRunLoop loop;
    bool nested = true;
    loop.performOnMainThread([&] {
        loop.quit();
        nested = loop.runOnce();
    });
    EXPECT_FALSE(loop.runOnce());
    EXPECT_FALSE(nested);
    EXPECT_FALSE(loop.runOnce());
}

TEST(SystemLog, NoLineObeysATerminalOrIsEndless) {
    startSystemLog("test", LogTerminal::yes);
    testing::internal::CaptureStderr();
    logLine("name \x1b[2J\n\x7f of the module" + std::string(5000, 'x'));
    const auto said = testing::internal::GetCapturedStderr();
    setLogSink({});
    EXPECT_NE(said.find(" name  [2J   of the modulexxx"), std::string::npos) << said;
    EXPECT_LT(said.size(), 2100U);
}

TEST(OnScreenKeyboard, IsForATouchScreenWithoutAKeyboard) {
    const std::string touch =
        "N: Name=\"Touch\"\nB: PROP=2\nB: EV=b\nB: KEY=400 0 0 0 0 0\nB: ABS=260800000000000\n\n";
    const std::string pad = "N: Name=\"Touchpad\"\nB: PROP=5\nB: KEY=e520 10000 0 0 0 0\n\n";
    const std::string buttons = "N: Name=\"Power\"\nB: PROP=0\nB: KEY=10000000000000 0\n\n";
    const std::string keys =
        "N: Name=\"Keys\"\nB: PROP=0\nB: KEY=402000000 3803078f800d001 feffffdfffefffff fffffffffffffffe\n";
    EXPECT_TRUE(lacksKeyboard(buttons + touch));
    EXPECT_TRUE(lacksKeyboard(touch + pad));
    EXPECT_FALSE(lacksKeyboard(touch + keys));
    EXPECT_FALSE(lacksKeyboard(pad + buttons));
    EXPECT_FALSE(lacksKeyboard(""));
    EXPECT_FALSE(lacksKeyboard("B: PROP=\n\nB: KEY="));
    using Globals = std::vector<std::string>;
    const struct {
        KeyboardSurroundings surroundings;
        bool needed;
    } rows[]{
        {{false, false, {}, touch}, true},
        {{true, false, {}, touch}, false},
        {{false, false, {}, touch + keys}, false},
        {{false, true, {}, touch}, false},  // nobody knows
        {{false, true, Globals{"wl_seat", "zwp_text_input_manager_v3"}, touch}, true},
        {{false, true, Globals{"wl_seat", "zwp_text_input_manager_v3"}, touch + keys}, false},
        {{true, true, Globals{}, touch}, false},
        {{false, true, Globals{"zwp_text_input_manager_v3", "zwp_text_input_manager_v1"}, touch}, false},
        {{false, true, Globals{"zwp_text_input_manager_v2"}, touch}, false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(needsOwnKeyboard(row.surroundings), row.needed) << &row - rows;
}

TEST(WaylandGlobals, AreReadUpToTheAnswerOfTheCallback) {
    const auto word = [](std::uint32_t value) {
        return std::string{reinterpret_cast<const char*>(&value), sizeof value};
    };
    const auto global = [&](const std::string& name, std::uint32_t said) {
        auto text = name;
        text.resize((name.size() + 4) / 4 * 4);
        const auto size = static_cast<std::uint32_t>(20 + text.size());
        return word(2) + word(size << 16U) + word(7) + word(said) + text + word(1);
    };
    const auto sound = [&](const std::string& name) {
        return global(name, static_cast<std::uint32_t>(name.size()) + 1);
    };
    const auto done = word(3) + word(12U << 16U) + word(0);
    const auto other = word(1) + word((12U << 16U) | 1U) + word(3);
    const auto whole = sound("wl_seat") + other + sound("wl_compositor") + done;
    EXPECT_EQ(waylandGlobalsFrom(whole), (std::vector<std::string>{"wl_seat", "wl_compositor"}));
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(waylandGlobalsFrom(whole.substr(0, size))) << size;
    for (const std::uint32_t said : {0U, 99U, ~0U})
        EXPECT_FALSE(waylandGlobalsFrom(global("wl_seat", said) + done)) << said;
    EXPECT_FALSE(waylandGlobalsFrom(word(2) + word(4U << 16U) + done));
    EXPECT_FALSE(waylandGlobals("/no/such/socket"));
}

}  // namespace
