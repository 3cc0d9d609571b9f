// Application control in virtual time, with a module that the test plays.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "attributes/AVVehicleSpeedFormatter.h"
#include "control/ConnectionStatus.h"
#include "control/iTorvAppDelegate.h"
#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "fakes/PlayedModule.h"
#include "platform/NotificationNames.h"
#include "platform/StoredKeys.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using fakes::Bytes;
using fakes::frame;

Dictionary setting(int aid, const char* minimum, int formatter) {
    return {{"aid", Number::fromInteger(aid)},
            {"name", "Setting " + std::to_string(aid)},
            {"minValue", Number{minimum}},
            {"formatter", Number::fromInteger(formatter)},
            {"multiplyFactor", Number::fromInteger(1)}};
}

Vehicle truck(const char* name, Array settings) {
    Vehicle vehicle;
    vehicle.setName(name);
    vehicle.setInfo(ProfileInfo{Dictionary{{"parameters", Dictionary{{"settings", std::move(settings)}}}}});
    return vehicle;
}

struct Observer final : iTorvAppDelegateDelegate {
    void iTorvAppDelegateDidChangeCurrentVehicle(iTorvAppDelegate& app) override {
        heard += before() + (app.feeder()->feeding() ? "VEHICLE " : "vehicle ");
    }
    void iTorvAppDelegateDidChangeWarningSensors(iTorvAppDelegate& app) override {
        heard += before() + (app.feeder()->feeding() ? "SENSORS " : "sensors ");
    }
    [[nodiscard]] std::string before() const { return others ? "(after " + *others + ")" : ""; }

    std::string* others = nullptr;
    std::string heard;
};

class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest() {
        fakes::freshenEngine();
        replay = platform.notificationCenter().addObserver(
            sendNotification, [this] { replayedAt.push_back(platform.loop.time()); });
    }

    void launch(const Vehicle& vehicle, std::optional<std::string> url = {}) {
        VehicleDataSource::setCurrentVehicle(vehicle);
        app = std::make_shared<iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({.connection = {}, .url = std::move(url)},
                                                      [&](const auto& whenShown) {
                                                          pageMade = !platform.opened.empty();
                                                          whenShown();
                                                      });
    }
    void connect(bool acknowledges = true) { fakes::connectModule(platform, writes, acknowledges); }

    fakes::FakePlatform platform;
    NotificationCenter::Observation replay;
    std::vector<std::chrono::milliseconds> replayedAt;
    std::vector<Bytes> writes;
    bool pageMade = false;
    std::shared_ptr<iTorvAppDelegate> app;
};

TEST_F(AppDelegateTest, LaunchConnectsBeforeThePageIsMade) {
    launch(truck("Truck", {}));
    EXPECT_TRUE(pageMade);
    EXPECT_TRUE(app->feeder()->feeding());
    EXPECT_FALSE(app->connected());
    EXPECT_TRUE(app->connectionErrorMessageAllowed());
}

TEST_F(AppDelegateTest, ANewVehicleGetsItsLowestValuesTwiceEach) {
    launch(truck("Truck",
                 {setting(95, "2800.9", 0), setting(152, "30", 7), setting(4, "1", 3), setting(2, "1", 99)}));
    connect();
    EXPECT_TRUE(app->connected());
    EXPECT_EQ(writes, (std::vector<Bytes>{frame({0x04, 95, 0xF0, 0x0A}), frame({0x04, 95, 0xF0, 0x0A}),
                                          frame({0x05, 152, 0, 30, 0}), frame({0x05, 152, 0, 30, 0})}));
    const auto stored = SettingValueStore::load(app->currentVehicle());
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->size(), 2U);
    const auto shown = app->formattedValueForSetting(app->currentVehicle().settings()[1]);
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->value, "30");
    EXPECT_EQ(shown->flags, 9);

    ASSERT_TRUE(replayedAt.empty());
    const auto connectedAt = platform.loop.time();
    platform.loop.runFor(500ms);
    ASSERT_EQ(replayedAt.size(), 1U);
    EXPECT_EQ(replayedAt[0] - connectedAt, 500ms);

    writes.clear();
    platform.stream().lose();
    platform.loop.runWork();
    EXPECT_TRUE(app->connected());  // a loss is told to nobody
    connect();
    EXPECT_TRUE(writes.empty());  // what is stored is not written again
    platform.loop.runFor(500ms);
    EXPECT_EQ(replayedAt.size(), 2U);
}

TEST_F(AppDelegateTest, DefaultsAreStoredWhetherOrNotTheModuleTakesThem) {
    launch(truck("Truck", {setting(95, "2800", 0)}));
    connect(false);
    EXPECT_TRUE(SettingValueStore::load(app->currentVehicle()));
    EXPECT_EQ(std::count(writes.begin(), writes.end(), frame({0x04, 95, 0xF0, 0x0A})), 42);
}

TEST_F(AppDelegateTest, DefaultsStayWithTheVehicleForWhichTheyWereBegun) {
    launch(truck("Truck", {setting(95, "2800", 0), setting(4, "1", 0)}));
    bool changed = false;
    fakes::connectModule(platform, writes, false, [&] {
        if (!std::exchange(changed, true)) app->setCurrentVehicle(truck("Other", {setting(95, "7", 0)}));
    });
    EXPECT_TRUE(changed);
    EXPECT_EQ(app->currentVehicle().name(), "Other");
    EXPECT_EQ(SettingValueStore::load(truck("Truck", {}))->size(), 2U);
    EXPECT_FALSE(platform.defaults.entries.contains("SETTINGS_Other"));
    EXPECT_FALSE(app->settingValues());
}

/// A damaged store is not a new vehicle.
TEST_F(AppDelegateTest, WhatCanNotBeReadIsNotWrittenOver) {
    const struct {
        const char* what;
        std::function<void(fakes::MemoryUserDefaults&)> damage;
        const char* sentence;  ///< begins so
    } rows[]{
        {"the store", [](auto& d) { d.entries.clear(), d.whole = d.kept = false; }, "Your choices can't"},
        {"a part of the store", [](auto& d) { d.whole = false; }, "The settings of this vehicle"},
        {"the settings", [](auto& d) { d.entries["SETTINGS_Truck"] = "cut"; },
         "The settings of this vehicle"},
        {"the vehicle", [](auto& d) { d.entries["current_vehicle"] = "cut"; }, "The chosen vehicle"},
        {"the place", [](auto& d) { d.kept = false; }, "Your changes can't"},
    };
    for (const auto& [what, damage, sentence] : rows) {
        SCOPED_TRACE(what);
        platform.defaults.entries.clear();
        platform.defaults.whole = platform.defaults.kept = true;
        VehicleDataSource::setCurrentVehicle(truck("Truck", {setting(95, "2800", 0)}));
        damage(platform.defaults);
        for (int start = 0; start < 2; ++start) {
            writes.clear();
            app = std::make_shared<iTorvAppDelegate>();
            app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
            connect();
            EXPECT_TRUE(app->connected());
            EXPECT_TRUE(writes.empty());
            ASSERT_TRUE(app->storeTrouble());
            EXPECT_TRUE(app->storeTrouble()->starts_with(sentence)) << *app->storeTrouble();
            app->applicationWillTerminate();
            fakes::freshenEngine();
        }
    }
}

TEST_F(AppDelegateTest, ObserversHearOfAChangeWhileNothingIsFed) {
    launch(truck("Truck", {}));
    Observer kept;
    Observer gone;
    app->addDelegate(&kept);
    app->addDelegate(&gone);
    app->removeDelegate(&gone);
    app->refreshWarningSensors();
    app->setCurrentVehicle(truck("Other", {}));
    EXPECT_EQ(kept.heard, "sensors vehicle sensors ");
    EXPECT_EQ(gone.heard, "");
    Observer second;
    second.others = &kept.heard;
    app->addDelegate(&second);
    kept.heard.clear();
    app->setCurrentVehicle(truck("Third", {}));
    EXPECT_EQ(second.heard, "(after vehicle sensors )vehicle (after vehicle sensors )sensors ");
    EXPECT_TRUE(app->feeder()->feeding());
    EXPECT_EQ(app->currentVehicle().name(), "Third");
}

TEST_F(AppDelegateTest, TheStockTireSizeIsTakenOnlyWithStoredSettings) {
    platform.defaults.setObjectForKey(Value{"31.5"}, "STOCK_TIRE_SIZE");
    AVVehicleSpeedFormatter::setStockTireSize("1");
    launch(truck("Truck", {setting(95, "1", 0)}));
    EXPECT_EQ(AVVehicleSpeedFormatter::stockTireSize(), "1");
    connect();
    app->configureZephrelaneFeatures();
    EXPECT_EQ(AVVehicleSpeedFormatter::stockTireSize(), "31.5");
    EXPECT_EQ(AVVehicleSpeedFormatter::currentTireSize(), "31.5");
}

TEST_F(AppDelegateTest, AFileURLIsKeptForTheImport) {
    const auto file = testing::TempDir() + "profile to import.json";
    std::ofstream{file} << R"({"a": 1})";
    launch(truck("Truck", {}), "file://" + file);
    ASSERT_TRUE(app->importVehicleInfo());
    EXPECT_EQ((*app->importVehicleInfo())["a"].intValue(), 1);
    const auto broken = testing::TempDir() + "no profile.json";
    std::ofstream{broken} << "{";
    enum { nothingToSay, notRead, noDocument };
    for (const auto& [other, trouble] :
         std::vector<std::pair<std::string, int>>{{"http://example.com/a.json", nothingToSay},
                                                  {"file:///no/such/file", notRead},
                                                  {"file:///", notRead},
                                                  {"file://" + broken, noDocument},
                                                  {"nonsense", nothingToSay}}) {
        launch(truck("Truck", {}), other);
        EXPECT_FALSE(app->importVehicleInfo()) << other;
        EXPECT_TRUE(pageMade);
        const auto& told = app->importTrouble();
        EXPECT_EQ(!told ? nothingToSay : told->wasRead ? noDocument : notRead, trouble) << other;
    }
}

TEST_F(AppDelegateTest, AWarningIsHeardWithItsFirstValueAndNotAgainWithinTenSeconds) {
    launch(truck("Truck", {}));
    const struct {
        AID aid;
        bool warning;
        std::chrono::milliseconds later;
        int played;
    } values[] = {
        {78, true, 0ms, 0},                                             // not asked for
        {7, true, 10s, 1},    {7, true, 1s, 1},  {8, true, 8999ms, 1},  // too soon, and not made up for
        {8, true, 20s, 1},    {7, false, 0s, 1}, {7, true, 0s, 2},     {8, false, 0s, 2},
        {8, true, 9999ms, 2}, {8, false, 0s, 2}, {8, true, 1ms, 3}};
    for (const auto& [aid, warning, later, played] : values) {
        platform.loop.runFor(later);
        warning ? app->warningBegan(aid) : app->warningEnded(aid);
        EXPECT_EQ(platform.tone.played, played) << aid;
        platform.defaults.setObjectForKey(true, warningSoundKey);
    }
}

TEST_F(AppDelegateTest, TheStatusTellsWhereTheModuleIsLookedForAndKeepsTheScreenOnWhileThereIsOne) {
    launch(truck("Truck", {}));
    ConnectionStatus status{app->feeder()};
    EXPECT_FALSE(status.missing());
    platform.loop.runFor(1s);
    EXPECT_TRUE(status.missing());
    EXPECT_EQ(status.text(), "Looking for the module");
    EXPECT_EQ(status.hint(), "at 1.2.3.4, port 2000");
    platform.loop.runFor(9s);
    EXPECT_TRUE(status.hint().contains("Wi-Fi"));
    connect();
    platform.loop.runFor(1s);
    EXPECT_EQ(status.text() + status.hint(), "Connected");
    EXPECT_TRUE(platform.idleTimerDisabled);
    platform.stream().onWrite = nullptr;  // no answers either
    platform.loop.runFor(4s);
    EXPECT_EQ(status.text(), "No new values");
    EXPECT_TRUE(status.missing());
    EXPECT_TRUE(platform.idleTimerDisabled) << "the session is up";
    platform.stream().feed(frame({0x13, 10, 1}));
    platform.loop.runFor(1s);
    EXPECT_EQ(status.text() + status.hint(), "Connected");
    platform.stream().lose();
    platform.loop.runFor(1s);
    EXPECT_EQ(status.text(), "Connection lost");
    EXPECT_FALSE(platform.idleTimerDisabled);
}

}  // namespace
