// The strip that sensors are dragged from, its dots, and the press and hold.
#include <gtest/gtest.h>

#include <tuple>

#include "Dashboard.h"
#include "dashboards/StripLayout.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

TEST(StripLayout, PagesAndDotsForAnyNumberOfSensors) {
    for (const auto& [sensors, pages] : {std::pair{0, 0}, {5, 2}, {8, 2}, {300, 75}})
        EXPECT_EQ(StripLayout::make(440, 90, 4, sensors).pages, pages) << sensors;
    // In the middle, with the distance that is asked for, or with what room there is.
    for (const auto& [count, left, right] : {std::tuple{1, 115, 125}, {2, 107, 133}, {75, 0, 240}}) {
        const auto dots = dotRow(count, {10, 10}, 6, {240, 26});
        EXPECT_EQ(dots.first().topLeft(), QPointF(left, 8)) << count;
        EXPECT_NEAR(dots.last().right(), right, 1e-9) << count;
    }
}

class PickerTest : public testing::Test {
protected:
    PickerTest() {
        Array sensors;
        for (int aid = 10; aid < 18; ++aid)
            sensors.push_back(fakes::sensor(aid));
        dashboard.launch(fakes::truck("Truck", sensors));
        dashboard.open();
    }

    /// The middle of an item of the open strip, on the page.
    [[nodiscard]] QPointF middleOf(AID aid) const {
        const auto item = picker().indicatorViewTag(aid);
        return item->center() + picker().scrollView().frame().topLeft() + picker().frame().topLeft() -
               QPointF{picker().scrollView().contentOffset(), 0};
    }
    void openPicker() {
        picker().setExpandedAnimate(true, true);
        loop.runFor(500ms);
    }
    void touch(void (DashboardViewController::*what)(int, double, double), QPointF point, int finger = 0) {
        (page().*what)(finger, point.x(), point.y());
        loop.runWork();
    }
    void press(QPointF point, int finger = 0) { touch(&DashboardViewController::touchBegan, point, finger); }
    void move(QPointF point, int finger = 0) { touch(&DashboardViewController::touchMoved, point, finger); }
    void release(QPointF point, int finger = 0) {
        touch(&DashboardViewController::touchEnded, point, finger);
    }
    void drop(AID aid, std::size_t index) const { dashboard.drop(aid, index); }
    [[nodiscard]] DashboardViewController& page() const { return *dashboard.page; }
    [[nodiscard]] PageView& picker() const { return page().pageView(); }
    [[nodiscard]] std::string state() const {
        const auto& strip = picker().scrollView();
        std::string text = strip.touching() ? "touching " : "";
        if (strip.dragging()) text += "dragging ";
        if (strip.timerRunning()) text += "timer ";
        if (strip.scrollEnabled()) text += "scrolls";
        return text;
    }

    fakes::Dashboard dashboard;
    fakes::VirtualRunLoop& loop = dashboard.platform.loop;
    const QPointF sideDial{60, 180};  // on the page's second place
};

TEST_F(PickerTest, PressAndHoldRowByRow) {
    auto& strip = picker().scrollView();
    const auto item = picker().indicatorViewTag(10);
    const auto feeds = [&] { return dashboard.app->feeder()->feeding(); };
    struct Step {
        const char* name;
        std::function<void()> event;
        const char* state;
        bool holds;
    };
    const auto begin = [&] { strip.touchesBegan(item); };
    const auto moved = [&] { strip.touchesMoved({5, 5}, {4, 4}); };
    const auto hold = [&] { loop.runFor(500ms); };
    const auto end = [&] { strip.touchesEnded(); };
    const std::vector<Step> steps{
        {"the strip itself", [&] { strip.touchesBegan(nullptr); }, "scrolls", false},
        {"an item", begin, "touching timer scrolls", true},
        {"not long enough", [&] { loop.runFor(499ms); }, "touching timer scrolls", true},
        {"lifted", end, "scrolls", false},
        {"nothing comes later", hold, "scrolls", false},
        {"an item", begin, "touching timer scrolls", true},
        {"a touch that stands still",
         [&] {
             strip.touchesMoved({4, 4}, {4, 4});
         },
         "touching timer scrolls", true},
        {"moved", moved, "touching scrolls", false},
        {"no drag any more", hold, "touching scrolls", false},
        {"lifted", end, "scrolls", false},
        {"an item", begin, "touching timer scrolls", true},
        {"held", hold, "touching dragging ", true},
        {"dragged", moved, "touching dragging ", true},
        {"a second touch", begin, "dragging ", true},
        {"moves", moved, "scrolls", false},
        {"an item", begin, "touching timer scrolls", true},
        {"held", hold, "touching dragging ", true},
        {"from outside", [&] { picker().releaseDraggingView(); }, "scrolls", true},  // a stale copy
        {"another item", begin, "touching timer scrolls", true},
        {"lifted", end, "scrolls", false},
    };
    for (const auto& step : steps) {
        step.event();
        EXPECT_EQ(state(), step.state) << step.name;
        EXPECT_EQ(strip.holdsView(), step.holds) << step.name;
        EXPECT_EQ(feeds(), !strip.dragging()) << step.name;
        EXPECT_EQ(page().toast().isEmpty(), !strip.dragging()) << step.name;
    }
}

TEST_F(PickerTest, AFingerCarriesASensorToAPlaceAndOverThePickerNowhere) {
    openPicker();
    const auto begin = middleOf(11);
    press(begin);
    loop.runFor(500ms);
    ASSERT_NE(page().touchingViewObject(), nullptr);
    EXPECT_EQ(page().toast(), "Sensor 11");
    EXPECT_EQ(page().toastFrame().y(), 20);
    move(sideDial);
    EXPECT_EQ(dashboard.place(1).state(), DroppableView::hovered);
    EXPECT_EQ(dashboard.place(0).state(), DroppableView::normal);
    move({284, 200});
    EXPECT_EQ(dashboard.place(1).state(), DroppableView::normal);
    EXPECT_EQ(dashboard.place(0).state(), DroppableView::hovered);
    move({150, 200});  // in both: the side dial comes first
    EXPECT_EQ(dashboard.place(1).state(), DroppableView::hovered);
    move(sideDial);
    release(sideDial);
    EXPECT_EQ(dashboard.stored("Truck_4_KEY"), 11);
    EXPECT_EQ(page().touchingViewObject(), nullptr);
    EXPECT_EQ(dashboard.place(1).state(), DroppableView::normal);
    EXPECT_TRUE(page().toast().isEmpty());

    press(middleOf(12));
    loop.runFor(500ms);
    move(sideDial);
    move(begin);
    release(begin);
    EXPECT_EQ(dashboard.stored("Truck_4_KEY"), 11);

    // A second finger on the strip: the next movement of either lets go where the copy was last.
    press(middleOf(12));
    loop.runFor(500ms);
    move(sideDial);
    press(begin, 1);
    move(begin + QPointF{1, 1}, 1);
    EXPECT_EQ(dashboard.stored("Truck_4_KEY"), 12);
    release(begin, 1);
    move(sideDial + QPointF{90, 0});
    release(sideDial);
    EXPECT_EQ(picker().scrollView().contentOffset(), 0);  // it does not scroll with what is left of the drag

    press(middleOf(13));
    loop.runFor(500ms);
    move(sideDial);
    page().touchCancelled();
    loop.runWork();
    EXPECT_EQ(dashboard.stored("Truck_4_KEY"), 12);  // nothing is dropped
    EXPECT_EQ(dashboard.place(1).state(), DroppableView::normal);
    EXPECT_EQ(page().touchingViewObject(), nullptr);
    EXPECT_TRUE(dashboard.app->feeder()->feeding());
}

TEST_F(PickerTest, ADragIsLeftAloneByKeysAndEndedByATouchBesideIt) {
    openPicker();
    press(middleOf(11));
    loop.runFor(500ms);
    for (const auto key : {Qt::Key_Space, Qt::Key_Down, Qt::Key_Right})
        page().touchKey(key);
    loop.runWork();
    EXPECT_TRUE(picker().expanded());
    EXPECT_FALSE(dashboard.app->feeder()->feeding());
    press({240, 20}, 1);
    EXPECT_TRUE(dashboard.app->feeder()->feeding());
}

TEST_F(PickerTest, ButtonsWheelAndKeysTurnAndCloseTheStripAndClosedItTakesNothing) {
    const auto corner = [&] { return picker().frame().topLeft(); };
    openPicker();
    const auto next = picker().nextButtonFrame().center() + corner();
    const auto previous = picker().previousButtonFrame().center() + corner();
    for (const int shown : {1, 0, 1}) {
        const auto arrow = shown == 1 ? next : previous;
        press(arrow);
        EXPECT_EQ(page().pressedButton(), shown == 1 ? "next" : "previous");
        release(arrow);
        EXPECT_EQ(picker().pageControl().currentPage(), shown);
    }
    page().touchWheel(240);
    loop.runWork();
    EXPECT_EQ(picker().pageControl().currentPage(), 0);
    page().touchKey(Qt::Key_Down);
    loop.runFor(500ms);
    EXPECT_FALSE(picker().expanded());
    const double lastRow = 319.7;
    for (const double x : {70.0, 470.0}) {  // where an item and a button lie below
        press({corner().x() + x, lastRow});
        loop.runFor(500ms);
        EXPECT_TRUE(dashboard.app->feeder()->feeding());
        release({corner().x() + x, lastRow});
        EXPECT_EQ(picker().pageControl().currentPage(), 0);
    }
}

TEST_F(PickerTest, AMovementScrollsAPageAndTheDotsFollow) {
    openPicker();
    const auto begin = middleOf(11);
    press(begin);
    move(begin - QPointF{30, 0});
    move(begin - QPointF{150, 0});
    EXPECT_EQ(picker().scrollView().contentOffset(), 150);
    release(begin - QPointF{150, 0});
    EXPECT_EQ(picker().scrollView().contentOffset(), 440);
    EXPECT_EQ(picker().pageControl().currentPage(), 1);
    EXPECT_EQ(page().touchingViewObject(), nullptr);
    picker().nextPage();
    EXPECT_EQ(picker().pageControl().currentPage(), 1);
    picker().previousPage();
    picker().previousPage();
    EXPECT_EQ(picker().scrollView().contentOffset(), 0);
    EXPECT_EQ(picker().pageControl().currentPage(), 0);
}

TEST_F(PickerTest, WithFewerSensorsTheStripGoesBackToAPageThatThereIs) {
    openPicker();
    picker().nextPage();
    EXPECT_EQ(picker().scrollView().contentOffset(), 440);
    dashboard.app->setCurrentVehicle(fakes::truck("Van", {fakes::sensor(10)}));
    EXPECT_EQ(picker().pageControl().currentPage(), 0);
    EXPECT_EQ(picker().scrollView().contentOffset(), 0);
}

TEST_F(PickerTest, JitterHoldsAFlickTurnsASlowDragTurnsAtMostOnePage) {
    openPicker();
    auto& strip = picker().scrollView();
    const auto begin = middleOf(11);
    press(begin);
    for (const auto shift : {QPointF{7, 0}, {-5, 5}, {0, -7}, {3, 3}})
        move(begin + shift);
    loop.runFor(500ms);
    EXPECT_TRUE(strip.dragging());  // a finger on a bumpy road holds still enough
    release(begin);
    for (const int shift : {8, 9}) {
        press(begin);
        move(begin + QPointF{0, static_cast<double>(shift)});
        loop.runFor(500ms);
        EXPECT_EQ(strip.dragging(), shift == 8);
        release(begin);
    }
    const auto drag = [&](double way, std::chrono::milliseconds time) {
        press(begin);
        move(begin - QPointF{way / 2, 0});
        loop.runFor(time);
        move(begin - QPointF{way, 0});
        release(begin - QPointF{way, 0});
        return picker().pageControl().currentPage();
    };
    EXPECT_EQ(drag(20, 100ms), 1);
    EXPECT_EQ(drag(-30, 900ms), 1);
    EXPECT_EQ(drag(-180, 900ms), 0);
    Array twelve;
    for (int aid = 10; aid < 22; ++aid)
        twelve.push_back(fakes::sensor(aid));
    dashboard.app->setCurrentVehicle(fakes::truck("Van", twelve));
    EXPECT_EQ(picker().pageControl().numberOfPages(), 3);
    EXPECT_EQ(drag(1000, 900ms), 1);
}

TEST_F(PickerTest, ATapOnTheHandleOpensAndClosesTheStrip) {
    for (const bool open : {true, false}) {
        const auto handle = picker().frame().topLeft() + QPointF{240, -10};
        press(handle);
        release(handle);
        loop.runFor(500ms);
        EXPECT_EQ(picker().expanded(), open);
    }
}

TEST_F(PickerTest, DotsOpenCloseAndTurnPages) {
    const QPointF closedDots{page().stageLeft() + 240, 305};
    const auto swipe = [&](QPointF from, QPointF way) {
        press(from);
        move(from + way);
        release(from + way);
        loop.runFor(500ms);
    };
    ASSERT_FALSE(picker().expanded());
    EXPECT_EQ(picker().frame(), QRectF(0 + page().stageLeft(), 290, 480, 30));
    swipe(closedDots, {-80, 0});  // while closed, a tap turns nothing; nor is it a swipe of the page
    EXPECT_EQ(page().presentedViewController(), nullptr);
    EXPECT_FALSE(picker().expanded());
    EXPECT_EQ(picker().pageControl().currentPage(), 0);
    swipe(closedDots, {0, -12});
    ASSERT_TRUE(picker().expanded());
    EXPECT_EQ(picker().frame(), QRectF(page().stageLeft(), 240, 480, 80));
    EXPECT_EQ(dashboard.place(1).alpha(), 0.3);
    EXPECT_EQ(page().indicatorView(10)->priority(), 1);
    const QPointF openDots{page().stageLeft() + 300, 255};
    swipe(openDots, {0, 0});
    EXPECT_EQ(picker().pageControl().currentPage(), 1);
    swipe(openDots - QPointF{120, 0}, {0, -12});  // up while open is a tap
    EXPECT_EQ(picker().pageControl().currentPage(), 0);
    swipe(openDots, {0, 12});
    EXPECT_FALSE(picker().expanded());
    EXPECT_EQ(dashboard.place(1).alpha(), 0);
    EXPECT_EQ(page().indicatorView(10)->priority(), 0);
    openPicker();
    swipe({page().stageLeft() + 240, 100}, {0, 60});
    EXPECT_FALSE(picker().expanded());
}

TEST_F(PickerTest, ButtonsActOnTouchUpInsideWhereThePickerDoesNotCoverThem) {
    EXPECT_EQ(page().powerDecreaseFrame(), QRectF(44 + 24, 270, 86, 60));
    EXPECT_EQ(page().powerIncreaseFrame(), QRectF(44 + 368, 270, 86, 60));
    fakes::connectModule(dashboard.platform, dashboard.writes);
    loop.runFor(2s);
    dashboard.receive(4, {3});
    const auto writes = [&](QPointF from, QPointF to) {
        dashboard.writes.clear();
        press(from);
        release(to);
        return dashboard.writes.size();
    };
    const auto plus = page().powerIncreaseFrame().center();
    EXPECT_EQ(writes(plus, plus), 1U);
    EXPECT_EQ(writes(plus, {284, 150}), 0U);
    openPicker();
    EXPECT_EQ(writes(plus, plus), 0U);
    page().touchKey(Qt::Key_Space);
    loop.runFor(500ms);
    EXPECT_EQ(writes(plus, plus), 1U);
    drop(11, 3);
    openPicker();
    const auto& place = dashboard.place(3);  // a right one: 60 from the far edge
    const auto clear = place.frame().topLeft() + QPointF{120 + 22, 10 + 22};
    press(clear);
    release(clear);
    EXPECT_EQ(place.gauge(), nullptr);
}

TEST_F(PickerTest, AWindowOfAnotherSizeMovesEverything) {
    openPicker();
    page().setViewSize({480, 320});
    EXPECT_EQ(picker().frame(), QRectF(0, 240, 480, 80));
    EXPECT_EQ(dashboard.place(0).frame().x(), 44);
    press(middleOf(11));
    loop.runFor(500ms);
    move({16, 180});
    release({16, 180});
    EXPECT_EQ(dashboard.stored("Truck_4_KEY"), 11);
}

TEST_F(PickerTest, WhileItIsOpenOneBatchASecondComesThrough) {
    openPicker();
    dashboard.receive(10, {9});  // the gate opens with the first second
    loop.runFor(1s);
    dashboard.receive(10, {1});
    dashboard.receive(10, {2});
    EXPECT_EQ(page().indicatorView(10)->value(), 1);
    loop.runFor(1s);
    dashboard.receive(10, {3});
    EXPECT_EQ(page().indicatorView(10)->value(), 3);
}

}  // namespace
