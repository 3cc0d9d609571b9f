// Settings, limits and vehicles by keys in the real window, with the bench behind it.
#include <gtest/gtest.h>

#include <QProcess>

#include "Journey.h"
#include "screens/TextValueGetterViewController.h"
#include "vehicles/SettingValueStore.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

constexpr AID shiftLight = 95;
constexpr AID oilPressureAID = 12;

class SettingsJourneyTest : public journeys::Journey {};

TEST_F(SettingsJourneyTest, ATypedSettingReachesTheModuleAndIsFoundAfterARestart) {
    start();
    openMenuRow(1, "Settings");
    chooseRow(9, "Shift Light");
    keys("99");  // takes the place of what stood there
    key(Qt::Key_Return);
    pressAlert("Value out of range", 0);
    app->runFor(100ms);
    keys("3300");
    key(Qt::Key_Return);
    ASSERT_TRUE(app->waitUntil([&] { return stack()->topViewController()->title() == "Settings"; }));
    EXPECT_EQ(module.value(shiftLight), (bench::Bytes{0xE4, 0x0C}));
    EXPECT_EQ(table().cellAt({0, 9})->detailText(), "3300 RPM");
    backToThePage();
    module.stop();
    ASSERT_EQ(module.start().value_or(""), "");
    start();
    openMenuRow(1, "Settings");
    EXPECT_EQ(table().cellAt({0, 9})->detailText(), "3300 RPM");
}

TEST_F(SettingsJourneyTest, ALimitThatIsChangedWarnsAtOnce) {
    start();
    module.setValue(oilPressureAID, {60});
    auto& warning = app->first->controls()->warningView();
    ASSERT_TRUE(app->waitUntil([&] { return !warning.warning(); }));
    openMenuRow(2, "Sensor Warnings");
    chooseRow(5, "Oil Pressure");
    keys("70");
    key(Qt::Key_Return);
    ASSERT_TRUE(app->waitUntil([&] { return stack()->topViewController()->title() == "Sensor Warnings"; }));
    EXPECT_EQ(table().cellAt({0, 5})->detailText(), "70 PSI");
    backToThePage();
    EXPECT_TRUE(app->waitUntil([&] { return warning.warning(); }));
}

TEST_F(SettingsJourneyTest, TheFirstRunLeadsThroughTheChoiceOfAVehicleToADrivingPage) {
    QProcess server;
    server.start("python3", {ITORV_RESOURCE_DIR "/../tools/update-server", "0"});
    ASSERT_TRUE(server.waitForReadyRead(20000));
    const auto address = server.readLine().trimmed().toStdString();
    start([&](UserDefaults& defaults) {
        defaults.removeObjectForKey(firstRunKey);
        Vehicle van;
        van.setName("Diesel Van 2.8L");
        van.setVersion("1.0");
        van.setUrl(address + "/itorvv2/diesel-van.json");
        VehicleDataSource::saveVehicle(van);
    });
    ASSERT_TRUE(
        app->waitUntil([&] { return stack() && stack()->topViewController()->title() == "Vehicle Setup"; }));
    if (app->waitUntil([&] { return app->stage->alert() != nullptr; }, 500ms))
        pressAlert("Connection Error", 0);
    ASSERT_TRUE(app->waitUntil([&] { return table().numberOfRowsInSection(0) > 1; }));
    int row = 0;
    while (table().cellAt({0, row})->text() != "Diesel Van 2.8L")
        ++row;
    table().touchRow(0, row);  // downloads, and closes
    ASSERT_TRUE(app->waitUntil([&] { return app->stage->top() == app->first.get(); }));
    EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "Diesel Van 2.8L");
    EXPECT_TRUE(SettingValueStore::load(VehicleDataSource::currentVehicle()));
    auto& gauge = app->first->droppableViews()[0]->gauge();
    EXPECT_TRUE(app->waitUntil([&] { return gauge && !gauge->isOld(); }));
    server.kill();
    server.waitForFinished();

    // Another vehicle, when nobody answers any more: the old one stays.
    openMenuRow(0, "Vehicle Setup");
    if (app->waitUntil([&] { return app->stage->alert() != nullptr; }, 500ms))
        pressAlert("Connection Error", 0);
    Vehicle gas;
    gas.setName("Gas Pickup 6.2L V8");
    gas.setUrl(address + "/itorvv2/gas-v8.json");
    VehicleDataSource::saveVehicle(gas);
    backToThePage();
    openMenuRow(0, "Vehicle Setup");
    if (app->waitUntil([&] { return app->stage->alert() != nullptr; }, 500ms))
        pressAlert("Connection Error", 0);
    ASSERT_TRUE(app->waitUntil([&] { return table().numberOfRowsInSection(0) > 2; }));
    table().touchRow(0, 2);
    pressAlert("Warning", 1);
    pressAlert("Update error", 0);
    EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "Diesel Van 2.8L");
}

}  // namespace
