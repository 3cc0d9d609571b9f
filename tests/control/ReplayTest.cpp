// What each connect sends again, and what the overlay says meanwhile.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "control/ConnectReplay.h"
#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "fakes/PlayedModule.h"
#include "platform/NotificationNames.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

class ReplayTest : public testing::Test {
protected:
    ReplayTest() {
        fakes::freshenEngine();
        Vehicle truck;
        truck.setName("Truck");
        VehicleDataSource::setCurrentVehicle(truck);
        app = std::make_shared<iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
        replay = std::make_unique<ConnectReplay>(
            app, [this](auto hud) { show(std::move(hud)); }, [this](const PassReport&) { ++reports; });
        auto& center = platform.notificationCenter();
        connected = center.addObserver(sendNotification, [this] { replay->run(); });
        ended = center.addObserver(customTuningSettingsUpdated, [this] { ++updates; });
    }

    void show(std::shared_ptr<ProgressHUD> hud) {
        overlay = std::move(hud);
        if (!overlay) return;
        QObject::connect(overlay.get(), &ProgressHUD::changed, [this, shown = overlay.get()] {
            words.push_back(shown->labelText().toStdString() + "; " +
                            shown->detailsLabelText().toStdString() +
                            (shown->cancellable() ? "; Cancel" : ""));
            if (onWords) onWords(*shown);
        });
    }
    void storeProfile(const char* name, const std::vector<AID>& aids) {
        ProfileDictionary profile;
        for (const AID aid : aids)
            profile.emplace(aid, AV::forAID(aid, fakes::Bytes{9}));
        platform.defaults.setObjectForKey(archivedProfileDictionary(profile), name);
        platform.defaults.setObjectForKey(name, "savedprofile");
    }
    [[nodiscard]] long written(std::uint8_t aid) const {
        return std::count_if(writes.begin(), writes.end(),
                             [&](const auto& w) { return w[0] >> 4 == 0 && w[1] == aid; });
    }

    fakes::FakePlatform platform;
    std::vector<fakes::Bytes> writes;
    std::shared_ptr<iTorvAppDelegate> app;
    std::unique_ptr<ConnectReplay> replay;
    NotificationCenter::Observation connected;
    NotificationCenter::Observation ended;
    std::shared_ptr<ProgressHUD> overlay;
    std::vector<std::string> words;
    std::function<void(ProgressHUD&)> onWords;
    int updates = 0;
    int reports = 0;
};

TEST_F(ReplayTest, EachConnectReplaysSettingsThenTheActiveProfile) {
    SettingValueStore::save({{95, AV::forAID(95, fakes::Bytes{7})}}, app->currentVehicle());
    fakes::connectModule(platform, writes);
    EXPECT_TRUE(writes.empty());
    platform.loop.runFor(500ms);
    EXPECT_EQ(writes[0][1], 95);
    EXPECT_EQ(platform.defaults.objectForKey("savedprofile").textValue(), "Default Profile");
    EXPECT_EQ(std::count(writes.begin(), writes.end(), fakes::frame({0x03, 24, 0x55})), 1);
    EXPECT_EQ(overlay, nullptr);
    EXPECT_EQ(updates, 1);

    writes.clear();
    storeProfile("Tow", {31});
    replay->run();
    EXPECT_GT(written(31), 0);
    EXPECT_EQ(written(24), 0);
}

TEST_F(ReplayTest, WhatCanNotBeReadIsNotReplaced) {
    SettingValueStore::save({{95, AV::forAID(95, fakes::Bytes{7})}}, app->currentVehicle());
    platform.defaults.entries["savedprofile unreadable 1"] = "Tow";
    fakes::connectModule(platform, writes);
    platform.loop.runFor(1s);
    EXPECT_EQ(written(95), 1);
    EXPECT_EQ(written(24), 0);
    EXPECT_FALSE(platform.defaults.entries.contains("savedprofile"));
    EXPECT_EQ(updates, 1);

    writes.clear();
    platform.defaults.setObjectForKey(
        Dictionary{{"version", Number::fromInteger(1)}, {"values", Dictionary{{"95", Data{7}}, {"96", "x"}}}},
        "SETTINGS_Truck");
    storeProfile("Tow", {31});
    platform.defaults.setObjectForKey(Value{"damaged"}, "Tow");
    replay->run();
    EXPECT_EQ(written(95), 1) << "what can be read of the settings";
    EXPECT_EQ(writes.size(), 1U);

    writes.clear();
    storeProfile("Tow", {31});
    const auto vehicle = platform.defaults.entries.extract("current_vehicle");
    platform.defaults.entries["current_vehicle unreadable 1"] = vehicle.mapped();
    replay->run();
    EXPECT_TRUE(writes.empty());
}

TEST_F(ReplayTest, FailuresAreToldAndACancelledReplayEndsWithTheDefaults) {
    storeProfile("Tow", {31, 32, 33});
    onWords = [this](ProgressHUD& shown) {
        if (words.size() == 3) shown.touchCancel();
    };
    fakes::connectModule(platform, writes, false);
    platform.loop.runFor(60s);
    EXPECT_EQ(words,
              (std::vector<std::string>{"Initializing settings (1/3); Setting custom variables",
                                        "Initializing settings (2/3); 1 tuning variable failed",
                                        "Initializing settings (2/3); 1 tuning variable failed; Cancel",
                                        "Initializing settings (2/3); 1 tuning variable failed",
                                        "Initializing settings (2/3); Cancelling...",
                                        "Initializing settings; Setting custom variables",
                                        "Initializing settings (1/1); Setting custom variables"}));
    EXPECT_EQ(platform.defaults.objectForKey("savedprofile").textValue(), "Default Profile");
    EXPECT_EQ(updates, 1);
    EXPECT_EQ(overlay, nullptr);
}

TEST_F(ReplayTest, AConnectMeanwhileStartsItOverAndNotAnotherInside) {
    storeProfile("Tow", {31, 32});
    onWords = [this](ProgressHUD&) {
        if (words.size() == 2) replay->run();  // while the second value is about to be written
    };
    fakes::connectModule(platform, writes);
    platform.loop.runFor(2s);
    EXPECT_EQ(words.size(), 5U);
    EXPECT_EQ(written(31), 2);
    EXPECT_EQ(written(32), 2);
    EXPECT_EQ(updates, 1);
}

TEST_F(ReplayTest, PagesThatAreAliveReplayEachForItself) {
    storeProfile("Tow", {31, 32});
    const auto told = [this](const PassReport&) { ++reports; };
    std::array<ConnectReplay, 2> others{ConnectReplay{app, [](const auto&) {}, told},
                                        ConnectReplay{app, [](const auto&) {}, told}};
    auto& center = platform.notificationCenter();
    const auto second = center.addObserver(sendNotification, [&] { others[0].run(); });
    const auto third = center.addObserver(sendNotification, [&] { others[1].run(); });
    fakes::connectModule(platform, writes);
    platform.loop.runFor(20s);
    EXPECT_EQ(written(31), 3);
    EXPECT_EQ(written(32), 3);
    EXPECT_EQ(updates, 3);
    EXPECT_EQ(reports, 1) << "they say the same";
    app->iTorvFeederDidEstablishConnection(*app->feeder());
    platform.loop.runFor(20s);
    EXPECT_EQ(reports, 2) << "once a connect";
}

TEST_F(ReplayTest, InTheBackgroundItStaysThereUntilItsEnd) {
    storeProfile("Tow", {31, 32, 33});
    bool inBackground = false;
    onWords = [&](ProgressHUD& shown) {
        if (words.back().find("(3/3)") == std::string::npos) {
            inBackground = shown.inBackground();
            return;
        }
        shown.touchBackground();
        shown.touchCancel();
    };
    fakes::connectModule(platform, writes, false);
    platform.loop.runFor(60s);
    EXPECT_EQ(words.back(), "Initializing settings (1/1); Setting custom variables");
    EXPECT_TRUE(inBackground);
}

TEST_F(ReplayTest, AReplayThatIsLeftEndsAndNeverStartsAgain) {
    storeProfile("Tow", {31, 32, 33});
    onWords = [this](ProgressHUD&) {
        EXPECT_TRUE(app->isPassUnderWay());
        if (words.size() == 2) replay->end();
    };
    fakes::connectModule(platform, writes);
    platform.loop.runFor(2s);
    EXPECT_EQ(written(33), 0);
    EXPECT_FALSE(app->isPassUnderWay());
    writes.clear();
    replay->run();
    EXPECT_EQ(written(31), 0);
}

TEST_F(ReplayTest, AReplayThatIsLeftSendsNoFurtherSettingAndNoReset) {
    SettingValueStore::save({{95, AV::forAID(95, fakes::Bytes{7})}, {96, AV::forAID(96, fakes::Bytes{8})}},
                            app->currentVehicle());
    fakes::connectModule(platform, writes, true, [this] { replay->end(); });
    platform.loop.runFor(2s);
    EXPECT_EQ(written(95), 1);
    EXPECT_EQ(written(96) + written(24), 0);
}

TEST_F(ReplayTest, ATouchOnCancelThatComesTooLateFindsNothing) {
    storeProfile("Tow", {31});
    fakes::connectModule(platform, writes, false);
    std::shared_ptr<ProgressHUD> kept;
    onWords = [&](ProgressHUD&) { kept = overlay; };
    platform.loop.runFor(20s);
    ASSERT_NE(kept, nullptr);
    EXPECT_FALSE(kept->cancellable());
    kept->touchCancel();
    platform.loop.runWork();
    EXPECT_EQ(platform.defaults.objectForKey("savedprofile").textValue(), "Tow");
}

}  // namespace
