#include <gtest/gtest.h>

#include <QSignalSpy>

#include "diagnostics/screens/GroupsViewController.h"
#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "screens/NavigationController.h"
#include "screens/Stage.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

Dictionary sensor(int aid, const char* name, const char* category, const char* unit = "PSI",
                  int formatter = 0) {
    return {{"aid", Number::fromInteger(aid)},
            {"name", name},
            {"category", category ? Value{category} : Value{}},
            {"unit", unit},
            {"formatter", Number::fromInteger(formatter)},
            {"multiplyFactor", Number::fromInteger(1)},
            {"warningRule", Number::fromInteger(1)},
            {"warningValue", Number::fromInteger(1000)}};
}

Vehicle vehicleWith(Array sensors) {
    Vehicle vehicle;
    vehicle.setInfo(ProfileInfo{Dictionary{{"parameters", Dictionary{{"sensors", std::move(sensors)}}}}});
    return vehicle;
}

class GroupsTest : public testing::Test {
protected:
    GroupsTest() {
        fakes::freshenEngine();
        feeder = std::make_shared<iTorvFeeder>();
    }

    std::shared_ptr<GroupsViewController> show(Array sensors) {
        auto screen = std::make_shared<GroupsViewController>(vehicleWith(std::move(sensors)), feeder);
        screen->loadViewIfNeeded();
        screen->viewWillAppear();
        return screen;
    }
    static void receive(std::uint8_t aid, const fakes::Bytes& bytes) {
        const std::scoped_lock lock{avStoreMutex()};
        std::copy(bytes.begin(), bytes.end(), x2comReceiveSlot(aid));
    }

    fakes::FakePlatform platform;
    std::shared_ptr<iTorvFeeder> feeder;
};

TEST_F(GroupsTest, TheCategoryAndNotThePlacePutsASensorIntoItsRow) {
    const auto screen =
        show({sensor(1, "second", "Turbo_1"), sensor(2, "none", nullptr), sensor(3, "fuel", "Fuel_0"),
              sensor(4, "first", "Turbo_0"), sensor(5, "past the end", "Turbo_9"),
              sensor(6, "loses", "Fuel_1"), sensor(7, "wins", "Fuel_1"), sensor(8, "no row", "Lone")});
    EXPECT_EQ(screen->title(), "Diagnostics");
    ASSERT_EQ(screen->numberOfSections(), 3);
    const auto text = [&](int section, int row) {
        return screen->cellAt({section, row})->text().toStdString();
    };
    EXPECT_EQ(screen->titleForHeaderInSection(0), "Turbo");
    EXPECT_EQ(screen->numberOfRowsInSection(0), 3);
    EXPECT_EQ(text(0, 0), "first");
    EXPECT_EQ(text(0, 1), "second");
    EXPECT_EQ(text(0, 2), "");
    EXPECT_EQ(text(1, 0), "fuel");
    EXPECT_EQ(text(1, 1), "wins");
    EXPECT_EQ(screen->titleForHeaderInSection(2), "Lone");
    EXPECT_EQ(text(2, 0), "");
    EXPECT_EQ(show({})->rows()->rowCount(), 0);
}

TEST_F(GroupsTest, ValuesComeHalfASecondLaterInTheLayoutOfTheirUnit) {
    struct Row {
        const char* name;
        std::uint8_t aid;
        const char* unit;
        int formatter;
        fakes::Bytes bytes;
        const char* text;
    };
    const std::vector<Row> rows{
        {"unit text", 101, "DEGF", 0, {0x2C, 1}, "300 ºF"},
        {"raw unit key", 102, "LB/MIN", 0, {5}, "5 LB/MIN"},
        {"seconds", 103, "tSEC", 0, {0x10, 0x0E}, "   1:00:00"},
        {"time", 186, "tSEC", 10, {2, 1, 30, 45}, " 257:30:45"},
        {"minutes", 104, "tMIN", 0, {125}, "   2:05"},
        {"no formatter", 105, "PSI", 99, {125}, ""},
    };
    Array sensors;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        receive(rows[i].aid, rows[i].bytes);
        const auto category = "All_" + std::to_string(i);
        sensors.push_back(
            sensor(rows[i].aid, rows[i].name, category.c_str(), rows[i].unit, rows[i].formatter));
    }
    const auto screen = show(sensors);
    EXPECT_EQ(screen->cellAt({0, 0})->detailText(), "");
    platform.loop.runFor(500ms);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(screen->cellAt({0, static_cast<int>(i)})->detailText().toStdString(), rows[i].text)
            << rows[i].name;
    }

    auto* cell = screen->cellAt({0, 0});
    const QSignalSpy changes{cell, &TableViewCell::detailTextChanged};
    platform.loop.runFor(5000ms);
    EXPECT_EQ(changes.count(), 0);  // nothing new, nothing drawn
    EXPECT_FALSE(cell->alarming());
    receive(101, {0xE8, 3});
    platform.loop.runFor(500ms);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(cell->alarming());
    platform.loop.runFor(4000ms);
    EXPECT_TRUE(cell->dimmed());  // the module has fallen silent
}

}  // namespace
