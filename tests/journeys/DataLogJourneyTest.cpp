// From the menu to the curves of a recorded drive in the real window, by keys, mouse, wheel and two fingers.
#include <QImage>
#include <QPainter>
#include <cmath>
#include <set>

#include "Journey.h"
#include "datalog/screens/DataLogViewController.h"
#include "datalog/screens/GraphViewController.h"
#include "qml/GraphItem.h"

namespace journeys {
namespace {

class DataLogJourneyTest : public Journey {
protected:
    void touchTool(int index) {
        stack()->topViewController()->toolbarItems().value(index).value<BarButtonItem*>()->touch();
        app->runFor(300ms);
    }
    /// How many pixels of the window have exactly this colour.
    [[nodiscard]] int pixels(QColor colour) const {
        const auto image = app->view()->grabWindow().convertToFormat(QImage::Format_RGB32);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixelColor(x, y) == colour ? 1 : 0;
        }
        return count;
    }
};

TEST_F(DataLogJourneyTest, FromTheMenuToACurve) {
    start();
    openMenuRow(4, "Data Logging");
    touchTool(0);
    EXPECT_TRUE(app->control->recorder().isRecording());
    ASSERT_TRUE(app->waitUntil([&] { return app->control->recorder().valueCount() > 1500; }));
    touchTool(0);
    EXPECT_FALSE(app->control->recorder().isRecording());
    touchTool(1);
    ASSERT_TRUE(app->waitUntil([&] { return table().numberOfRowsInSection(0) == 1; }));
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    auto* graph = static_cast<GraphViewController*>(nullptr);
    ASSERT_TRUE(app->waitUntil([&] {
        return (graph = qobject_cast<GraphViewController*>(stack()->topViewController())) != nullptr;
    }));
    app->runFor(500ms);
    ASSERT_EQ(graph->curves().size(), 3U);
    EXPECT_GT(pixels(QColor{0xfe, 0xae, 0x16}), 300) << "the first curve";
    EXPECT_GT(pixels(QColor{0x4f, 0xc3, 0xf7}), 300) << "the second one";

    const auto whole = graph->visible().span();
    EXPECT_GT(whole.length(), 1);
    key(Qt::Key_Plus);
    key(Qt::Key_Plus);
    const auto near = graph->visible().span();
    EXPECT_NEAR(near.length(), whole.length() * 0.64, 1e-6);
    // A drag to the right shows what was before, and a click sets the cursor.
    app->swipe({200, 150}, {300, 150});
    EXPECT_LT(graph->visible().span().from, near.from);
    EXPECT_NEAR(graph->visible().span().length(), near.length(), 1e-6);
    app->tap({284, 150});
    ASSERT_TRUE(graph->cursor());
    EXPECT_GT(*graph->cursor(), graph->visible().span().from);
    EXPECT_LT(*graph->cursor(), graph->visible().span().to);
    EXPECT_FALSE(graph->time().isEmpty());
    key(Qt::Key_Home);
    EXPECT_NEAR(graph->visible().span().length(), whole.length(), 1e-6);

    const QPointF place = app->pixel({200, 150});
    QWheelEvent wheel{
        place, app->view()->mapToGlobal(place), {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false};
    QCoreApplication::sendEvent(app->view(), &wheel);
    ASSERT_TRUE(app->waitUntil([&] { return graph->visible().span().length() < whole.length(); }));
    EXPECT_NEAR(graph->visible().span().length(), whole.length() * 0.8, 1e-6);
    // Twice as far apart, half as much is seen.
    const auto before = graph->visible().span().length();
    auto hand = QTest::touchEvent(app->view(), QTest::createTouchDevice(), false);
    hand.press(1, app->pixel({240, 150})).commit();
    hand.stationary(1).press(2, app->pixel({320, 150})).commit();
    hand.move(1, app->pixel({200, 150})).move(2, app->pixel({360, 150})).commit();
    ASSERT_TRUE(app->waitUntil(
        [&] { return std::abs(graph->visible().span().length() - before / 2) < before / 50; }));
    hand.release(1, app->pixel({200, 150})).release(2, app->pixel({360, 150})).commit();
    key(Qt::Key_Escape);
    ASSERT_TRUE(app->waitUntil([&] { return stack()->depth() == 3; }));
}

TEST(GraphItem, AWarningLimitIsALine) {
    for (const int rule : {1, 101}) {  // on and off
        RecordedSensor sensor;
        sensor.warningRule = rule;
        sensor.warningValue = 80;
        GraphViewController graph{"One",
                                  {{sensor,
                                    [](std::string&) {
                                        CurveSeries series;
                                        series.append(0, 0);
                                        series.append(1, 100);
                                        return series;
                                    }}},
                                  WallTime{},
                                  1};
        graph.setShown(0, true);
        GraphItem item;
        item.setGraph(&graph);
        item.setProperty("colours", QVariant::fromValue(QList<QColor>{Qt::red}));
        item.setSize(graph.plotFrame().united({0, 0, 568, 276}).size());
        QImage image{item.size().toSize(), QImage::Format_RGB32};
        QPainter painter{&image};
        item.paint(&painter);
        const auto plot = graph.plotFrame();
        const double y = plot.bottom() - graph.curves()[0].axis.placeOf(80) * plot.height();
        int red = 0;
        for (int x = 0; x < image.width(); ++x)
            red += image.pixelColor(x, static_cast<int>(y)) == QColor{Qt::red} ? 1 : 0;
        EXPECT_EQ(red > plot.width() / 3, rule == 1) << red;
    }
}

}  // namespace
}  // namespace journeys
