// A tuning profile is made, edited, pushed and found again, by keys in the real window.
#include <QQuickItem>
#include <fstream>

#include "Journey.h"
#include "tuning/ProfileValues.h"
#include "tuning/screens/EqualizerViewController.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

class TuningJourneyTest : public journeys::Journey {
protected:
    [[nodiscard]] bool waitForTitle(const char* title) {
        return app->waitUntil([&] { return stack() && stack()->topViewController()->title() == title; });
    }
    static std::uint8_t firstByte(const std::string& name, AID aid) {
        return ProfileValues::load(name)->at(aid).bytes()[0];
    }
};

TEST_F(TuningJourneyTest, MadeEditedPushedAndFoundAfterARestart) {
    start();
    openMenuRow(3, "Custom Tuning");
    EXPECT_EQ(table().numberOfRowsInSection(0), 2) << "the module's own values, and what it held at first";
    table().rightBarButton()->touch();
    ASSERT_TRUE(waitForTitle("Profile Name"));
    app->runFor(300ms);
    keys("Tow");
    table().rightBarButton()->touch();
    ASSERT_TRUE(waitForTitle("Tow"));
    EXPECT_EQ(firstByte("Tow", 42), 100);
    chooseRow(0, "Fueling");
    auto& equalizer = *qobject_cast<EqualizerViewController*>(stack()->topViewController());
    app->runFor(300ms);
    // The first band's handle by mouse, and the second's by keys.
    const double u = app->view()->height() / 320.0;
    const auto bar = app->view()->height() / u - (equalizer.scaleFrame().height() + 73 + 51);
    const auto& knob = *equalizer.knobs()[0];
    const auto at = [&](double y) {
        return QPoint{static_cast<int>((30 + 30) * u), static_cast<int>((bar + 32 + 30 + y) * u)};
    };
    QTest::mousePress(app->view(), Qt::LeftButton, {}, at(knob.handleCenter()));
    QTest::mouseMove(app->view(), at(knob.handleCenter() - 20));
    QTest::mouseMove(app->view(), at(-100));
    QTest::mouseRelease(app->view(), Qt::LeftButton, {}, at(-100));
    ASSERT_TRUE(app->waitUntil([&] { return knob.value() == "150"; })) << knob.value().toStdString();
    key(Qt::Key_Right);
    key(Qt::Key_Up);
    EXPECT_EQ(equalizer.knobs()[1]->value(), "101");
    equalizer.rightBarButton()->touch();
    ASSERT_TRUE(waitForTitle("Tow"));
    EXPECT_EQ(firstByte("Tow", 42), 150);
    EXPECT_EQ(firstByte("Tow", 43), 101);
    EXPECT_EQ(module.value(42), bench::Bytes{100}) << "nothing goes to the module before the activation";
    table().rightBarButton()->touch();
    ASSERT_TRUE(waitForTitle("Custom Tuning"));
    app->runFor(300ms);
    chooseRow(2, "Custom Tuning");
    pressAlert("Tow", 1);
    ASSERT_TRUE(app->waitUntil([&] { return table().cellAt({0, 2})->image() != ""; }));
    EXPECT_EQ(module.value(42), bench::Bytes{150});
    EXPECT_EQ(stack()->topViewController()->title(), "Custom Tuning") << "there is nothing to report";

    module.stop();
    ASSERT_EQ(module.start().value_or(""), "");
    module.setValue(43, {7});
    start();
    ASSERT_TRUE(app->waitUntil([&] { return app->stage->alert() != nullptr; })) << "one value is held";
    EXPECT_EQ(app->stage->alert()->message(), "The module has not confirmed 1 of 40 values.");
    app->stage->alert()->touchButton(1);
    ASSERT_TRUE(waitForTitle("Tow"));
    EXPECT_EQ(table().cellAt({0, 0})->detailText(), "wanted 101 %, found 7 %");
    key(Qt::Key_Escape);
    ASSERT_TRUE(app->waitUntil([&] { return app->stage->top() == app->first.get(); }));
    app->runFor(300ms);
    openMenuRow(3, "Custom Tuning");
    EXPECT_NE(table().cellAt({0, 2})->image(), "");
}

/// What a second start with a file does, once the first one has ended.
TEST_F(TuningJourneyTest, AFileBecomesAProfileThatIsListed) {
    const auto file = home.filePath("tow.itorv.json").toStdString();
    std::ofstream{file} << R"({"profileName": "Tow", "vehicleName": "Van", "settingsMap": {"42": "120"}})";
    start({}, "file://" + file);
    ASSERT_TRUE(waitForTitle("Profile Name"));
    table().rightBarButton()->touch();
    pressAlert("Please look this profile through", 0);
    ASSERT_TRUE(waitForTitle("Tow"));
    table().rightBarButton()->touch();
    ASSERT_TRUE(waitForTitle("Custom Tuning"));
    EXPECT_EQ(table().cellAt({0, table().numberOfRowsInSection(0) - 1})->text(), "Tow");
    EXPECT_EQ(firstByte("Tow", 42), 120);
    EXPECT_EQ(module.value(42), bench::Bytes{100}) << "nothing goes to the module before the activation";
}

}  // namespace
