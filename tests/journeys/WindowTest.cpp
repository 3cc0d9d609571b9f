// The real window on the offscreen platform, with the bench behind it.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QImage>
#include <QQuickItem>
#include <algorithm>
#include <array>
#include <cmath>

#include "Journey.h"
#include "qml/KeyboardShift.h"
#include "qml/PictureProvider.h"
#include "tools/pictures/Gallery.h"
#include "vehicles/SettingValueStore.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

QQuickItem* itemWithText(QQuickItem* root, const QString& text) {
    if (root->isVisible() && root->property("text") == text) return root;
    for (auto* child : root->childItems()) {
        if (auto* found = itemWithText(child, text)) return found;
    }
    return nullptr;
}

/// The first one that is seen.
QQuickItem* itemWith(QQuickItem* root, const char* property) {
    if (root->isVisible() && root->property(property).isValid()) return root;
    for (auto* child : root->childItems()) {
        if (auto* found = itemWith(child, property)) return found;
    }
    return nullptr;
}

class WindowTest : public journeys::Journey {
protected:
    WindowTest() { app = std::make_unique<fakes::Application>(module, profile); }

    [[nodiscard]] QQuickItem* shown(const QString& text) const {
        return itemWithText(app->view()->contentItem(), text);
    }
    void click(const QQuickItem& item) const {
        QTest::mouseClick(app->view(), Qt::LeftButton, {},
                          item.mapToScene({item.width() / 2, item.height() / 2}).toPoint());
    }
};

TEST(KeyboardShift, GoesUpJustSoFarThatTheFieldIsSeen) {
    const QRectF keyboard{0, 300, 1000, 340};
    EXPECT_EQ(shiftToUncover({100, 100, 200, 44}, keyboard), 0);
    EXPECT_EQ(shiftToUncover({100, 400, 200, 44}, keyboard), 152);
    EXPECT_EQ(shiftToUncover({100, 20, 200, 600}, keyboard), 20);  // no higher than the field's top
    EXPECT_EQ(shiftToUncover({100, 400, 200, 44}, {}), 0);
    EXPECT_EQ(shiftToUncover({100, 400, 200, 44}, {400, 300, 600, 340}), 0);  // beside it
}

TEST(WindowTurn, OnlyAFullScreenTurnsByItselfAndUprightScreensNever) {
    struct Row {
        const char* text;
        std::array<int, 2> degrees;  ///< in an ordinary upright window, and where it fills the screen
    };
    for (const auto& [text, degrees] :
         {Row{"auto", {0, 90}}, {"left", {-90, -90}}, {"right", {90, 90}}, {"never", {0, 0}}}) {
        const auto turn = turnFromText(text);
        ASSERT_TRUE(turn) << text;
        for (const bool full : {false, true}) {
            EXPECT_EQ(turnOf(*turn, {.fullScreen = full, .upright = true}), degrees.at(full)) << text;
            EXPECT_EQ(turnOf(*turn, {.fullScreen = full, .upright = false}), 0) << text;
            EXPECT_EQ(turnOf(*turn, {.fullScreen = full, .upright = true, .portraitScreen = true}), 0);
        }
    }
    for (const auto* text : {"", "Auto", "auto ", "90", "leftright", "\xC3\xA4"})
        EXPECT_FALSE(turnFromText(text)) << text;
}

TEST_F(WindowTest, AnUprightWindowHasTheStageInItsMiddleAndAWideOneTheLiveListAsAColumn) {
    ASSERT_TRUE(app->waitUntilReady());
    const auto middleOf = [&](const char* property) {
        const auto* const item = itemWith(app->view()->contentItem(), property);
        return item ? item->mapRectToScene({0, 0, item->width(), item->height()}) : QRectF{};
    };
    for (const auto& size : {QSize{720, 1000}, QSize{1600, 640}}) {
        app->view()->resize(size);
        const QPointF middle{size.width() / 2.0, size.height() / 2.0};
        ASSERT_TRUE(app->waitUntil([&] {
            const auto dial = middleOf("place");  // the main one, which is the first
            const double u = dial.width() / 392;
            return std::abs(u - std::min(size.width() / 480.0, size.height() / 320.0)) < 0.05 &&
                   std::abs(dial.center().x() - middle.x()) <= 2 &&
                   std::abs(dial.top() - (middle.y() - 160 * u)) <= 2;
        })) << size.width();
        const auto picture = app->view()->grabWindow();
        for (const auto corner : {QPoint{2, 2}, QPoint{size.width() - 3, size.height() - 3}})
            EXPECT_NE(picture.pixelColor(corner), QColor(Qt::black)) << "the background reaches all edges";
    }
    const auto menu = std::make_shared<NavigationController>(Screens{app->control}.mainMenu());
    app->page()->presentModalViewControllerAnimated(menu, false);
    dynamic_cast<TableViewController&>(*menu->topViewController()).touchRow(0, 5);
    ASSERT_TRUE(app->waitUntil([&] {
        const auto list = middleOf("contentY");
        return menu->depth() == 2 && list.width() < 700 && std::abs(list.center().x() - 800) <= 2;
    }));
}

/// Of all that assistive programs are told.
QStringList accessibleNames(QAccessibleInterface* root) {
    QStringList names{root->text(QAccessible::Name)};
    for (int i = 0; i < root->childCount(); ++i)
        names += accessibleNames(root->child(i));
    return names;
}

TEST_F(WindowTest, PagesSensorsAndWarningsHaveNamesForThoseWhoDoNotSeeThem) {
    ASSERT_TRUE(app->waitUntilReady());
    module.setValue(12, {5});  // oil pressure, below its limit
    // Before the strip is open: then values come once a second, and whose they are is chance.
    ASSERT_TRUE(app->waitUntil([&] { return app->page()->pageView().indicatorViewTag(12)->inWarning(); }));
    QTest::keyClick(app->view(), Qt::Key_Space);
    ASSERT_TRUE(app->waitUntil([&] {
        const auto names = accessibleNames(QAccessible::queryAccessibleInterface(app->view()));
        return names.contains("Page 1 of 3") && names.contains("Oil Pressure, warning") &&
               names.contains("Close the strip of sensors") && names.contains("Menu") &&
               names.contains("Engine Speed");
    })) << accessibleNames(QAccessible::queryAccessibleInterface(app->view())).join("; ").toStdString();
}

TEST_F(WindowTest, AnAlertHasTheKeysAndGivesThemBack) {
    ASSERT_TRUE(app->waitUntilReady());
    const auto gallery = std::make_shared<pictures::Gallery>();
    app->page()->presentModalViewControllerAnimated(std::make_shared<NavigationController>(gallery), true);
    app->runFor(300ms);
    for (int i = 0; i < 7; ++i)
        key(Qt::Key_Down);
    key(Qt::Key_Space);
    ASSERT_TRUE(app->waitUntil([&] { return gallery->heard == "on "; }));
    int pressed = -1;
    const auto show = [&] {
        auto alert = std::make_shared<AlertView>("Title", "Message", QStringList{"Cancel", "OK"});
        alert->setDismissedHandler([&](int index) { pressed = index; });
        gallery->showAlert(alert);
        app->runFor(100ms);
    };
    show();
    key(Qt::Key_Down);
    key(Qt::Key_Delete);
    key(Qt::Key_Return);
    EXPECT_TRUE(app->waitUntil([&] { return pressed == 1; }));
    show();
    key(Qt::Key_Escape);
    EXPECT_TRUE(app->waitUntil([&] { return pressed == 0; }));
    app->runFor(100ms);
    EXPECT_EQ(gallery->heard, "on ");
    key(Qt::Key_Space);
    EXPECT_TRUE(app->waitUntil([&] { return gallery->heard == "on off "; }));
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Space);
    app->runFor(100ms);
    for (const char sign : {'3', '3', '0', '0'})
        QTest::keyClick(app->view(), sign);  // in place of what stood there
    key(Qt::Key_Return);
    EXPECT_TRUE(app->waitUntil([&] { return gallery->heard == "on off return:3300 "; }));
    key(Qt::Key_Escape);
    EXPECT_TRUE(app->waitUntil([&] { return gallery->heard.ends_with("close "); }));
}

TEST_F(WindowTest, TheStateOfTheLinkIsTold) {
    EXPECT_EQ(app->status->text(), "Looking for the module");
    ASSERT_TRUE(app->waitUntilReady());
    module.stop();
    ASSERT_TRUE(app->waitUntil([&] { return !app->status->connected(); }));
    EXPECT_EQ(app->status->text(), "Connection lost");
    // A touch on it explains it, and leads back; the brightness has a key everywhere.
    app->tap({60, 315});
    ASSERT_TRUE(app->waitUntil([&] {
        const auto* const stack = dynamic_cast<NavigationController*>(app->stage->top());
        return stack && stack->topViewController()->title() == "Connection";
    }));
    QTest::keyClick(app->view(), Qt::Key_N);
    EXPECT_TRUE(app->waitUntil([&] { return app->stage->display()->shade() > 0; }));
    QTest::keyClick(app->view(), Qt::Key_Escape);
    ASSERT_TRUE(app->waitUntil([&] { return app->page() != nullptr; }));
    ASSERT_EQ(module.start().value_or(""), "");
    EXPECT_TRUE(app->waitUntil([&] { return app->status->connected(); }));
}

TEST_F(WindowTest, PicturesOfAnyKindAreScaled) {
    const auto folder = app->platform.resources().documentsDirectory() / "images";
    std::filesystem::create_directories(folder);
    for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                              QImage::Format_RGB888, QImage::Format_RGBA64}) {
        QImage image{3, 2, format};
        image.setColorTable({qRgb(255, 0, 0)});
        image.fill(0);
        ASSERT_TRUE(image.save(QString::fromStdString(folder / "ODD.png")));
        const auto shown = PictureProvider{}.requestImage("picture/ODD.png", nullptr, {40, 30});
        EXPECT_EQ(shown.size(), QSize(40, 30)) << format;
    }
}

TEST_F(WindowTest, AReplayThatFailsIsCancelledByATouch) {
    ASSERT_TRUE(app->waitUntilReady());
    auto& defaults = app->platform.userDefaults();
    const auto nine = AV::forAID(31, std::array<std::uint8_t, 1>{9});
    SettingValueStore::save({{95, nine}}, app->control->currentVehicle());  // each takes its 21 attempts
    defaults.setObjectForKey("Tow", "savedprofile");
    defaults.setObjectForKey(archivedProfileDictionary({{31, nine}, {32, nine}, {33, nine}}), "Tow");
    module.setFault(bench::Fault::dropAck, {.probability = 1});
    module.dropConnections();
    // Within the replay, which turns the loop until it ends.
    app->platform.runLoop().scheduleTimer(50ms, true, [&](Timer& timer) {
        if (!app->first->progress() || !app->first->progress()->cancellable()) return;
        auto* const button = shown("Cancel");
        if (!button) return;
        timer.invalidate();
        module.clearFaults();
        click(*button);
    });
    EXPECT_TRUE(app->waitUntil(
        [&] { return defaults.objectForKey("savedprofile").textValue() == "Default Profile"; }));
}

TEST_F(WindowTest, WhatGoesOnInTheBackgroundIsToldOnAnotherScreen) {
    ASSERT_TRUE(app->waitUntilReady());
    const auto overlay = std::make_shared<ProgressHUD>([] {});
    overlay->setTexts("Updating", "2 of 3");
    app->first->setProgress(overlay);
    app->tap({32, 32});  // the gear, which the overlay holds
    ASSERT_TRUE(app->waitUntil([&] { return shown("Continue in background"); }));
    EXPECT_EQ(app->stage->top(), app->first.get());
    click(*shown("Continue in background"));
    ASSERT_TRUE(app->waitUntil([&] { return overlay->inBackground(); }));
    app->tap({32, 32});
    EXPECT_TRUE(app->waitUntil([&] { return app->stage->top() != app->first.get(); }));
    EXPECT_TRUE(app->waitUntil([&] { return shown("Updating · 2 of 3"); }));
    app->first->setProgress(nullptr);
    EXPECT_TRUE(app->waitUntil([&] { return !shown("Updating · 2 of 3"); }));
}

TEST_F(WindowTest, WhatCanNotBeReadIsToldOnThePageUntilItIsSetAgain) {
    app.reset();
    app = std::make_unique<fakes::Application>(module, profile, [](UserDefaults& defaults) {
        defaults.setObjectForKey(Value{"cut"}, "SETTINGS_Diesel Pickup 6.7L");
    });
    const auto sentence = app->page()->notice();
    EXPECT_TRUE(sentence.startsWith("The settings of this vehicle can't be read")) << sentence.toStdString();
    EXPECT_TRUE(app->waitUntil([&] { return shown(sentence); }));
    ASSERT_TRUE(app->waitUntilReady());
    SettingValueStore::save({}, app->control->currentVehicle());
    module.dropConnections();
    EXPECT_TRUE(app->waitUntil([&] { return !shown(sentence); }));
}

}  // namespace
