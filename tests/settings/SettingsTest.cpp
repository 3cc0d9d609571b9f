// Device settings, the drive train and the warnings on their screens, in virtual time with a module that the
// test plays.
#include <gtest/gtest.h>

#include "attributes/AVDriveTrainInfoData.h"
#include "attributes/AVVehicleSpeedFormatter.h"
#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "fakes/PlayedModule.h"
#include "platform/NotificationNames.h"
#include "platform/StoredKeys.h"
#include "screens/NavigationController.h"
#include "settings/screens/SensorsViewController.h"
#include "settings/screens/SettingsViewController.h"
#include "vehicles/UntakenSettings.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;
using fakes::Bytes;
using fakes::frame;

Number number(int value) {
    return Number::fromInteger(value);
}

Dictionary attribute(int aid, const char* name, int formatter, int lowest, int highest) {
    return {{"aid", number(aid)},
            {"name", name},
            {"unit", "RPM"},
            {"formatter", number(formatter)},
            {"multiplyFactor", number(1)},
            {"minValue", number(lowest)},
            {"maxValue", number(highest)}};
}

Dictionary with(Dictionary attribute, std::initializer_list<Dictionary::Member> members) {
    for (const auto& [key, value] : members)
        attribute.set(key, value);
    return attribute;
}

enum Row { driveTrain, turboTimer, gear, toggle, plain, oneWay };

Vehicle truck(const char* name = "Truck") {
    Vehicle vehicle;
    vehicle.setName(name);
    const Array settings{
        with(attribute(226, "Drive Train", 8, 20, 40), {{"unit", "INCHES"},
                                                        {"options", Array{"Automatic", "Manual"}},
                                                        {"optionValues", Array{"3", "5"}},
                                                        {"options1", Array{"3.31", "3.73", "4.10"}},
                                                        {"optionValues1", Array{"0", number(1)}}}),
        with(attribute(152, "Turbo Timer", 7, 30, 600), {{"toggable", true},
                                                         {"options", Array{"Time", "Heat"}},
                                                         {"additionalUnit", "DEGF"},
                                                         {"additionalMinValue", number(300)},
                                                         {"additionalMaxValue", number(700)}}),
        with(attribute(91, "Gear", 5, 0, 100), {{"options", Array{"Off", "On"}}}),
        with(attribute(153, "High Idle", 6, 900, 1500), {{"toggable", true}}),
        attribute(95, "Shift Light", 0, 5, 4200),
        attribute(97, "Read Only", 1, 0, 1),
    };
    const Array sensors{
        with(attribute(10, "Boost", 0, 0, 60), {{"warningRule", number(3)}, {"warningValue", number(45)}}),
        attribute(11, "Silent", 0, 0, 60),
        with(attribute(12, "Oil", 0, 5, 100), {{"warningRule", number(2)}, {"warningValue", number(-1)}}),
    };
    vehicle.setInfo(
        ProfileInfo{Dictionary{{"parameters", Dictionary{{"settings", settings}, {"sensors", sensors}}}}});
    return vehicle;
}

class SettingsTest : public testing::Test, protected iTorvAppDelegateDelegate {
protected:
    SettingsTest() {
        fakes::freshenEngine();
        platform.defaults.setObjectForKey(Value{"Default Profile"}, activeProfileKey);
    }
    ~SettingsTest() override {
        AVVehicleSpeedFormatter::setCurrentTireSize("1");
        AVVehicleSpeedFormatter::setStockTireSize("1");
        if (app) app->applicationWillTerminate();
    }

    /// With these values stored, a screen of the kind on a menu of its own.
    template <class Screen>
    std::shared_ptr<Screen> open(const ProfileDictionary& values = {{95, AV::forAID(95, Bytes{100})}},
                                 bool connects = true, bool acknowledges = true) {
        SettingValueStore::save(values, truck());
        VehicleDataSource::setCurrentVehicle(truck());
        app = std::make_shared<iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
        app->addDelegate(this);
        if (connects) fakes::connectModule(platform, writes, acknowledges);
        auto screen = std::make_shared<Screen>(app);
        stack = std::make_shared<NavigationController>(screen);
        stack->loadViewIfNeeded();
        stack->viewWillAppear();
        return screen;
    }
    void run() { platform.loop.runWork(); }
    void touch(TableViewController& table, int row) {
        table.touchRow(0, row);
        run();
    }
    template <class Screen>
    Screen& top() {
        return dynamic_cast<Screen&>(*stack->topViewController());
    }
    /// Into the first field of the topmost screen, then Save. False when the screen stays.
    bool type(const QString& text) {
        auto& screen = top<TextValueGetterViewController>();
        dynamic_cast<TextValueGetterTableViewCell&>(*screen.cellAt({0, 0})).textEdited(text);
        screen.rightBarButton()->touch();
        run();
        return stack->topViewController() != &screen;
    }
    void pick(int row) { touch(top<TablePickerViewController>(), row); }
    [[nodiscard]] static std::string detail(const TableViewController& table, int row) {
        return table.cellAt({0, row})->detailText().toStdString();
    }
    [[nodiscard]] static Bytes stored(AID aid) {
        const auto values = SettingValueStore::load(truck());
        const auto bytes = values->at(aid).bytes();
        return {bytes.begin(), bytes.end()};
    }

    void iTorvAppDelegateDidChangeCurrentVehicle(iTorvAppDelegate&) override {}
    void iTorvAppDelegateDidChangeWarningSensors(iTorvAppDelegate&) override { ++refreshes; }

    fakes::FakePlatform platform;
    std::shared_ptr<iTorvAppDelegate> app;
    std::shared_ptr<NavigationController> stack;
    std::vector<Bytes> writes;
    int refreshes = 0;
};

TEST_F(SettingsTest, RecordsByTable) {
    struct Case {
        AID aid;
        std::int32_t flags;
        std::function<AVFormatterData(const TorvAttribute&, const AVFormatterData&)> change;
        std::int32_t flagsAfter;
        const char* valueAfter;
    };
    const auto turn = [](bool on) {
        return [on](const auto& setting, const auto& record) { return switchedRecord(setting, record, on); };
    };
    const auto choose = [](std::size_t choice) {
        return [choice](const auto& setting, const auto& record) {
            return pickedRecord(setting, record, choice);
        };
    };
    const auto all = truck().settings();
    for (const auto& row :
         {Case{152, 17, turn(true), 18, "7"}, Case{152, 18, turn(false), 17, "7"},
          Case{152, 10, turn(false), 9, "7"}, Case{153, 1, turn(true), 2, "7"},
          Case{153, 2, turn(false), 1, "7"}, Case{152, 10, choose(1), 18, "300"},
          Case{152, 17, choose(0), 9, "30"}, Case{91, 1, choose(1), 2, "7"}, Case{91, 2, choose(2), 4, "7"},
          Case{91, 4, choose(0), 1, "7"}, Case{91, 4, choose(9), 1, "7"}}) {
        const auto setting = *std::ranges::find(all, row.aid, &TorvAttribute::aid);
        const auto record = row.change(setting, {.flags = row.flags, .value = "7", .additionalData = {}});
        EXPECT_EQ(record.flags, row.flagsAfter) << row.aid << " from " << row.flags;
        EXPECT_EQ(record.value, row.valueAfter) << row.aid << " from " << row.flags;
    }
}

TEST_F(SettingsTest, RowsShowTheStoreAndTheLinkDecidesWhatCanBeChosen) {
    auto& screen = *open<SettingsViewController>({{95, AV::forAID(95, Bytes{0x10, 0x0E})},
                                                  {152, AV::forAID(152, Bytes{3, 0x90, 1})},
                                                  {91, AV::forAID(91, Bytes{2, 40})}},
                                                 false);
    EXPECT_EQ(detail(screen, turboTimer), "400 ºF");
    EXPECT_EQ(detail(screen, plain), "3600 RPM");
    auto& label = dynamic_cast<TappableLabelTableViewCell&>(*screen.cellAt({0, gear}));
    EXPECT_EQ(label.additionalLabel(), "2");  // the profile has no third option
    EXPECT_FALSE(label.isEnabled());
    for (const int row : {turboTimer, gear, toggle, plain, oneWay, driveTrain})
        touch(screen, row);
    EXPECT_EQ(stack->topViewController()->title(), "Drive Train Info");
    EXPECT_TRUE(screen.cellAt({0, plain})->dimmed());
    EXPECT_FALSE(screen.cellAt({0, driveTrain})->dimmed());
    fakes::connectModule(platform, writes);
    EXPECT_FALSE(screen.cellAt({0, plain})->dimmed());
    EXPECT_EQ(screen.cellAt({0, turboTimer})->accessory(), TableViewCell::Accessory::Detail);
    EXPECT_EQ(screen.cellAt({0, oneWay})->note(), "can only be read: nothing is known of how to write it");
    stack->popViewControllerAnimated(false);
    touch(screen, oneWay);
    EXPECT_EQ(stack->depth(), 1);
}

TEST_F(SettingsTest, ATypedValueIsCheckedSentStoredAndShown) {
    auto& screen = *open<SettingsViewController>();
    touch(screen, plain);
    auto& field = top<TextValueGetterViewController>();
    EXPECT_EQ(field.toolTip(), "This attribute min value is 5 RPM and it's max value is 4200 RPM.");
    for (const auto& refused : {QString{"4"}, QString{"4201"}, QString{"  "}, QString{"٤"}, QString{"1\n2"},
                                QString{10000, u'9'}, QString{"NaN"}}) {
        EXPECT_FALSE(type(refused)) << refused.left(20).toStdString();
        ASSERT_NE(stack->alert(), nullptr);
        EXPECT_EQ(stack->alert()->title(), "Value out of range");
        EXPECT_EQ(stack->alert()->message(),
                  "The value you typed is out of range. Please use values between 5 and 4200.");
        stack->alert()->touchButton(0);
        run();
    }
    EXPECT_TRUE(writes.empty());
    EXPECT_TRUE(type(" 4200\t"));
    EXPECT_EQ(writes, std::vector<Bytes>{frame({0x04, 95, 0x68, 0x10})});
    EXPECT_EQ(stored(95), (Bytes{0x68, 0x10, 0, 0}));
    EXPECT_EQ(detail(screen, plain), "4200 RPM");
    touch(screen, plain);
    top<TextValueGetterViewController>().rightBarButton()->touch();  // untouched: the old value once more
    run();
    EXPECT_EQ(writes.size(), 2U);
    EXPECT_EQ(stored(95), (Bytes{0x68, 0x10, 0, 0}));
}

TEST_F(SettingsTest, SwitchesAndChoicesReachTheModuleAndTheTurboLamp) {
    auto& screen = *open<SettingsViewController>({{152, AV::forAID(152, Bytes{2, 30, 0})}});
    std::string lamp;
    const auto on = platform.notificationCenter().addObserver(turboOnNotification, [&] { lamp += "on "; });
    const auto off = platform.notificationCenter().addObserver(turboOffNotification, [&] { lamp += "off "; });
    const auto flip = [&](int row) {
        dynamic_cast<SwitchTableViewCell&>(*screen.cellAt({0, row})).touchSwitch();
        run();
    };
    flip(turboTimer);
    EXPECT_EQ(stored(152), (Bytes{3, 30, 0, 0}));
    EXPECT_TRUE(platform.defaults.objectForKey(turboSettingKey).boolValue());
    flip(turboTimer);
    flip(toggle);
    EXPECT_EQ(lamp, "on off ");
    EXPECT_FALSE(platform.defaults.objectForKey(turboSettingKey).boolValue());
    screen.touchAccessory(0, turboTimer);
    run();
    EXPECT_EQ(top<TablePickerViewController>().selectedValue(), "Heat");
    pick(1);
    EXPECT_EQ(stack->depth(), 2);  // chosen already: nothing is told
    pick(0);
    EXPECT_EQ(stack->depth(), 1);
    EXPECT_EQ(stored(152), (Bytes{0, 30, 0, 0}));
    EXPECT_EQ(detail(screen, turboTimer), "30 RPM");
    dynamic_cast<TappableLabelTableViewCell&>(*screen.cellAt({0, gear})).touchLabel();
    run();
    pick(1);
    EXPECT_EQ(writes, (std::vector<Bytes>{frame({0x05, 152, 3, 30, 0}), frame({0x05, 152, 2, 30, 0}),
                                          frame({0x05, 153, 1, 0, 0}), frame({0x05, 152, 0, 30, 0}),
                                          frame({0x04, 91, 1, 0})}));
}

TEST_F(SettingsTest, WholeNumbersWithinTheRangePass) {
    open<SettingsViewController>();
    const DeviceSettings settings{app->feeder(), truck()};
    const struct {
        double lowest;
        double highest;
        const char* text;
        bool passes;
    } rows[]{{0, 0, "0", true},    {0, 0, " \t", true},   {0, 0, "1", false},      {0, 0, "-1", false},
             {5, 4200, "5", true}, {5, 4200, "4", false}, {5, 4200, "4200", true}, {5, 4200, "4201", false},
             {5, 4200, "", false}, {-5, 9.9, "-5", true}, {-5, 9.9, "10", false}};
    for (const auto& row : rows) {
        auto setting = settings.settings()[plain];
        setting.minValue = row.lowest;
        setting.maxValue = row.highest;
        EXPECT_EQ(settings.accepts(setting, row.text), row.passes) << row.text << " up to " << row.highest;
        EXPECT_EQ(settings.range(setting).isTold, row.highest != 0);
    }
}

TEST_F(SettingsTest, ASwitchThatIsUsedAgainKeepsItsState) {
    auto& screen = *open<SettingsViewController>({{153, AV::forAID(153, Bytes{1})}});
    const auto isOn = [&] { return dynamic_cast<SwitchTableViewCell&>(*screen.cellAt({0, toggle})).isOn(); };
    EXPECT_TRUE(isOn());
    SettingValueStore::save({{153, AV::forAID(153, Bytes{0})}}, truck());  // by another program
    platform.notificationCenter().postNotificationName(customTuningSettingsUpdated);
    EXPECT_TRUE(isOn());
}

TEST_F(SettingsTest, AChoiceOfAVehicleIsOneCommitForAllItsSettings) {
    Array many;
    for (int aid = 1; aid <= 300; ++aid)
        many.push_back(attribute(aid % 200 + 1, "Setting", 0, aid, 4200));
    Vehicle large;
    large.setName("Large");
    large.setInfo(ProfileInfo{Dictionary{{"parameters", Dictionary{{"settings", many}}}}});
    std::string lamp;
    const auto off = platform.notificationCenter().addObserver(
        turboOffNotification, [&] { lamp = std::to_string(platform.defaults.synchronized); });
    storeLowestValues(large, truck("Chosen"));
    EXPECT_EQ(SettingValueStore::load(truck("Chosen"))->size(), 200U);
    EXPECT_EQ(SettingValueStore::load(truck("Chosen"))->at(1).bytes()[0], 200);
    EXPECT_EQ(platform.defaults.synchronized, 1);
    EXPECT_EQ(lamp, "1") << "the lamp goes off last";
}

TEST_F(SettingsTest, WhatTheModuleDoesNotTakeIsMarkedUntilItDoes) {
    auto& screen = *open<SettingsViewController>({}, true, false);
    touch(screen, plain);
    EXPECT_TRUE(type("50"));
    EXPECT_EQ(std::count(writes.begin(), writes.end(), frame({0x04, 95, 50, 0})), 21);
    EXPECT_EQ(stored(95), (Bytes{50, 0, 0, 0}));
    EXPECT_EQ(screen.cellAt({0, plain})->note(), "not taken by the module");
    fakes::connectModule(platform, writes);
    touch(screen, plain);
    EXPECT_TRUE(type("51"));
    EXPECT_EQ(screen.cellAt({0, plain})->note(), "");
    EXPECT_FALSE(UntakenSettings::contains(truck(), 95));
    touch(screen, plain);
    platform.stream().lose();
    writes.clear();
    EXPECT_TRUE(type("52"));
    EXPECT_TRUE(writes.empty());
    EXPECT_EQ(stored(95)[0], 52);
    EXPECT_EQ(screen.cellAt({0, plain})->note(), "not taken by the module");
}

TEST_F(SettingsTest, AChangeWaitsForTheOneBeforeItAndForAPass) {
    const auto screen = open<SettingsViewController>({{95, AV::forAID(95, Bytes{9})}});
    auto& high = dynamic_cast<SwitchTableViewCell&>(*screen->cellAt({0, toggle}));
    bool nested = false;
    const auto acknowledge = platform.stream().onWrite;
    platform.stream().onWrite = [&](const Bytes& sent) {
        acknowledge(sent);
        if (std::exchange(nested, true)) return;
        high.touchSwitch();
        screen->rightBarButton()->touch();  // Reset
        stack->touchBack();                 // and the value's screen is left meanwhile
    };
    touch(*screen, plain);
    type("77");
    EXPECT_EQ(stored(95), (Bytes{77, 0, 0, 0}));
    EXPECT_EQ(writes.size(), 1U);
    EXPECT_FALSE(high.isOn());
    EXPECT_EQ(stack->topViewController(), screen.get());
    for (int alerts = 0; alerts < 2; ++alerts) {
        ASSERT_NE(stack->alert(), nullptr);
        EXPECT_EQ(stack->alert()->title(), "One moment");
        stack->alert()->touchButton(0);
        run();
    }
    {
        const auto pass = app->beginPass();
        touch(*screen, plain);
        EXPECT_FALSE(type("78"));
        stack->alert()->touchButton(0);
        run();
    }
    EXPECT_TRUE(type("78"));
    EXPECT_EQ(writes.size(), 2U);
}

TEST_F(SettingsTest, AnotherVehicleEndsTheChangesOfTheOldOne) {
    auto& screen = *open<SettingsViewController>();
    touch(screen, plain);
    app->setCurrentVehicle(truck("Other"));
    EXPECT_TRUE(type("50"));
    EXPECT_TRUE(writes.empty());
    EXPECT_EQ(stored(95)[0], 100);
    ASSERT_NE(stack->alert(), nullptr);
    EXPECT_EQ(stack->alert()->title(), "Not saved");
    stack->alert()->touchButton(0);
    screen.rightBarButton()->touch();  // Reset
    run();
    EXPECT_EQ(stored(95)[0], 100);
}

TEST_F(SettingsTest, ResetForgetsAndTheNextConnectWritesTheLowest) {
    auto& screen = *open<SettingsViewController>();
    UntakenSettings::note(truck(), 95, false);
    screen.rightBarButton()->touch();
    run();
    EXPECT_FALSE(SettingValueStore::load(truck()));
    EXPECT_FALSE(UntakenSettings::contains(truck(), 95));
    EXPECT_EQ(detail(screen, plain), "0 RPM");
    EXPECT_TRUE(writes.empty());
    platform.stream().lose();
    run();
    fakes::connectModule(platform, writes);
    EXPECT_EQ(stored(95)[0], 5);
    touch(screen, plain);
    EXPECT_TRUE(type("6"));
    EXPECT_TRUE(SettingValueStore::load(truck())->contains(153));  // what the connect has stored stays
}

TEST_F(SettingsTest, TheDriveTrainTravelsInOneRecordAndCorrectsSpeeds) {
    auto& settings = *open<SettingsViewController>({{226, AV::forAID(226, Bytes{6, 9, 1, 0, 0, 4})}});
    touch(settings, driveTrain);
    auto& screen = top<DriveTrainInfoViewController>();
    EXPECT_EQ(detail(screen, 0), "9");  // the profile lists no such code
    EXPECT_EQ(detail(screen, 1), "3.73");
    EXPECT_EQ(detail(screen, 2), "0.0 INCHES");
    touch(screen, 0);
    EXPECT_EQ(top<TablePickerViewController>().title(), "Drive Train");
    pick(1);
    touch(screen, 1);
    EXPECT_EQ(top<TablePickerViewController>().values().size(), 2);  // the third has no code
    pick(0);
    touch(screen, 2);
    for (const auto& refused : {"40.1", "19.9", "31.5\"", "31,5", ""}) {
        EXPECT_FALSE(type(refused)) << refused;
        ASSERT_NE(stack->alert(), nullptr);
        EXPECT_EQ(stack->alert()->message(),
                  "The value you typed is out of range. Please use values between 20.0 and 40.0.");
        stack->alert()->touchButton(0);
        run();
    }
    EXPECT_TRUE(type("31.5"));
    touch(screen, 2);
    EXPECT_TRUE(type("33"));
    const Bytes record{6, 5, 0, 0x4A, 0x01, 4};
    EXPECT_EQ(platform.defaults.objectForKey("SETTINGS_Truck")["values"]["226"], Value{record});
    ASSERT_EQ(writes.size(), 4U);
    EXPECT_EQ(Bytes(writes[2].begin() + 5, writes[2].begin() + 7), (Bytes{0x3B, 0x01}));
    EXPECT_EQ(AVVehicleSpeedFormatter::stockTireSize(), "31.5");
    EXPECT_EQ(AVVehicleSpeedFormatter::currentTireSize(), "33");
    EXPECT_EQ(platform.defaults.objectForKey(stockTireSizeKey).textValue(), "31.5");
    app->iTorvFeederDidFailToConnect(*app->feeder());
    screen.iTorvFeederDidFailToConnect(*app->feeder());
    touch(screen, 0);
    EXPECT_EQ(stack->topViewController(), &screen);
    EXPECT_TRUE(screen.cellAt({0, 0})->dimmed());
}

TEST_F(SettingsTest, ADriveTrainThatIsNotTakenSaysSoOnBothScreens) {
    auto& settings = *open<SettingsViewController>({{226, AV::forAID(226, Bytes{6})}}, true, false);
    touch(settings, driveTrain);
    auto& screen = top<DriveTrainInfoViewController>();
    touch(screen, 1);
    pick(1);
    EXPECT_EQ(screen.viewForFooterInSection(0).text, "⚠ not taken by the module");
    const auto pass = app->beginPass();
    const auto isRefused = [&] {
        const bool refused = stack->alert() && stack->alert()->title() == "One moment";
        if (stack->alert()) stack->alert()->touchButton(0);
        run();
        return refused;
    };
    touch(screen, 1);
    pick(0);
    EXPECT_TRUE(isRefused());
    EXPECT_EQ(stack->topViewController(), &screen);
    touch(screen, 2);
    EXPECT_FALSE(type("30"));
    EXPECT_TRUE(isRefused());
    EXPECT_EQ(stored(226)[2], 1);
    EXPECT_EQ(settings.cellAt({0, driveTrain})->note(), "not taken by the module");
}

TEST_F(SettingsTest, SensorsOfOneNameLoseNothingOfEachOther) {
    Vehicle twins;
    twins.setName("Twins");
    const auto sensor = with(attribute(10, "Boost", 0, 0, 60), {{"warningRule", number(1)}});
    twins.setInfo(ProfileInfo{Dictionary{{"parameters", Dictionary{{"sensors", Array{sensor, sensor}}}}}});
    SensorWarnings warnings{twins};
    warnings.setText(0, "60");
    warnings.setSwitch(1, false);
    EXPECT_EQ(twins.sensors()[0].warningValue, 60);
    EXPECT_EQ(twins.sensors()[0].warningRule, 101);
    warnings.setText(0, "50");  // keeps the rule that its twin has stored
    EXPECT_EQ(twins.sensors()[0].warningRule, 101);
}

TEST_F(SettingsTest, WarningsAreSwitchedByAHundredAndEveryChangeIsTold) {
    auto& screen = *open<SensorsViewController>();
    ASSERT_EQ(screen.numberOfRowsInSection(0), 2);
    EXPECT_EQ(detail(screen, 1), "18446744073709551615 RPM");
    const auto rules = [] {
        std::string text;
        for (const auto& sensor : truck().sensors())
            text += std::to_string(sensor.warningRule) + "/" + std::to_string(sensor.warningValue) + " ";
        return text;
    };
    auto& toggle = dynamic_cast<SwitchTableViewCell&>(*screen.cellAt({0, 0}));
    EXPECT_TRUE(toggle.isOn());
    toggle.touchSwitch();
    run();
    EXPECT_EQ(rules(), "103/45 0/0 2/-1 ");
    touch(screen, 0);
    EXPECT_FALSE(type("61"));
    stack->alert()->touchButton(0);
    run();
    EXPECT_TRUE(type("60"));
    EXPECT_EQ(rules(), "103/60 0/0 2/-1 ");
    dynamic_cast<SwitchTableViewCell&>(*screen.cellAt({0, 0})).touchSwitch();
    run();
    EXPECT_EQ(rules(), "3/60 0/0 2/-1 ");
    EXPECT_EQ(refreshes, 3);
    screen.rightBarButton()->touch();
    run();
    EXPECT_EQ(rules(), "3/45 0/0 2/-1 ");
    EXPECT_EQ(refreshes, 4);
}

}  // namespace
