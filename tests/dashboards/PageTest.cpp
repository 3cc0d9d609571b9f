// The three pages: what stands where, what is stored, what warns, and what follows a change of vehicle.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "Dashboard.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using fakes::sensor;
using fakes::truck;

class PageTest : public testing::Test, public fakes::Dashboard {
protected:
    [[nodiscard]] std::vector<std::string> placementKeys() const {
        std::vector<std::string> keys;
        for (const auto& key : platform.defaults.keys()) {
            if (key.ends_with("_KEY")) keys.push_back(key);
        }
        return keys;
    }
    /// AIDs of the places in their order; 0 for an empty one.
    [[nodiscard]] std::vector<AID> placed() const {
        std::vector<AID> aids;
        for (const auto& place : page->droppableViews())
            aids.push_back(place->gauge() ? place->gauge()->attribute()->aid : 0);
        return aids;
    }
    [[nodiscard]] bool alert() const { return page->controls()->warningView().warning(); }
};

TEST_F(PageTest, PlacementsAreStoredLetterByLetterAndFoundAgain) {
    launch(truck("Truck", {sensor(8), sensor(9), sensor(10)}));
    struct Row {
        std::function<void()> open;
        std::vector<std::string> keys;
    };
    const std::vector<Row> rows{
        {[&] { open<iTorvViewController>(); },
         {"Truck_0_KEY", "Truck_4_KEY", "Truck_3_KEY", "Truck_2_KEY", "Truck_1_KEY"}},
        {[&] { open<AlternateViewController>(); },
         {"Truck_0_0_2_KEY", "Truck_5_1_2_KEY", "Truck_5_2_2_KEY", "Truck_5_3_2_KEY", "Truck_5_4_2_KEY",
          "Truck_5_5_2_KEY", "Truck_5_6_2_KEY", "Truck_5_7_2_KEY", "Truck_5_8_2_KEY", "Truck_5_9_2_KEY"}},
        {[&] { open<LastViewController>(); },
         {"Truck_6_0_3_KEY", "Truck_6_1_3_KEY", "Truck_6_2_3_KEY", "Truck_6_3_3_KEY", "Truck_6_4_3_KEY",
          "Truck_6_5_3_KEY", "Truck_6_6_3_KEY", "Truck_6_7_3_KEY", "Truck_6_8_3_KEY"}}};
    for (const auto& row : rows) {
        platform.defaults.entries.clear();
        row.open();
        const bool hasMain = page->traits().hasMainPlace;
        EXPECT_EQ(placed()[0], hasMain ? 8 : 0);
        EXPECT_EQ(placementKeys(), hasMain ? std::vector{row.keys[0]} : std::vector<std::string>{});
        ASSERT_EQ(page->droppableViews().size(), row.keys.size());
        for (std::size_t i = 0; i < row.keys.size(); ++i) {
            drop(static_cast<AID>(8 + i % 3), i);
            EXPECT_EQ(stored(row.keys[i]), static_cast<AID>(8 + i % 3)) << row.keys[i];
        }
        const auto before = placed();
        row.open();
        EXPECT_EQ(placed(), before);
        for (std::size_t i = 0; i < row.keys.size(); ++i) {
            const auto& gauge = *place(i).gauge();
            const auto& expected = page->traits().places[i];
            EXPECT_EQ(gauge.style(), expected.style);
            EXPECT_EQ(place(i).frame().x(), expected.frame.x() + 44);
            EXPECT_EQ(gauge.dial().minimumDegree, expected.style == 0 ? -20 : expected.minimumDegree) << i;
            EXPECT_EQ(gauge.priority(), 1);
        }
    }
}

TEST_F(PageTest, WhatIsStoredByHandOrForSensorsThatAreGoneIsPassedOver) {
    launch(truck("Truck", {sensor(8), sensor(9)}));
    auto& defaults = platform.defaults;
    defaults.setObjectForKey(Number::fromInteger(77), "Truck_4_KEY");
    defaults.setObjectForKey("boost", "Truck_3_KEY");
    defaults.setObjectForKey(Array{Value{true}}, "Truck_2_KEY");
    defaults.setObjectForKey(Number{"9.7e99"}, "Truck_1_KEY");
    defaults.setObjectForKey(Number::fromInteger(-1), "Truck_0_KEY");
    open();
    EXPECT_EQ(placed(), (std::vector<AID>{8, 0, 0, 0, 0}));
    EXPECT_EQ(stored("Truck_4_KEY"), 77);  // until something is dropped there
}

TEST_F(PageTest, OddProfilesLeaveThePageUsable) {
    Array many;
    for (int i = 0; i < 300; ++i)
        many.push_back(sensor(i % 256));
    const std::string longName(200, 'N');
    auto odd = sensor(9, "0", "0", 1, 5, "A UNIT WITH MORE THAN FORTY CHARACTERS IN IT");
    odd.set("name", longName);
    for (const auto& sensors : {Array{}, Array{sensor(9)}, many, Array{odd, sensor(8, "1e30", "-1e30")},
                                Array{sensor(8), sensor(8)}}) {
        platform.defaults.entries.clear();
        launch(truck("Truck", sensors));
        open();
        const bool hasBoost = page->indicatorView(8) != nullptr;
        EXPECT_EQ(placed()[0], hasBoost ? 8 : 0);
        if (page->indicatorView(9)) drop(9, 1);
        receive(9, {0, 0, 0, 0});
        receive(9, {255, 255, 255, 255});
        page->pageViewDidExpand(page->pageView());
        page->pageViewDidRetract(page->pageView());
    }
    launch(truck("Truck", {odd, sensor(8)}));
    open();
    page->pageView().scrollView().touchesBegan(page->indicatorView(9));
    platform.loop.runFor(500ms);
    EXPECT_EQ(page->toast().size(), 30);
    EXPECT_LE(page->toastFrame().width(), page->screenWidth());
}

TEST_F(PageTest, OneSensorOnTwoPlacesIsCounted) {
    launch(truck("Truck", {sensor(8), sensor(9)}));
    open();
    drop(9, 1);
    drop(9, 2);
    EXPECT_EQ(page->aidCounting().at(9), 2);
    EXPECT_EQ(page->indicatorView(9)->alpha(), 0.3);
    receive(9, {33});
    EXPECT_EQ(place(1).gauge()->value(), 33);
    EXPECT_EQ(place(2).gauge()->value(), 33);
    const auto gauge = place(1).gauge();
    place(1).clear();
    EXPECT_EQ(page->indicatorView(9)->alpha(), 0.3);
    EXPECT_EQ(place(1).alpha(), 0.3);
    EXPECT_EQ(stored("Truck_4_KEY"), -1);
    EXPECT_EQ(stored("Truck_3_KEY"), 9);
    receive(9, {44});
    EXPECT_EQ(gauge->value(), 33);  // released
    drop(8, 2);
    EXPECT_EQ(page->indicatorView(9)->alpha(), 1);
    EXPECT_FALSE(page->aidCounting().contains(9));
    EXPECT_EQ(stored("Truck_3_KEY"), 8);
    EXPECT_EQ(page->aidCounting().at(8), 2);
}

TEST_F(PageTest, TheAlertIsForSensorsOnNoGauge) {
    launch(truck("Truck",
                 {sensor(8, "0", "100", 1, 50), sensor(9, "0", "100", 1, 50), sensor(10, "0", "100", 4, 5)}));
    open();
    receive(8, {60});
    EXPECT_FALSE(alert());
    EXPECT_TRUE(place(0).gauge()->inWarning());
    receive(9, {50});
    EXPECT_TRUE(alert());
    EXPECT_EQ(page->pageView().image(), "picture/BG_SELECTOR_ALERT.png");
    receive(9, {51});
    receive(10, {4});
    EXPECT_EQ(page->warningAIDs(), (std::vector<AID>{9, 10}));
    drop(9, 1);
    EXPECT_TRUE(alert());
    receive(10, {5});
    EXPECT_FALSE(alert());
    receive(9, {52});
    EXPECT_FALSE(alert());
    EXPECT_EQ(page->indicatorView(9)->icon(), "picture/00_LIST_GLOW.png");
    place(1).clear();
    EXPECT_FALSE(alert());
    receive(9, {52});
    EXPECT_TRUE(alert());
    page->iTorvAppDelegateDidChangeWarningSensors(*app);
    EXPECT_FALSE(alert());
    receive(9, {0});
    EXPECT_FALSE(alert());
}

TEST_F(PageTest, AChangeOfVehicleCarriesItsSensorsOver) {
    launch(truck("Truck", {sensor(8), sensor(9), sensor(10)}));
    open();
    drop(9, 1);
    drop(10, 2);
    page->pageViewDidExpand(page->pageView());
    app->setCurrentVehicle(truck("Van", {sensor(8), sensor(9, "0", "50")}));
    EXPECT_EQ(placed(), (std::vector<AID>{8, 9, 0, 0, 0}));
    EXPECT_EQ(place(1).gauge()->dial().maximumValue, 50);
    EXPECT_EQ(placementKeys(), (std::vector<std::string>{"Van_0_KEY", "Van_4_KEY"}));
    EXPECT_EQ(page->currentVehicle().name(), "Van");
    EXPECT_EQ(page->aidCounting(), (std::map<AID, int>{{8, 1}, {9, 1}}));
    platform.loop.runFor(1s);
    receive(9, {21});
    EXPECT_EQ(place(1).gauge()->value(), 21);
    // The same vehicle in another version, without the sensor of the main place.
    app->setCurrentVehicle(truck("Van", {sensor(9)}));
    EXPECT_EQ(placed(), (std::vector<AID>{0, 9, 0, 0, 0}));
    drop(9, 0);
    EXPECT_EQ(placed()[0], 9);
}

TEST_F(PageTest, TilesWarnByTheirNameAndFollowAChangeOfVehicle) {
    launch(truck("Truck", {sensor(8), sensor(9, "0", "100", 1, 50)}));
    open<LastViewController>();
    app->refreshWarningSensors();  // a page without lamps
    drop(9, 0);
    drop(8, 1);
    receive(9, {60});
    EXPECT_TRUE(place(0).gauge()->inWarning());
    receive(9, {40});
    EXPECT_FALSE(place(0).gauge()->inWarning());
    app->setCurrentVehicle(truck("Van", {sensor(9)}));
    EXPECT_EQ(placed()[0], 9);
    EXPECT_EQ(placed()[1], 0);
    EXPECT_EQ(place(1).alpha(), 0);
    EXPECT_EQ(placementKeys(), (std::vector<std::string>{"Van_6_0_3_KEY"}));
    platform.defaults.setObjectForKey(true, "turbosetting");
    open();
    EXPECT_EQ(page->controls()->turbo(), "picture/1_SIDE_GLOW.png");
}

TEST_F(PageTest, APowerStepWaitsForAPassAndAnEmptyPageSaysHowItIsFilled) {
    launch(truck("Truck", {sensor(9)}));
    open();
    EXPECT_EQ(page->advice(), "Hold a sensor in the strip and drag it here");
    drop(9, 1);
    EXPECT_EQ(page->advice(), "");
    fakes::connectModule(platform, writes);
    platform.loop.runFor(2s);  // the replay is over
    writes.clear();
    auto pass = app->beginPass();
    page->increasePower();
    EXPECT_TRUE(writes.empty());
    ASSERT_NE(page->alert(), nullptr);
    pass.reset();
    page->increasePower();
    EXPECT_FALSE(writes.empty());
    page->pageView().setExpandedAnimate(true, true);
    platform.loop.runFor(500ms);
    page->touchKey(Qt::Key_Escape);
    platform.loop.runFor(500ms);
    EXPECT_FALSE(page->pageView().expanded());
    launch(truck("Van", {}));
    EXPECT_TRUE(open().advice().contains("no sensors"));
    auto grouped = sensor(9);
    grouped.set("category", "Fuel");
    launch(truck("Van", {grouped}));
    EXPECT_TRUE(open().stripNote().contains("under Diagnostics"));
    EXPECT_EQ(page->advice(), page->stripNote());
}

TEST_F(PageTest, AStoreThatFailsIsSaidAtOnceAndNoLongerThanItDoes) {
    launch(truck("Truck", {sensor(9)}));
    open();
    EXPECT_EQ(page->notice(), "");
    for (const bool kept : {false, true}) {
        platform.defaults.kept = kept;
        drop(9, 1);
        defaults().synchronize();
        platform.loop.runWork();
        EXPECT_EQ(page->notice().isEmpty(), kept);
    }
}

TEST_F(PageTest, ThePowerLevelStepsFromWhatTheModuleReported) {
    launch(truck("Truck", {sensor(8)}));
    open();
    fakes::connectModule(platform, writes);
    platform.loop.runFor(2s);  // the replay is over
    struct Row {
        std::uint8_t level;
        int delta;
        std::optional<std::uint8_t> written;
    };
    for (const auto& row :
         {Row{3, 1, 4}, Row{3, -1, 2}, Row{0, -1, std::nullopt}, Row{255, 1, 0}, Row{0, 1, 1}}) {
        receive(4, {row.level});
        writes.clear();
        page->incrementPowerBy(row.delta);
        std::vector<fakes::Bytes> expected;
        if (row.written) expected.push_back(fakes::frame({0x03, 4, *row.written}));
        EXPECT_EQ(writes, expected) << static_cast<int>(row.level);
    }
}

TEST_F(PageTest, OldValuesDimWhateverThePickerAndTheDragDo) {
    launch(truck("Truck", {sensor(8), sensor(9)}));
    open();
    const auto old = [&] { return place(0).gauge()->isOld(); };
    const auto& lamp = page->controls()->torqueLockView();
    EXPECT_TRUE(lamp.isOld());
    EXPECT_TRUE(old());  // never came
    for (int i = 0; i < 5; ++i) {
        platform.loop.runFor(1s);
        receive(8, {1});
    }
    EXPECT_FALSE(old());
    page->pageViewDidExpand(page->pageView());
    page->pageViewDidBeginDragging(page->pageView());
    for (int i = 0; i < 4; ++i) {
        platform.loop.runFor(1s);
        EXPECT_FALSE(old()) << i;  // four times its usual second
        receive(8, {2});
    }
    platform.loop.runFor(500ms);
    EXPECT_TRUE(old());  // arrival goes on, but what is shown came before
    EXPECT_EQ(place(0).gauge()->value(), 1);
    EXPECT_TRUE(page->indicatorView(8)->isOld());
    page->pageViewDidEndDragging(page->pageView());
    page->pageViewDidRetract(page->pageView());
    receive(8, {3});
    EXPECT_FALSE(old());
    receive(9, {1});
    platform.loop.runFor(2900ms);
    EXPECT_FALSE(page->indicatorView(9)->isOld());
    platform.loop.runFor(500ms);
    EXPECT_TRUE(page->indicatorView(9)->isOld());
    receive(9, {2});
    EXPECT_FALSE(page->indicatorView(9)->isOld());
}

TEST_F(PageTest, AWarningDimsWithTheLastValueThatItWarnsOf) {
    launch(truck("Truck", {sensor(8, "0", "100", 1, 50), sensor(9, "0", "100", 1, 50)}));
    open();
    page->droppableViews()[0]->clear();
    receive(9, {60});
    const auto& lamp = page->controls()->warningView();
    EXPECT_TRUE(lamp.warning());
    EXPECT_FALSE(lamp.isOld());
    platform.loop.runFor(3500ms);
    EXPECT_TRUE(lamp.isOld());
    EXPECT_TRUE(page->pageView().isWarningOld());
    receive(8, {60});
    EXPECT_FALSE(lamp.isOld());
    receive(8, {1});
    EXPECT_TRUE(lamp.warning());
    EXPECT_TRUE(lamp.isOld());
    receive(9, {1});
    EXPECT_FALSE(lamp.warning());
    EXPECT_FALSE(lamp.isOld());
}

TEST_F(PageTest, PagesStackAndLeaveNothingBehind) {
    launch(truck("Truck", {sensor(8, "0", "100", 1, 50), sensor(9, "0", "100", 1, 50)}));
    const auto first = std::make_shared<iTorvViewController>(app, DashboardScreens{});
    const Stage stage{first, nullptr};
    first->rightSwipe();
    EXPECT_EQ(stage.top(), first.get());
    first->leftSwipe();
    auto* const second = dynamic_cast<AlternateViewController*>(stage.top());
    ASSERT_NE(second, nullptr);
    second->leftSwipe();
    auto* const third = dynamic_cast<LastViewController*>(stage.top());
    ASSERT_NE(third, nullptr);
    third->leftSwipe();
    EXPECT_EQ(stage.top(), third);
    receive(9, {60});
    EXPECT_TRUE(first->controls()->warningView().warning());
    EXPECT_TRUE(third->pageView().warning());
    const std::weak_ptr<IndicatorView> indicator = third->indicatorView(9);
    third->rightSwipe();
    EXPECT_EQ(stage.top(), second);
    platform.loop.runWork();
    receive(9, {61});
    EXPECT_TRUE(indicator.expired());
    EXPECT_EQ(second->indicatorView(9)->value(), 61);  // its readers are there anew
    EXPECT_EQ(first->indicatorView(9)->value(), 61);
    EXPECT_EQ(app->dataLoggingDict()->sampleCount(9), 5U);
    second->leftSwipe();
    second->rightSwipe();            // under the third, it goes nowhere
    first->touchKey(Qt::Key_Space);  // late, and meant for the page on top
    platform.loop.runWork();
    EXPECT_TRUE(dynamic_cast<LastViewController&>(*stage.top()).pageView().expanded());
    EXPECT_NE(stage.top(), second);
    dynamic_cast<LastViewController&>(*stage.top()).goTofirst();
    const auto kept = second->shared_from_this();
    // What the second has begun to replay ends with it.
    SettingValueStore::save({{95, AV::forAID(95, fakes::Bytes{1})}, {96, AV::forAID(96, fakes::Bytes{2})}},
                            app->currentVehicle());
    int replays = 0;
    fakes::connectModule(platform, writes, true, [&] {
        if (writes.back() == fakes::frame({0x04, 95, 1, 0}) && ++replays == 2)
            platform.loop.performOnMainThread([&] { second->rightSwipe(); });
    });
    platform.loop.runFor(2s);
    EXPECT_EQ(std::ranges::count(writes, fakes::frame({0x04, 96, 2, 0})), 1);
    second->rightSwipe();  // once more, when it has been left
    second->touchKey(Qt::Key_Space);
    platform.loop.runWork();
    EXPECT_FALSE(second->pageView().expanded());
    EXPECT_EQ(stage.top(), first.get());
    platform.loop.runWork();
    receive(9, {62});
    EXPECT_EQ(first->indicatorView(9)->value(), 62);
    app->setCurrentVehicle(truck("Van", {sensor(8)}));
}

}  // namespace
