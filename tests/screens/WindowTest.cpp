// The real window on the offscreen platform, with the bench behind it.
#include <gtest/gtest.h>

#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <chrono>
#include <filesystem>
#include <memory>

#include "app/ConnectionStatus.h"
#include "bench/Bench.h"
#include "diagnostics/GroupsViewController.h"
#include "fakes/FreshEngine.h"
#include "fakes/WaitUntil.h"
#include "platform/real/RealPlatform.h"
#include "screens/NavigationController.h"
#include "screens/Stage.h"
#include "vehicles/ProfileDocument.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

class WindowTest : public testing::Test {
protected:
    WindowTest() {
        qputenv("XDG_DATA_HOME", (testing::TempDir() + "itorv-window").c_str());
        platform = std::make_unique<RealPlatform>();
        Platform::install(platform.get());
        fakes::freshenEngine();
        const auto profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json";
        module = std::make_unique<bench::Bench>(bench::Options{.rate = 200, .profile = profile});
        EXPECT_EQ(module->start().value_or(""), "");
        feeder = std::make_shared<iTorvFeeder>(
            ConnectionOptions{.interface = "en0", .module = Endpoint{"127.0.0.1", module->port()}});
        std::string error;
        const auto vehicle = vehicleFromFile(profile, error);
        EXPECT_TRUE(vehicle) << error;
        status = std::make_unique<ConnectionStatus>(feeder);
        list = std::make_shared<GroupsViewController>(*vehicle, feeder);
        navigation = std::make_unique<NavigationController>(list);
        stage = std::make_unique<Stage>(*navigation, status.get());
        engine = std::make_unique<QQmlApplicationEngine>();
        engine->setInitialProperties({{"stage", QVariant::fromValue(stage.get())}});
        engine->load("qrc:/iTorv/Main.qml");
        window = engine->rootObjects().isEmpty() ? nullptr
                                                 : qobject_cast<QQuickWindow*>(engine->rootObjects().first());
    }
    ~WindowTest() override {
        engine.reset();
        stage.reset();
        navigation.reset();
        list.reset();
        status.reset();
        feeder.reset();
        Platform::install(nullptr);
    }

    bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = 20s) {
        return fakes::waitUntil(platform->runLoop(), condition, limit);
    }

    std::unique_ptr<RealPlatform> platform;
    std::unique_ptr<bench::Bench> module;
    std::shared_ptr<iTorvFeeder> feeder;
    std::unique_ptr<ConnectionStatus> status;
    std::shared_ptr<GroupsViewController> list;
    std::unique_ptr<NavigationController> navigation;
    std::unique_ptr<Stage> stage;
    std::unique_ptr<QQmlApplicationEngine> engine;
    QQuickWindow* window = nullptr;
};

TEST_F(WindowTest, ShowsLiveValuesAndTheStateOfTheLink) {
    ASSERT_NE(window, nullptr);
    const auto before = window->grabWindow();
    EXPECT_EQ(status->text(), "Looking for the module");
    feeder->setFeeding(true);
    feeder->start();
    ASSERT_TRUE(waitUntil([&] { return status->connected(); }));
    auto* const cell = list->cellAt({0, 0});
    ASSERT_TRUE(
        waitUntil([&] { return cell->detailText().endsWith("RPM") && cell->detailText() != "0RPM"; }));
    const auto shown = cell->detailText();
    ASSERT_TRUE(waitUntil([&] { return cell->detailText() != shown; }));
    EXPECT_NE(window->grabWindow(), before);

    module->stop();
    ASSERT_TRUE(waitUntil([&] { return !status->connected(); }));
    EXPECT_EQ(status->text(), "Connection lost");
    ASSERT_EQ(module->start().value_or(""), "");
    EXPECT_TRUE(waitUntil([&] { return status->connected(); }));
}

TEST_F(WindowTest, AlertsCoverTheScreenUntilTouched) {
    ASSERT_NE(window, nullptr);
    const auto before = window->grabWindow();
    int pressed = -1;
    auto alert =
        std::make_shared<AlertView>("Connection Error", "A word to the driver", QStringList{"Cancel", "OK"});
    alert->setDismissedHandler([&](int index) { pressed = index; });
    stage->show(alert);
    EXPECT_NE(window->grabWindow(), before);
    alert->touchButton(1);
    EXPECT_TRUE(waitUntil([&] { return pressed == 1 && stage->alert() == nullptr; }));
    EXPECT_EQ(window->grabWindow(), before);
    stage->setProgress(std::make_shared<ProgressHUD>([&] { pressed = 9; }));
    EXPECT_NE(window->grabWindow(), before);
    stage->progress()->touchCancel();
    EXPECT_TRUE(waitUntil([&] { return pressed == 9; }));
    stage->setProgress(nullptr);
    EXPECT_EQ(window->grabWindow(), before);
}

}  // namespace
