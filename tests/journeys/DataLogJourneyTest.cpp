// From the menu to the curves of a recorded drive in the real window, by keys, mouse and wheel.
#include <QImage>
#include <set>

#include "Journey.h"
#include "datalog/screens/DataLogViewController.h"
#include "datalog/screens/GraphViewController.h"

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
    key(Qt::Key_Escape);
    ASSERT_TRUE(app->waitUntil([&] { return stack()->depth() == 3; }));
}

}  // namespace
}  // namespace journeys
