// Screens without looks: stacks, alerts and overlays.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "fakes/FakePlatform.h"
#include "screens/NavigationController.h"
#include "screens/Stage.h"

namespace {

using namespace torv;

struct PlainScreen final : ViewController {
    explicit PlainScreen(std::string n) : name(std::move(n)) {}
    [[nodiscard]] QString look() const override { return {}; }
    [[nodiscard]] Orientations orientations() const override {
        return name == "upright" ? Orientations::portrait : Orientations::landscape;
    }
    void viewDidLoad() override { calls += "load "; }
    void viewWillAppear() override { calls += "appear "; }
    void viewWillDisappear() override { calls += "leave "; }

    std::string name;
    std::string calls;
};

struct ScreensTest : testing::Test {
    fakes::FakePlatform platform;
};

TEST_F(ScreensTest, NavigationKeepsItsRootAndTouchesComeLater) {
    const auto root = std::make_shared<PlainScreen>("root");
    auto next = std::make_shared<PlainScreen>("next");
    NavigationController navigation{root};
    navigation.loadViewIfNeeded();
    navigation.viewWillAppear();
    navigation.popViewControllerAnimated(true);
    EXPECT_EQ(navigation.depth(), 1);
    navigation.pushViewControllerAnimated(next, true);
    EXPECT_EQ(navigation.topViewController(), next.get());
    EXPECT_EQ(navigation.backTitle(), "Back");
    navigation.touchBack();
    EXPECT_EQ(navigation.depth(), 2);  // not within the touch itself
    const std::weak_ptr<PlainScreen> gone{std::exchange(next, nullptr)};
    platform.loop.runWork();
    EXPECT_EQ(navigation.depth(), 1);
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(root->calls, "load appear leave appear ");
    for (int i = 0; i < 3; ++i)
        navigation.pushViewControllerAnimated(std::make_shared<PlainScreen>("deep"), false);
    navigation.popToRootViewControllerAnimated(false);
    EXPECT_EQ(navigation.topViewController(), root.get());
}

TEST_F(ScreensTest, AlertsTellOfThePressThenOfTheEndOnce) {
    const auto root = std::make_shared<PlainScreen>("root");
    const Stage stage{root, nullptr};
    std::string heard;
    auto alert = std::make_shared<AlertView>("Title", "", QStringList{"Cancel", "OK"});
    alert->setClickedHandler([&](int index) { heard += "click" + std::to_string(index) + " "; });
    alert->setDismissedHandler([&](int index) { heard += "gone" + std::to_string(index) + " "; });
    auto* const shown = alert.get();
    root->showAlert(std::move(alert));
    EXPECT_EQ(stage.alert(), shown);
    for (const int index : {7, -1, 1, 0})
        shown->touchButton(index);
    platform.loop.runWork();
    EXPECT_EQ(heard, "click1 gone1 ");
    EXPECT_EQ(stage.alert(), nullptr);
}

TEST_F(ScreensTest, TheWindowHearsWhenAScreenStandsUpright) {
    const auto stack = std::make_shared<NavigationController>(std::make_shared<PlainScreen>("root"));
    const Stage stage{stack, nullptr};
    int heard = 0;
    QObject::connect(&stage, &Stage::portraitChanged, [&heard] { ++heard; });
    for (const auto* name : {"deep", "upright"})
        stack->pushViewControllerAnimated(std::make_shared<PlainScreen>(name), false);
    EXPECT_TRUE(stage.portrait());
    EXPECT_EQ(heard, 1);
    stack->popToRootViewControllerAnimated(false);
    EXPECT_FALSE(stage.portrait());
    EXPECT_EQ(heard, 2);
}

TEST_F(ScreensTest, AlertsAndOverlaysReachTheStageFromAnyScreen) {
    const auto root = std::make_shared<PlainScreen>("root");
    const Stage stage{root, nullptr};
    const auto deep = std::make_shared<PlainScreen>("deep");
    const auto menu = std::make_shared<PlainScreen>("menu");
    const auto stack = std::make_shared<NavigationController>(menu);
    root->presentModalViewControllerAnimated(stack, true);
    stack->pushViewControllerAnimated(deep, true);
    EXPECT_EQ(stage.top(), stack.get());

    const auto overlay = std::make_shared<ProgressHUD>(nullptr);
    deep->setProgress(overlay);
    EXPECT_EQ(stage.progress(), overlay.get());
    const auto first = std::make_shared<AlertView>("1", "", QStringList{"OK"});
    deep->showAlert(first);
    stack->popViewControllerAnimated(true);
    EXPECT_EQ(deep->navigationController(), nullptr);
    EXPECT_EQ(menu->navigationController(), stack.get());
    EXPECT_EQ(stage.progress(), nullptr);  // it stood on that screen alone
    EXPECT_EQ(stage.alert(), first.get());
    const auto second = std::make_shared<AlertView>("2", "", QStringList{"OK"});
    deep->showAlert(second);  // by a screen that has left
    EXPECT_EQ(stage.alert(), second.get());
    first->touchButton(0);
    second->touchButton(0);
    platform.loop.runWork();
    EXPECT_EQ(stage.alert(), nullptr);

    // What goes on in the background is told wherever one goes, and until it ends.
    auto pass = std::make_shared<ProgressHUD>(nullptr);
    stack->pushViewControllerAnimated(deep, true);
    deep->setProgress(pass);
    platform.loop.runFor(std::chrono::seconds{5});
    pass->touchBackground();
    platform.loop.runWork();
    const auto further = std::make_shared<PlainScreen>("further");
    stack->pushViewControllerAnimated(further, true);
    EXPECT_EQ(stage.progress(), pass.get());
    stack->popToRootViewControllerAnimated(true);
    EXPECT_EQ(stage.progress(), pass.get());
    deep->setProgress(nullptr);
    pass.reset();
    platform.loop.runWork();
    EXPECT_EQ(stage.progress(), nullptr);

    const auto over = std::make_shared<PlainScreen>("over");
    menu->presentModalViewControllerAnimated(over, true);  // over the whole stack
    EXPECT_EQ(stage.top(), over.get());
    over->dismissModalViewControllerAnimated(true);
    menu->dismissModalViewControllerAnimated(true);
    EXPECT_EQ(stage.top(), root.get());
}

}  // namespace
