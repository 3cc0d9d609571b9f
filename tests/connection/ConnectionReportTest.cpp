// The figures of the link, what the report makes of them, and the page that shows it.
#include "connection/screens/ConnectionViewController.h"
#include "session/Session.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using Verdict = ConnectionLine::Verdict;
using Reach = ByteStream::Reach;

const ConnectionLine& lineOf(const std::vector<ConnectionLine>& lines, const std::string& subject) {
    return *std::ranges::find(lines, subject, &ConnectionLine::subject);
}

/// A connection of which all is well.
ConnectionFacts goodFacts() {
    ConnectionFacts facts{.decidingInterface = "en0", .module = {"1.2.3.4", 2000}};
    facts.route = NetworkInterfaces::Route{.interface = "wlan0", .gateway = {}};
    facts.routeAddress = "1.2.3.9";
    facts.reach = Reach::open;
    facts.connected = true;
    facts.now += 1h;
    auto& figures = facts.figures;
    figures = {
        .framesPerSecond = 200, .lastFrame = facts.now - 10ms, .frames = 1000, .damaged = 2, .answered = 10};
    figures.median = 12ms;
    figures.worst = 30ms;
    figures.attempts = figures.sessionsLately = 1;
    figures.upSince = facts.now - 65s;
    return facts;
}

TEST(ConnectionReport, EachLineTellsWhatToDo) {
    const struct {
        const char* name;
        std::function<void(ConnectionFacts&)> change;
        const char* subject;
        Verdict verdict;
        const char* words;
    } cases[] = {
        {"well", [](auto&) {}, "Session", Verdict::good, "up for 1:05"},
        {"why this module", [](auto&) {}, "Module", Verdict::good, "because there is no address on en0"},
        {"own address decides", [](auto& f) { f.ownAddress = "169.254.7.7"; }, "Module", Verdict::good,
         "has 169.254.7.7"},
        {"as asked", [](auto& f) { f.moduleChosen = true; }, "Module", Verdict::good,
         "as chosen at the start"},
        {"no network", [](auto& f) { f.route.reset(), f.connected = false; }, "Interface", Verdict::bad,
         "join the module's network"},
        {"routes that nobody tells",
         [](auto& f) { f.route.reset(), f.routeAddress.reset(), f.connected = true; }, "Route", Verdict::open,
         "not told"},
        {"no address", [](auto& f) { f.routeAddress.reset(); }, "Own address", Verdict::bad, "join it again"},
        {"weak",
         [](auto& f) {
             f.wireless = WirelessNetworks::Network{"iTorv 7", 12};
         },
         "Interface", Verdict::bad, "\"iTorv 7\", signal 12 %"},
        {"elsewhere", [](auto& f) { f.route->gateway = "10.0.0.1", f.connected = false; }, "Route",
         Verdict::bad, "through 10.0.0.1"},
        {"other network",
         [](auto& f) {
             f.defaultRoute = NetworkInterfaces::Route{"eth0", "10.0.0.1"};
         },
         "Route", Verdict::good, "by eth0, and that is as it should be"},
        {"refused", [](auto& f) { f.reach = Reach::refused; }, "Connection", Verdict::bad, "refused"},
        {"another has it", [](auto& f) { f.reach = Reach::closed; }, "Connection", Verdict::bad,
         "Another handset"},
        {"mute", [](auto& f) { f.connected = false, f.figures.framesPerSecond = 0; }, "Session", Verdict::bad,
         "the module is silent"},
        {"stopped", [](auto& f) { f.figures.lastFrame = f.now - 4s; }, "Frames", Verdict::bad,
         "the last one 4.0 s ago"},
        {"damaged", [](auto& f) { f.figures.damaged = 11; }, "Checksums", Verdict::bad,
         "11 wrong of 1000 frames"},
        {"lost answers", [](auto& f) { f.figures.unanswered = 2; }, "Answers", Verdict::bad,
         "2 of 12 did not come"},
        {"late answers", [](auto& f) { f.figures.median = 100ms; }, "Answers", Verdict::bad,
         "usually after 100 ms"},
        {"breaks", [](auto& f) { f.figures.sessionsLately = 4, f.figures.attempts = 5; }, "Reconnects",
         Verdict::bad, "4 attempts since the start, 4 sessions in"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        auto facts = goodFacts();
        row.change(facts);
        const auto report = connectionReport(facts);
        const auto& line = lineOf(report, row.subject);
        EXPECT_EQ(line.verdict, row.verdict);
        EXPECT_NE((line.state + ". " + line.advice).find(row.words), std::string::npos)
            << line.state << line.advice;
        EXPECT_FALSE(line.verdict == Verdict::bad && line.advice.empty()) << "what is wrong has its advice";
    }
}

using ConnectionStatistics = session_test::SessionTest;

TEST_F(ConnectionStatistics, FramesAnswersAndEventsAreCounted) {
    const auto statistics = std::make_shared<LinkStatistics>(platform.loop);
    driver().addMonitor(statistics);
    connect();
    auto bad = session_test::push;
    bad.back() ^= 1;
    chunk(bad);
    chunk(session_test::push);
    answerEverything();
    EXPECT_TRUE(driver().requestValueForAID(20));
    platform.stream().onWrite = nullptr;
    EXPECT_FALSE(driver().requestValueForAID(21));
    auto figures = statistics->figures();
    EXPECT_EQ(figures.damaged, 1U);
    EXPECT_EQ(figures.frames, 7U);
    EXPECT_DOUBLE_EQ(figures.framesPerSecond, 3.5);
    EXPECT_EQ(figures.answered, 1U);
    EXPECT_EQ(figures.unanswered, 1U);
    ASSERT_TRUE(figures.upSince);
    ASSERT_EQ(figures.events.size(), 2U);
    EXPECT_EQ(figures.events[0].text, "A request of AID 21 was not answered");
    platform.stream().lose();
    platform.loop.runFor(30s);
    figures = statistics->figures();
    EXPECT_FALSE(figures.upSince);
    EXPECT_EQ(figures.sessionsLately, 1U);
    EXPECT_EQ(figures.unanswered, 1U) << "the heartbeat asks on, and nobody is there";
    EXPECT_DOUBLE_EQ(figures.framesPerSecond, 0);
    EXPECT_EQ(figures.events[0].times, 10) << "the same thing again is one line";
    EXPECT_EQ(figures.events[1].text, "The connection was lost");
}

TEST(ConnectionPage, ShowsAndChoosesWithoutLosingItsPlace) {
    fakes::FakePlatform platform;
    fakes::freshenEngine();
    platform.network.routes["1.2.3.4"] = {.interface = "wlan0", .gateway = {}};
    platform.wireless.network = WirelessNetworks::Network{"Truck", 80};
    platform.wireless.hasSettings = true;
    const auto control = std::make_shared<iTorvAppDelegate>();
    control->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
    DisplayChoices display{platform.defaults};
    const auto page = std::make_shared<ConnectionViewController>(control, display);
    page->loadViewIfNeeded();
    page->viewWillAppear();
    platform.loop.runFor(1s);
    EXPECT_EQ(page->cellAt({0, 0})->text() + page->cellAt({0, 0})->detailText(),
              "Interfacewlan0, in the Wi-Fi \"Truck\", signal 80 %");
    auto* const brightness = page->cellAt({2, 0});
    for (const auto* text : {"Dim", "Night", "Full"}) {
        page->touchRow(2, 0);
        platform.loop.runWork();
        EXPECT_EQ(brightness->detailText(), text);
        EXPECT_EQ(DisplayChoices{platform.defaults}.brightnessText(), text) << "stored";
    }
    for (const int row : {1, 2})
        qobject_cast<SwitchTableViewCell*>(page->cellAt({2, row}))->touchSwitch();
    page->touchRow(2, 3);
    platform.loop.runWork();
    EXPECT_TRUE(DisplayChoices{platform.defaults}.contrast());
    EXPECT_TRUE(display.sounds());
    EXPECT_EQ(platform.wireless.opened, 1);
    EXPECT_EQ(page->cellAt({2, 0}), brightness);
    page->viewWillDisappear();
    control->applicationWillTerminate();
}

}  // namespace
