// The menu's rows by vehicle.
#include <gtest/gtest.h>

#include "app/Screens.h"
#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "screens/NavigationController.h"
#include "screens/TableViewController.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;

struct MainMenuTest : testing::Test {
    MainMenuTest() {
        fakes::freshenEngine();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
    }
    ~MainMenuTest() override { app->applicationWillTerminate(); }
    void use(const char* name, Vehicle::Text DTC) {
        Vehicle vehicle;
        vehicle.setName(name);
        vehicle.setDTC(std::move(DTC));
        VehicleDataSource::setCurrentVehicle(vehicle);
        menu->viewWillAppear();
    }

    fakes::FakePlatform platform;
    std::shared_ptr<iTorvAppDelegate> app = std::make_shared<iTorvAppDelegate>();
    std::shared_ptr<TableViewController> menu =
        std::dynamic_pointer_cast<TableViewController>(Screens{app}.mainMenu());
};

TEST_F(MainMenuTest, TheLastRowIsForVehiclesWithTroubleCodesAndTheFirstNamesTheVehicle) {
    use("Truck", "YES");
    ASSERT_EQ(menu->numberOfRowsInSection(0), 7);
    EXPECT_EQ(menu->cellAt({0, 6})->text(), "DTC's");
    EXPECT_EQ(menu->cellAt({0, 0})->detailText(), "Truck");
    for (const auto& no : {Vehicle::Text{"yes"}, Vehicle::Text{}}) {
        use("Van", no);  // while another screen was over the menu
        EXPECT_EQ(menu->numberOfRowsInSection(0), 6);
        EXPECT_EQ(menu->cellAt({0, 6}), nullptr);
        EXPECT_EQ(menu->cellAt({0, 0})->detailText(), "Van");
    }
}

TEST_F(MainMenuTest, EachRowLeadsToTheScreenOfItsName) {
    use("Truck", "YES");
    NavigationController stack{menu};
    for (int row = 0; row < 7; ++row) {
        menu->touchRow(0, row);
        menu->touchRow(0, row);  // a second touch in the same turn opens nothing more
        platform.loop.runWork();
        ASSERT_EQ(stack.depth(), 2) << row;
        EXPECT_EQ(stack.topViewController()->title(), menu->cellAt({0, row})->text());
        stack.popViewControllerAnimated(false);
        platform.loop.runWork();
    }
}

TEST_F(MainMenuTest, AStartWithAFileEndsThisOneUnlessAPassIsUnderWayAndTheUserWantsItToGoOn) {
    const auto page = Screens{app}.carSetup();
    std::optional<bool> ends;
    const auto ask = [&] { Screens{app}.askToEnd(page.get(), [&](bool yes) { ends = yes; }); };
    ask();
    EXPECT_EQ(ends, true);
    const auto pass = app->beginPass();
    for (const int button : {0, 1}) {
        ends.reset();
        ask();
        EXPECT_FALSE(ends);
        ASSERT_NE(page->alert(), nullptr);
        page->alert()->touchButton(button);
        platform.loop.runWork();
        EXPECT_EQ(ends, button == 1);
    }
}

}  // namespace
