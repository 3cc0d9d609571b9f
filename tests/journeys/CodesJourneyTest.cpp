// From the menu to the text of a trouble code in the real window, with the bench behind it.
#include <gtest/gtest.h>

#include <QQuickItem>
#include <QTemporaryDir>
#include <atomic>

#include "diagnostics/DtcClear.h"
#include "fakes/Application.h"
#include "fakes/HasReadAll.h"
#include "screens/NavigationController.h"
#include "screens/TableViewController.h"

namespace {

using namespace torv;

class CodesJourneyTest : public testing::Test {
protected:
    CodesJourneyTest() {
        qputenv("XDG_DATA_HOME", home.path().toUtf8());
        EXPECT_EQ(module.start().value_or(""), "");
        port = module.port();
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
    /// The look of this model has the keyboard's focus.
    bool hasFocus(const char* name, const std::function<const QObject*()>& model) {
        return app->waitUntil([&] {
            for (const auto* item = app->view()->activeFocusItem(); item; item = item->parentItem()) {
                const auto shown = item->property(name);
                if (shown.isValid() && model() && shown.value<QObject*>() == model()) return true;
            }
            return false;
        });
    }
    /// By keys alone.
    bool choose(int row, const std::function<bool()>& done) {
        if (!hasFocus("screen", [&] { return top(); })) return false;
        for (int i = 0; i <= row; ++i)
            key(Qt::Key_Down);
        key(Qt::Key_Return);
        return app->waitUntil(done);
    }
    bool agree(const QString& question, const std::function<bool()>& done) {
        if (!hasFocus("alert", [&] { return app->stage->alert(); })) return false;
        EXPECT_EQ(app->stage->alert()->title(), question);
        key(Qt::Key_Return);
        return app->waitUntil(done);
    }
    bool escape(const std::function<bool()>& done) {
        if (!hasFocus("screen", [&] { return top(); })) return false;
        key(Qt::Key_Escape);
        return app->waitUntil(done);
    }
    [[nodiscard]] bool shows(const QString& title) const {
        return menu->topViewController()->title() == title;
    }
    [[nodiscard]] bool asks() const { return app->stage->alert() != nullptr; }

    const QTemporaryDir home;
    const std::filesystem::path profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json";
    std::atomic<std::uint16_t> port{0};
    // The result of a clear is told once: no frame may be lost.
    bench::Bench module{
        {.rate = 200, .profile = profile, .troubleCodes = {"P0299", "P20EE"}, .hasReadAll = [this] {
             return fakes::hasReadAllFrom(port);
         }}};
    std::unique_ptr<fakes::Application> app;
    std::shared_ptr<NavigationController> menu;
};

TEST_F(CodesJourneyTest, FromTheMenuToTheTextOfACodeAndBackToClearThemAll) {
    ASSERT_TRUE(choose(6, [&] { return shows("DTC's"); }));
    ASSERT_TRUE(choose(0, [&] { return asks(); }));
    ASSERT_TRUE(agree("Read DTC's", [&] { return menu->depth() == 3; }));
    EXPECT_EQ(top()->cellAt({0, 0})->text(), "P0299 - Turbocharger or supercharger A: underboost");
    ASSERT_TRUE(choose(1, [&] { return shows("P201414"); }));
    EXPECT_TRUE(top()->cellAt({0, 0})->text().startsWith("P20EE: SCR NOx catalyst"));
    ASSERT_TRUE(escape([&] { return menu->depth() == 3; }));
    ASSERT_TRUE(escape([&] { return shows("DTC's"); }));

    module.setValue(78, {0, 0});  // the engine stands
    ASSERT_TRUE(app->waitUntil([&] { return !DtcClear::engineTurns(*app->control->feeder()); }));
    ASSERT_TRUE(choose(1, [&] { return asks(); }));
    ASSERT_TRUE(agree("Clear DTC's", [&] { return app->stage->progress() != nullptr; }));
    ASSERT_TRUE(hasFocus("progress", [&] { return app->stage->progress(); }));
    key(Qt::Key_Escape);  // the overlay holds the screen
    ASSERT_TRUE(app->waitUntil([&] { return asks(); }));
    EXPECT_TRUE(shows("DTC's"));
    EXPECT_EQ(app->stage->alert()->title(), "DTC's Cleared");
    EXPECT_EQ(app->stage->alert()->message(), "");
}

}  // namespace
