// From the menu to the text of a trouble code in the real window, with the bench behind it.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "fakes/Application.h"
#include "screens/NavigationController.h"
#include "screens/TableViewController.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

class CodesJourneyTest : public testing::Test {
protected:
    CodesJourneyTest() {
        qputenv("XDG_DATA_HOME", home.path().toUtf8());
        EXPECT_EQ(module.start().value_or(""), "");
        app = std::make_unique<fakes::Application>(module, profile);
        EXPECT_TRUE(app->waitUntilReady());
        menu = std::make_shared<NavigationController>(Screens{app->control}.mainMenu());
        app->page()->presentModalViewControllerAnimated(menu, true);
        EXPECT_TRUE(app->waitUntil([&] { return app->stage->top() == menu.get(); }));
    }

    void key(Qt::Key code) { QTest::keyClick(app->view(), code); }
    [[nodiscard]] TableViewController* top() const {
        return dynamic_cast<TableViewController*>(menu->topViewController());
    }
    /// By keys alone: down to the row, and enter; then for as long as it takes.
    bool choose(int row, const std::function<bool()>& done) {
        app->runFor(600ms);  // the screen before it slides away
        for (int i = 0; i <= row; ++i)
            key(Qt::Key_Down);
        key(Qt::Key_Return);
        return app->waitUntil(done);
    }
    [[nodiscard]] bool shows(const QString& title) const {
        return menu->topViewController()->title() == title;
    }
    [[nodiscard]] bool asks() const { return app->stage->alert() != nullptr; }

    const QTemporaryDir home;
    const std::filesystem::path profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json";
    bench::Bench module{{.rate = 200, .profile = profile, .troubleCodes = {"P0299", "P20EE"}}};
    std::unique_ptr<fakes::Application> app;
    std::shared_ptr<NavigationController> menu;
};

TEST_F(CodesJourneyTest, FromTheMenuToTheTextOfACodeAndBackToClearThemAll) {
    ASSERT_TRUE(choose(6, [&] { return shows("DTC's"); }));
    ASSERT_TRUE(choose(0, [&] { return asks(); }));
    EXPECT_EQ(app->stage->alert()->title(), "Read DTC's");
    app->runFor(100ms);
    key(Qt::Key_Return);
    ASSERT_TRUE(app->waitUntil([&] { return menu->depth() == 3; }));
    EXPECT_EQ(top()->cellAt({0, 0})->text(), "P0299 - Turbocharger or supercharger A: underboost");
    ASSERT_TRUE(choose(1, [&] { return shows("P201414"); }));
    EXPECT_TRUE(top()->cellAt({0, 0})->text().startsWith("P20EE: SCR NOx catalyst"));
    app->runFor(600ms);
    key(Qt::Key_Escape);
    ASSERT_TRUE(app->waitUntil([&] { return menu->depth() == 3; }));
    app->runFor(600ms);
    key(Qt::Key_Escape);
    ASSERT_TRUE(app->waitUntil([&] { return shows("DTC's"); }));

    module.setValue(78, {0, 0});  // the engine stands
    app->runFor(500ms);
    ASSERT_TRUE(choose(1, [&] { return asks(); }));
    app->runFor(100ms);
    key(Qt::Key_Return);
    ASSERT_TRUE(app->waitUntil([&] { return app->stage->progress() != nullptr; }));
    key(Qt::Key_Escape);  // the overlay holds the screen
    ASSERT_TRUE(app->waitUntil([&] { return asks(); }));
    EXPECT_TRUE(shows("DTC's"));
    EXPECT_EQ(app->stage->alert()->title(), "DTC's Cleared");
    EXPECT_EQ(app->stage->alert()->message(), "");
}

}  // namespace
