#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "fakes/Application.h"
#include "screens/NavigationController.h"
#include "screens/TableViewController.h"

namespace journeys {

using namespace torv;
using namespace std::chrono_literals;

/// The program by keys in its real window, with the bench behind it.
class Journey : public testing::Test {
protected:
    Journey() {
        qputenv("XDG_DATA_HOME", home.path().toUtf8());
        qputenv("no_proxy", "*");
        EXPECT_EQ(module.start().value_or(""), "");
    }

    void start(const std::function<void(UserDefaults&)>& prepare = {},
               const std::optional<std::string>& url = {}) {
        app.reset();
        app = std::make_unique<fakes::Application>(module, profile, prepare, QSize{1136, 640}, url);
        ASSERT_NE(app->view(), nullptr);
        ASSERT_TRUE(app->waitUntilReady());
    }
    void key(int code) { QTest::keyClick(app->view(), static_cast<Qt::Key>(code)); }
    void keys(const char* text) {
        for (; *text; ++text)
            QTest::keyClick(app->view(), *text);
    }
    [[nodiscard]] NavigationController* stack() const {
        return qobject_cast<NavigationController*>(app->stage->top());
    }
    /// Opens the menu with its key, goes down so many rows, and in.
    void openMenuRow(int row, const char* title) {
        app->tap({32, 32});
        ASSERT_TRUE(app->waitUntil([&] { return stack() != nullptr; }));
        app->runFor(300ms);
        chooseRow(row, title);
    }
    void chooseRow(int row, const char* title) {
        for (int i = 0; i <= row; ++i)
            key(Qt::Key_Down);
        key(Qt::Key_Return);
        ASSERT_TRUE(
            app->waitUntil([&] { return stack() && stack()->topViewController()->title() == title; }));
        app->runFor(300ms);
    }
    [[nodiscard]] TableViewController& table() const {
        return *qobject_cast<TableViewController*>(stack()->topViewController());
    }
    void pressAlert(const char* title, int button) {
        ASSERT_TRUE(
            app->waitUntil([&] { return app->stage->alert() && app->stage->alert()->title() == title; }));
        app->stage->alert()->touchButton(button);
        ASSERT_TRUE(
            app->waitUntil([&] { return !app->stage->alert() || app->stage->alert()->title() != title; }));
    }
    void backToThePage() {
        for (int i = 0; i < 5 && app->stage->top() != app->first.get(); ++i) {
            key(Qt::Key_Escape);
            app->runFor(300ms);
        }
        ASSERT_EQ(app->stage->top(), app->first.get());
    }

    const QTemporaryDir home;
    const std::filesystem::path profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json";
    bench::Bench module{{.rate = 200, .profile = profile}};
    std::unique_ptr<fakes::Application> app;
};

}  // namespace journeys
