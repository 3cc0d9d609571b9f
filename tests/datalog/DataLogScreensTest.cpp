#include <gtest/gtest.h>

#include <filesystem>

#include "datalog/RecordingWriter.h"
#include "datalog/screens/DataLogViewController.h"
#include "datalog/screens/GraphSensorsViewController.h"
#include "datalog/screens/RecordingViewController.h"
#include "datalog/screens/RecordingsViewController.h"
#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "screens/NavigationController.h"
#include "support/FileContents.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

Dictionary sensor(int aid, const char* minmax, int digits) {
    return {{"aid", Number::fromInteger(aid)},
            {"name", "S" + std::to_string(aid)},
            {"unit", "PSI"},
            {"minmax", minmax},
            {"formatter", Number::fromInteger(0)},
            {"multiplyFactor", Number::fromInteger(1)},
            {"decimalDigits", Number::fromInteger(digits)}};
}

class DataLogScreensTest : public testing::Test {
protected:
    DataLogScreensTest() {
        fakes::freshenEngine();
        std::filesystem::remove_all(recordingsFolder());
        Vehicle truck;
        truck.setName("Truck");
        truck.setInfo(ProfileInfo{Dictionary{
            {"parameters",
             Dictionary{{"sensors", Array{sensor(8, "both", 1), sensor(9, "off", 0), sensor(10, "high", 0),
                                          sensor(11, "none", 0), sensor(12, "low", 2)}}}}}});
        VehicleDataSource::setCurrentVehicle(truck);
        app = std::make_shared<iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
        log = std::make_shared<DataLogViewController>(app);
        stack = std::make_shared<NavigationController>(log);
        stack->loadViewIfNeeded();
        stack->viewWillAppear();
    }
    ~DataLogScreensTest() override { app->applicationWillTerminate(); }

    [[nodiscard]] QString detail(int row) const { return log->cellAt({0, row})->detailText(); }
    void touch(const QVariantList& buttons, int index) {
        buttons.value(index).value<BarButtonItem*>()->touch();
        platform.loop.runWork();
    }
    void tool(int index) { touch(stack->topViewController()->toolbarItems(), index); }
    template <class Screen>
    [[nodiscard]] Screen* top() const {
        return dynamic_cast<Screen*>(stack->topViewController());
    }
    [[nodiscard]] std::string saved() const {
        const auto& contents = platform.files.documents.back().contents;
        return {contents.begin(), contents.end()};
    }
    /// A recording of 100 seconds, and of one sensor that stays silent.
    void makeRecording(const std::string& name) {
        RecordedDrive drive{.name = name, .vehicle = "Truck", .begun = WallTime{}, .sensors = {}};
        for (const auto& each : app->currentVehicle().sensors())
            drive.sensors.push_back(recordedSensor(each));
        std::string error;
        auto writer = RecordingWriter::begin(newRecordingFile(), drive, error);
        ASSERT_TRUE(writer) << error;
        std::vector<RecordedValue> values;
        for (int second = 0; second <= 100; ++second) {
            for (const AID aid : {9, 10, 11, 12})
                values.push_back({aid, std::chrono::seconds{second}, WallTime{std::chrono::seconds{second}},
                                  static_cast<double>(second * aid), AV{}});
        }
        ASSERT_EQ(writer->append(values, {}), std::nullopt);
        writer->end();
    }

    fakes::FakePlatform platform;
    std::shared_ptr<iTorvAppDelegate> app;
    std::shared_ptr<DataLogViewController> log;
    std::shared_ptr<NavigationController> stack;
};

TEST_F(DataLogScreensTest, ShowsExportsAndClears) {
    EXPECT_EQ(log->numberOfRowsInSection(0), 3);
    EXPECT_EQ(detail(0), "Min:0.0PSI   Max:0.0PSI");
    app->recordSample(8, 3.25F);
    app->recordSample(9, 1);
    app->recordSample(78, 501);
    app->recordSample(8, 2);
    app->recordSample(12, 7);
    platform.loop.runFor(1s);
    EXPECT_EQ(detail(0), "Min:2.0PSI   Max:2.0PSI");
    EXPECT_EQ(detail(1), "Max:0PSI");
    EXPECT_EQ(detail(2), "Min:7.00PSI");
    tool(2);
    const auto legend = top<GraphViewController>()->legend();
    ASSERT_EQ(legend.size(), 3);  // the one that nobody lists among them
    EXPECT_EQ(legend[0].name + ": " + legend[0].summary, "S8: 2.0 – 3.2   ø 2.6");
    stack->popToRootViewControllerAnimated(false);
    tool(3);
    const auto text = saved();
    EXPECT_EQ(text.substr(0, text.find('\n')), "Timestamp,S8,Timestamp,S10,Timestamp,S12");
    EXPECT_EQ(std::ranges::count(text, '\n'), 3);
    EXPECT_NE(text.find(",3.2,,,"), std::string::npos);
    EXPECT_EQ(platform.files.documents.back().mimeType, "text/csv");
    touch(log->rightBarButtons(), 0);
    ASSERT_EQ(platform.mail.mails.size(), 1U);
    EXPECT_EQ(platform.mail.mails[0].subject, "Your Torvwerks Data Log Export");
    const auto& name = platform.mail.mails[0].attachment.fileName;
    EXPECT_TRUE(name.starts_with("iTorv-20") && name.ends_with(".csv")) << name;
    platform.mail.possible = false;
    touch(log->rightBarButtons(), 0);
    ASSERT_NE(stack->alert(), nullptr);
    EXPECT_EQ(stack->alert()->title(), "Oops!");
    EXPECT_EQ(stack->alert()->message(), "Export requires Mail to be configured on this device.");
    stack->alert()->touchButton(0);
    platform.loop.runWork();

    touch(log->rightBarButtons(), 1);
    EXPECT_EQ(detail(2), "Min:0.00PSI");
    tool(3);
    EXPECT_EQ(saved(), "Timestamp,S8,Timestamp,S10,Timestamp,S12\n");
    tool(2);  // with nothing logged there is nothing to be drawn
    EXPECT_FALSE(top<GraphViewController>()->emptyText().isEmpty());
    stack->popToRootViewControllerAnimated(false);
    // The timer lets go of a screen that has gone.
    const std::weak_ptr<DataLogViewController> gone = log;
    stack.reset();
    log.reset();
    platform.loop.runFor(2s);
    EXPECT_TRUE(gone.expired());
}

TEST_F(DataLogScreensTest, RecordsListsRenamesExportsAndDeletes) {
    tool(0);
    EXPECT_TRUE(app->recorder().isRecording());
    platform.loop.runFor(61s);
    EXPECT_TRUE(log->viewForHeaderInSection(0).text.endsWith(": 1:01, 0 values"));
    tool(1);
    auto* const list = top<RecordingsViewController>();
    ASSERT_EQ(list->numberOfRowsInSection(0), 1);
    EXPECT_EQ(list->cellAt({0, 0})->detailText(), "Recording now");
    list->deleteRowAtIndexPath({0, 0});
    EXPECT_EQ(stack->alert()->message(), "It is being recorded, or read.");
    stack->alert()->touchButton(0);
    platform.loop.runWork();
    stack->touchBack();
    platform.loop.runWork();
    tool(0);
    EXPECT_FALSE(app->recorder().isRecording());
    EXPECT_TRUE(log->viewForHeaderInSection(0).text.isEmpty());

    makeRecording("Hill");
    tool(1);
    auto* const files = top<RecordingsViewController>();
    ASSERT_EQ(files->numberOfRowsInSection(0), 2);
    files->accessoryButtonTappedForRowAtIndexPath({0, 1});
    auto* const one = top<RecordingViewController>();
    EXPECT_EQ(one->cellAt({0, 0})->detailText(), "Hill");
    one->didSelectRowAtIndexPath({0, 0});
    top<TextValueGetterViewController>()->save();
    EXPECT_EQ(one->cellAt({0, 0})->detailText(), "Hill");
    const auto place = std::filesystem::path{testing::TempDir()} / "saved.jsonl";
    for (const auto& folder : {place.parent_path(), place / "none"}) {
        platform.files.outcome.file = folder / place.filename();
        one->didSelectRowAtIndexPath({1, 2});
        stack->alert()->touchButton(2);
        platform.loop.runWork();
        EXPECT_EQ(one->progress(), nullptr);
        EXPECT_EQ(stack->alert()->title(),
                  folder == place.parent_path() ? "Saved" : "The file can't be made");
        stack->alert()->touchButton(0);
        platform.loop.runWork();
    }
    std::string error;
    const auto lines = contentsOfFile(place, error).value_or(error);
    EXPECT_EQ(std::ranges::count(lines, '\n'), 404);
    one->didSelectRowAtIndexPath({1, 2});
    stack->alert()->touchButton(1);
    platform.loop.runWork();
    const auto& mailed = platform.mail.mails.back().attachment.contents;
    EXPECT_EQ(std::string(mailed.begin(), mailed.end()), lines);
    stack->touchBack();
    platform.loop.runWork();
    files->deleteRowAtIndexPath({0, 1});
    EXPECT_EQ(files->numberOfRowsInSection(0), 1);
    EXPECT_EQ(recordings().size(), 1U);
}

TEST_F(DataLogScreensTest, AGraphFollowsTheFingersAndTellsItsNumbers) {
    makeRecording("Hill");
    showRecording(*log, recordings()[0].file);
    auto* const graph = top<GraphViewController>();
    ASSERT_NE(graph, nullptr);
    graph->setRoom(568, 276);
    // The first three that said something.
    ASSERT_EQ(graph->curves().size(), 3U);
    EXPECT_FALSE(graph->isShown(0));
    EXPECT_EQ(graph->legend()[0].name, "S9");
    EXPECT_EQ(graph->legend()[0].summary, "0 – 900   ø 450");
    const auto plot = graph->plotFrame();
    const auto x = [&plot](double place) { return plot.left() + place * plot.width(); };
    // A short touch sets the cursor, and does not move the graph.
    graph->setFingers({x(0.5)});
    graph->setFingers({x(0.5) + 5});
    graph->setFingers({});
    EXPECT_DOUBLE_EQ(*graph->cursor(), 50);
    EXPECT_EQ(graph->legend()[0].now, "450 PSI");
    EXPECT_EQ(graph->visible().span().length(), 100);
    // Two fingers stretch it: what they hold stays under them.
    graph->setFingers({x(0.4)});
    graph->setFingers({x(0.4), x(0.6)});
    graph->setFingers({x(0.2), x(0.8)});
    EXPECT_NEAR(graph->visible().placeOf(40), 0.2, 1e-9);
    EXPECT_NEAR(graph->visible().placeOf(60), 0.8, 1e-9);
    EXPECT_EQ(*graph->cursor(), 50);
    // The one that is left drags on, and sets no cursor when it goes.
    graph->setFingers({x(0.2)});
    graph->setFingers({x(0.5)});
    graph->setFingers({});
    EXPECT_NEAR(graph->visible().placeOf(40), 0.5, 1e-9);
    EXPECT_EQ(*graph->cursor(), 50);
    graph->showAll();
    EXPECT_EQ(graph->visible().span().length(), 100);
    const auto marks = graph->timeMarks();
    ASSERT_EQ(marks.size(), 4U);
    EXPECT_EQ(marks[2].text, "1:00");
    EXPECT_NEAR(marks[2].place, 0.6, 1e-9);

    auto* const before = graph;
    touch(graph->rightBarButtons(), 1);
    auto* const choice = top<GraphSensorsViewController>();
    EXPECT_EQ(choice->cellAt({0, 1})->imageName(), "checkmark.png");
    choice->didSelectRowAtIndexPath({0, 1});
    EXPECT_EQ(choice->cellAt({0, 1})->imageName(), "");
    EXPECT_EQ(before->curves().size(), 2U);
    choice->didSelectRowAtIndexPath({0, 4});
    EXPECT_EQ(before->curves().back().colour, 0);  // which had become free
    EXPECT_EQ(before->legend()[2].name, "S12");
}

TEST_F(DataLogScreensTest, AGraphHasRoomForSixSensors) {
    const GraphSensor sensor{RecordedSensor{}, [](std::string&) {
                                 CurveSeries series;
                                 series.append(0, 1);
                                 return series;
                             }};
    const auto graph =
        std::make_shared<GraphViewController>("Seven", std::vector<GraphSensor>(7, sensor), WallTime{}, 1);
    stack->pushViewControllerAnimated(graph, false);
    touch(graph->rightBarButtons(), 1);
    auto* const choice = top<GraphSensorsViewController>();
    for (int row = 3; row < 7; ++row)
        choice->didSelectRowAtIndexPath({0, row});
    EXPECT_EQ(graph->curves().size(), 6U);
    ASSERT_NE(stack->alert(), nullptr);
    EXPECT_EQ(stack->alert()->title(), "Six sensors at the most");
    choice->didSelectRowAtIndexPath({0, 0});
    choice->didSelectRowAtIndexPath({0, 6});
    EXPECT_TRUE(graph->isShown(6));
}

}  // namespace
