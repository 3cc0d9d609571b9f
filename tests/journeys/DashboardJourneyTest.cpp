// Journeys through the real window, with the bench behind it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "Journey.h"
#include "dashboards/LastViewController.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

constexpr AID railPressure = 82;
constexpr AID oilPressure = 12;
constexpr std::uint8_t powerLevel = 4;

class JourneyTest : public journeys::Journey {
protected:
    JourneyTest() { start(); }

    void openPicker() {
        key(Qt::Key_Space);
        ASSERT_TRUE(app->waitUntil(
            [&] { return page()->pageView().expanded() && !page()->pageView().isAnimating(); }));
    }
    [[nodiscard]] DashboardViewController* page() const { return app->page(); }
    [[nodiscard]] QPointF onStage(double x, double y) const { return {page()->stageLeft() + x, y}; }
    static std::size_t residentBytes() {
        std::size_t size = 0;
        std::size_t resident = 0;
        std::ifstream{"/proc/self/statm"} >> size >> resident;
        return resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    }
};

TEST_F(JourneyTest, ADraggedSensorIsFoundAgainAfterARestartAndClearedByItsButton) {
    openPicker();
    ASSERT_TRUE(app->drag(railPressure, onStage(60, 200)));
    const auto aidAt = [&](std::size_t index) {
        const auto& gauge = page()->droppableViews()[index]->gauge();
        return gauge ? gauge->attribute()->aid : 0;
    };
    EXPECT_EQ(aidAt(1), railPressure);
    start();
    EXPECT_EQ(aidAt(1), railPressure);
    const auto& gauge = page()->droppableViews()[1]->gauge();
    EXPECT_TRUE(app->waitUntil([&] { return gauge->value() > 0 && !gauge->isOld(); }));
    openPicker();
    app->tap(onStage(-13 + 18 + 22, 106 + 10 + 22));
    EXPECT_TRUE(app->waitUntil([&] { return aidAt(1) == 0; }));
}

TEST_F(JourneyTest, ALimitThatIsCrossedLightsTheAlertAndPutsItOutAgain) {
    auto& warning = page()->controls()->warningView();
    ASSERT_TRUE(app->waitUntil([&] { return !warning.warning(); }));
    module.setValue(oilPressure, {5});
    ASSERT_TRUE(app->waitUntil([&] { return warning.warning(); }));
    const auto u = app->view()->width() / page()->viewWidth();
    const auto icon = warning.frame().center() + page()->controls()->frame().topLeft();
    EXPECT_TRUE(app->waitUntil([&] {
        const auto colour = app->view()->grabWindow().pixelColor((icon * u).toPoint() + QPoint{0, -10});
        return colour.red() > colour.blue() + 50;
    }));
    module.setValue(oilPressure, {60});
    EXPECT_TRUE(app->waitUntil([&] { return !warning.warning(); }));
}

TEST_F(JourneyTest, ThePowerLevelStepsByTouchAndByKey) {
    auto& power = page()->controls()->powerLevelView();
    ASSERT_TRUE(app->waitUntil([&] { return !power.isOld(); }));
    const auto level = [&] { return power.powerLevelNumber().value(); };
    const double before = level();
    app->tap(page()->powerIncreaseFrame().center());
    ASSERT_TRUE(app->waitUntil([&] { return level() == before + 1; }));
    EXPECT_EQ(module.value(powerLevel)[0], static_cast<std::uint8_t>(before + 1));
    key(Qt::Key_Minus);
    EXPECT_TRUE(app->waitUntil([&] { return level() == before; }));
}

TEST_F(JourneyTest, HastyKeysLeaveNoPageWithoutItsValues) {
    for (int round = 0; round < 5; ++round) {
        for (const int code :
             {Qt::Key_Right, Qt::Key_Right, Qt::Key_Space, Qt::Key_Plus, Qt::Key_Left, Qt::Key_Left,
              Qt::Key_Left, Qt::Key_Right, Qt::Key_Space, Qt::Key_Left, Qt::Key_Left})
            key(code);
        app->runFor(50ms * round);
    }
    for (int i = 0; i < 3; ++i)
        key(Qt::Key_Left);
    ASSERT_TRUE(app->waitUntil([&] { return page() && page()->traits().number == 1; }));
    const auto gauge = page()->droppableViews()[0]->gauge();
    const double before = gauge->value();
    EXPECT_TRUE(app->waitUntil([&] { return gauge->value() != before && !gauge->isOld(); }));
}

TEST_F(JourneyTest, SwipesLeadThroughThePagesAndMemoryStaysLevel) {
    const auto there = [&] { app->swipe({450, 120}, {250, 125}); };
    const auto back = [&] { app->swipe({250, 120}, {450, 125}); };
    there();
    ASSERT_TRUE(app->waitUntil([&] { return page() && page()->traits().number == 2; }));
    there();
    ASSERT_TRUE(app->waitUntil([&] { return page() && page()->traits().number == 3; }));
    back();
    ASSERT_TRUE(app->waitUntil([&] { return page() && page()->traits().number == 2; }));
    back();
    ASSERT_TRUE(app->waitUntil([&] { return page() && page()->traits().number == 1; }));
    std::size_t begin = 0;
    for (int i = 0; i < 50; ++i) {
        std::weak_ptr<ViewController> left;
        for (const auto& way :
             {std::pair{Qt::Key_Right, 2}, {Qt::Key_Right, 3}, {Qt::Key_Left, 2}, {Qt::Key_Left, 1}}) {
            left = page()->weak_from_this();
            key(way.first);
            ASSERT_TRUE(app->waitUntil([&] { return page() && page()->traits().number == way.second; }));
        }
        ASSERT_TRUE(app->waitUntil([&] { return left.expired(); }));
        if (i == 9) begin = residentBytes();
    }
#ifdef __SANITIZE_ADDRESS__
    constexpr std::size_t allowance = 300'000'000;  // it keeps for a while what has been freed
#else
    constexpr std::size_t allowance = 8'000'000;
#endif
    EXPECT_LT(residentBytes(), begin + allowance);
}

}  // namespace
