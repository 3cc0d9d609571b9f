#include <filesystem>

#include "CodesModule.h"
#include "diagnostics/screens/DtcViewController.h"
#include "screens/NavigationController.h"
#include "support/FileContents.h"

namespace {

using namespace codes_test;

class DtcScreensTest : public CodesTest {
protected:
    enum Row { read, clear };
    enum Button { no, yes };

    static std::shared_ptr<NavigationController> onStack(std::shared_ptr<ViewController> screen) {
        auto made = std::make_shared<NavigationController>(std::move(screen));
        made->loadViewIfNeeded();
        made->viewWillAppear();
        return made;
    }
    [[nodiscard]] TableViewController& top() const {
        return dynamic_cast<TableViewController&>(*stack->topViewController());
    }
    void touch(int row, int section = 0) {
        top().touchRow(section, row);
        platform.loop.runWork();
    }
    void press(int button) {
        ASSERT_NE(stack->alert(), nullptr);
        stack->alert()->touchButton(button);
        platform.loop.runWork();
    }
    void readCodes(const std::optional<Bytes>& first, const std::optional<Bytes>& second) {
        stack->popToRootViewControllerAnimated(false);
        if (first) feedAfter(100ms, *first);
        if (second) feedAfter(100ms, *second);
        touch(read);
        press(yes);
        platform.loop.runFor(16000ms);
        ASSERT_EQ(top().title(), "Read DTC's");
    }
    [[nodiscard]] std::string text(int row, int section = 0) const {
        const auto* cell = top().cellAt({section, row});
        return cell ? cell->text().toStdString() : "none";
    }
    void touchShare() {
        top().rightBarButton()->touch();
        platform.loop.runWork();
    }

    std::shared_ptr<NavigationController> stack = onStack(std::make_shared<DtcViewController>(app));
};

TEST_F(DtcScreensTest, TheRowsFollowTheConnectionAndAskFirst) {
    EXPECT_EQ(top().title(), "DTC's");
    EXPECT_EQ(text(read) + ", " + text(clear), "Read DTC's, Clear DTC's");
    touch(clear);
    EXPECT_EQ(stack->alert()->title(), "Clear DTC's");
    EXPECT_EQ(stack->alert()->message(),
              "Please make sure your vehicle is on but the engine is not running. Press OK to continue");
    EXPECT_TRUE(top().selectedRow());
    press(no);
    EXPECT_FALSE(top().selectedRow());
    EXPECT_TRUE(askedAt.empty());
    auto& listener = dynamic_cast<iTorvConnectionListener&>(top());
    listener.iTorvFeederDidFailToConnect(*app->feeder());
    EXPECT_TRUE(top().cellAt({0, read})->dimmed());
    EXPECT_EQ(top().cellAt({0, read})->accessory(), TableViewCell::Accessory::None);
    touch(read);
    EXPECT_EQ(stack->alert(), nullptr);
    listener.iTorvFeederDidEstablishConnection(*app->feeder());
    EXPECT_EQ(top().cellAt({0, read})->accessory(), TableViewCell::Accessory::Disclosure);
}

TEST_F(DtcScreensTest, NoExchangeBeginsInsideAnother) {
    auto pass = app->beginPass();
    touch(read);
    press(yes);
    EXPECT_TRUE(askedAt.empty());
    ASSERT_NE(stack->alert(), nullptr);
    EXPECT_EQ(stack->alert()->title(), "One moment");
    press(0);
    pass.reset();
    touch(read);
    press(yes);
    EXPECT_TRUE(app->isPassUnderWay());
    platform.loop.runFor(9000ms);
    EXPECT_FALSE(top().progress()->backgroundOffered());
    platform.loop.runFor(7000ms);
    EXPECT_EQ(top().title(), "Read DTC's");
    EXPECT_FALSE(app->isPassUnderWay());
}

TEST_F(DtcScreensTest, CodesAreListedOpenedAndSharedAndOldOnesSaySo) {
    readCodes(report224(13), report225(6));
    EXPECT_EQ(top().numberOfSections(), 1);
    EXPECT_EQ(top().numberOfRowsInSection(0), 13);
    EXPECT_EQ(text(1), "P0102 - Mass or volume air flow sensor A: circuit low");
    EXPECT_EQ(text(12), "Code not received");
    touch(12);
    EXPECT_EQ(top().title(), "Read DTC's");
    touchShare();
    ASSERT_EQ(platform.mail.mails.size(), 1U);
    const auto& mail = platform.mail.mails[0];
    const std::string body{mail.attachment.contents.begin(), mail.attachment.contents.end()};
    for (const auto* part : {"Tow/Truck", "Read on 20", "P0105 - Manifold", "Code not received"})
        EXPECT_NE(body.find(part), std::string::npos) << body;
    touch(1);
    EXPECT_EQ(top().title(), "P0102");
    EXPECT_EQ(text(0), "Mass or volume air flow sensor A: circuit low");

    readCodes({}, {});
    EXPECT_EQ(top().numberOfSections(), 1);
    EXPECT_TRUE(top().viewForHeaderInSection(0).text.startsWith("Last answer from 20"));
    EXPECT_TRUE(top().cellAt({0, 0})->dimmed());
    readCodes(report224(7), {});
    ASSERT_EQ(top().numberOfSections(), 2);
    EXPECT_EQ(top().viewForHeaderInSection(0).text, "");
    EXPECT_TRUE(top().viewForHeaderInSection(1).text.startsWith("Last answer"));
    EXPECT_EQ(text(0, 0).substr(0, 5) + text(0, 1).substr(0, 5), "P0101P0106");
    touch(0, 1);
    EXPECT_EQ(top().title(), "P0106");
    readCodes(report224(0), report225(0));
    EXPECT_EQ(top().rows()->rowCount(), 0);
    EXPECT_EQ(top().emptyText(), "The module reports no trouble codes.");
    touchShare();
    const auto& none = platform.mail.mails.back().attachment.contents;
    EXPECT_NE(std::string(none.begin(), none.end()).find("reports no trouble codes"), std::string::npos);
}

TEST_F(DtcScreensTest, WithoutMailTheCodesGoToAFile) {
    platform.mail.possible = false;
    readCodes(report224(1), report225(0));
    EXPECT_EQ(top().rightBarButton()->title(), "Save to file");
    for (const bool startsMail : {false, true}) {
        platform.mail.starts = !startsMail;
        touchShare();
        if (startsMail) {
            EXPECT_EQ(stack->alert()->title(), "The mail can't be written");
            press(yes);
        }
        ASSERT_NE(stack->alert(), nullptr);
        ASSERT_EQ(stack->alert()->title(), "Saved");
        const auto& contents = platform.files.documents.back().contents;
        EXPECT_NE(std::string(contents.begin(), contents.end()).find("P0101 - Mass"), std::string::npos);
        press(no);
        platform.mail.possible = true;
        readCodes(report224(1), report225(0));
    }
}

TEST_F(DtcScreensTest, AClearAsksAgainWhileTheEngineTurnsAndTellsADoubtfulAnswer) {
    const auto clearCodes = [&] {
        touch(clear);
        press(yes);
    };
    const auto finish = [&] {
        EXPECT_NE(top().progress(), nullptr);
        EXPECT_FALSE(top().progress()->backgroundOffered());
        platform.loop.runFor(6000ms);
        EXPECT_EQ(top().progress(), nullptr);
        auto* const alert = stack->alert();
        const auto words = alert ? (alert->title() + "|" + alert->message()).toStdString() : "none";
        press(no);
        return words;
    };
    clearCodes();
    EXPECT_EQ(finish(), "Error: DTC's Not Cleared|");
    feedAfter(300ms, fakes::frame({0x13, 26, 1}));
    clearCodes();
    EXPECT_EQ(finish(), "DTC's Cleared|");
    clearCodes();
    EXPECT_EQ(finish().find("DTC's Cleared|The module has not confirmed this time"), 0U);
    EXPECT_EQ(askedAt.size(), 3U);
    // As long as nothing fresh tells whether the engine turns, the module is asked.
    EXPECT_EQ(speedAskedFor, 3);
    speed = fakes::frame({0x14, 78, 0x58, 0x02});
    clearCodes();
    EXPECT_EQ(speedAskedFor, 4);
    EXPECT_EQ(stack->alert()->title(), "The engine is running");
    press(no);
    EXPECT_EQ(askedAt.size(), 3U);
    clearCodes();
    press(yes);
    EXPECT_EQ(askedAt.size(), 4U);
    finish();
}

TEST_F(DtcScreensTest, MayBeLeftWhileAnExchangeRuns) {
    for (const auto when : {0ms, 50ms, 7000ms}) {
        stack = onStack(std::make_shared<DtcViewController>(app));
        stack->pushViewControllerAnimated(std::make_shared<DtcViewController>(app), false);
        const QPointer<ViewController> left{&top()};
        platform.loop.scheduleTimer(when, false, [this](Timer&) { stack->popViewControllerAnimated(false); });
        touch(when == 50ms ? clear : read);
        press(yes);
        feedAfter(8000ms, report224(1));
        feedAfter(8000ms, report225(0));
        platform.loop.runFor(25000ms);
        EXPECT_TRUE(left.isNull());
        EXPECT_EQ(stack->depth(), 1);
        EXPECT_EQ(stack->alert(), nullptr);
    }
}

/// By this name it runs before all others, while there is no other thread.
using DtcScreensDeathTest = DtcScreensTest;

TEST_F(DtcScreensDeathTest, WithoutTheDatabaseTheProcessEnds) {
    platform.resourcesMissing = true;
    EXPECT_DEATH(readCodes(report224(1), report225(0)), "Failed to open database .DTCDB.sqlite");
}

}  // namespace
