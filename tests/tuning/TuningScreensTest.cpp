// The list, the names, the editor and the equalizer on their screens, in virtual time.
#include <fstream>

#include "Truck.h"
#include "platform/NotificationNames.h"
#include "screens/NavigationController.h"
#include "tuning/ProfileValues.h"
#include "tuning/screens/CustomTuningViewController.h"
#include "tuning/screens/DamagedListAlert.h"
#include "tuning/screens/PassReportViewController.h"
#include "tuning/screens/ProfileEditViewController.h"

namespace tuning_test {
namespace {

class TuningScreensTest : public TuningTest {
protected:
    /// The list over a screen that stands for the menu.
    void open() {
        list = std::make_shared<CustomTuningViewController>(app);
        stack = std::make_shared<NavigationController>(
            std::make_shared<PassReportViewController>(app, "", PassReport{}));
        stack->loadViewIfNeeded();
        stack->pushViewControllerAnimated(list, false);
        updated =
            platform.notificationCenter().addObserver(customTuningSettingsUpdated, [this] { ++updates; });
    }
    void store(const char* name, std::initializer_list<std::pair<AID, int>> values) {
        ProfileDictionary profile;
        for (const auto& [aid, value] : values)
            profile.emplace(aid, AV::forAID(aid, Bytes{static_cast<std::uint8_t>(value)}));
        ProfileValues::store(name, profile);
        ProfileList{}.add(name);
    }
    template <class Screen>
    Screen& top() {
        return dynamic_cast<Screen&>(*stack->topViewController());
    }
    void press(const BarButtonItem* button) {
        const_cast<BarButtonItem*>(button)->touch();
        platform.loop.runWork();
    }
    void type(const QString& text) {
        auto& screen = top<TableViewController>();
        dynamic_cast<TextValueGetterTableViewCell&>(*screen.cellAt({0, 0})).textEdited(text);
        press(screen.rightBarButton());
    }
    /// The words of the alert, which goes by the button.
    std::string answer(int button) {
        auto* const alert = stack->alert();
        if (!alert) return "no alert";
        const auto told = (alert->title() + "|" + alert->message()).toStdString();
        alert->touchButton(button);
        platform.loop.runWork();
        return told;
    }
    std::string activate(int row, int button = 1) {
        list->touchRow(0, row);
        platform.loop.runWork();
        return answer(button);
    }
    /// Notes what the overlay of the list says with each frame of a pass.
    void watchOverlay(const std::function<void(const bench::Frame&)>& then = {}) {
        words.clear();
        onFrame = [this, then](const bench::Frame& frame) {
            auto* const hud = list->progress();
            if (!hud) return;
            const auto text = (hud->labelText() + "; " + hud->detailsLabelText()).toStdString() +
                              (hud->cancellable() ? "; Cancel" : "");
            if (words.empty() || words.back() != text) words.push_back(text);
            if (then) then(frame);
        };
    }
    [[nodiscard]] std::string active() {
        return platform.defaults.objectForKey(activeProfileKey).textValue().value_or("");
    }
    [[nodiscard]] std::vector<int> written() const {
        std::vector<int> aids;
        for (const auto& item : writes)
            aids.push_back(item.aid);
        return aids;
    }

    std::shared_ptr<CustomTuningViewController> list;
    std::shared_ptr<NavigationController> stack;
    NotificationCenter::Observation updated;
    std::vector<std::string> words;
    int updates = 0;
};

TEST_F(TuningScreensTest, RowsAndActivation) {
    connect();
    store("Tow", {{31, 9}, {42, 110}});
    open();
    EXPECT_EQ(list->numberOfRowsInSection(0), 2);
    EXPECT_EQ(list->cellAt({0, 0})->accessory(), TableViewCell::Accessory::None);
    EXPECT_EQ(list->cellAt({0, 0})->imageName(), "checkmark.png");
    EXPECT_EQ(list->cellAt({0, 1})->accessory(), TableViewCell::Accessory::Detail);
    EXPECT_FALSE(list->canDeleteRowAtIndexPath({0, 0}));
    EXPECT_EQ(activate(1, 0), "Tow|Are you sure you want to activate the profile Tow");
    {
        const auto pass = app->beginPass();
        activate(1);
        EXPECT_TRUE(answer(0).starts_with("One moment|"));
    }
    EXPECT_TRUE(writes.empty());
    activate(1);
    EXPECT_EQ(written(), (std::vector<int>{31, 42}));
    EXPECT_EQ(active(), "Tow");
    EXPECT_EQ(updates, 1);
    EXPECT_EQ(list->cellAt({0, 1})->imageName(), "checkmark.png");
    EXPECT_EQ(stack->topViewController(), list.get());
    writes.clear();
    EXPECT_EQ(activate(0), "Change Profile|Are you sure you want to reset the device to the defaults?");
    EXPECT_EQ(written(), (std::vector<int>{24}));
    EXPECT_EQ(active(), "Default Profile");

    list->deleteRowAtIndexPath({0, 1});
    EXPECT_EQ(list->numberOfRowsInSection(0), 1);
    EXPECT_FALSE(ProfileValues::load("Tow"));
    list->iTorvFeederDidFailToConnect(*app->feeder());
    EXPECT_FALSE(list->shouldHighlightRowAtIndexPath({0, 0}));
    EXPECT_TRUE(list->cellAt({0, 0})->dimmed());
}

TEST_F(TuningScreensTest, TheOverlayTellsFailuresBeforeTheNextValue) {
    connect();
    store("Tow", {{31, 9}, {42, 110}, {43, 70}, {44, 5}});
    open();
    module.setWriteFault(31, bench::WriteFault::refuse);
    module.setWriteFault(43, bench::WriteFault::refuse);
    watchOverlay();
    list->updateSettings("Tow");
    EXPECT_EQ(words,
              (std::vector<std::string>{"Initializing settings (1/4); Setting custom variables",
                                        "Initializing settings (2/4); 1 tuning variable failed; Cancel",
                                        "Initializing settings (3/4); 1 tuning variable failed; Cancel",
                                        "Initializing settings (4/4); 2 tuning variables failed; Cancel"}));
}

TEST_F(TuningScreensTest, ACancelledPassEndsWithTheReset) {
    for (const std::size_t cancelAt : {0U, 1U, 2U}) {
        if (app) app->applicationWillTerminate();
        fakes::freshenEngine();
        std::filesystem::remove(ProfileList::dataFilePath());
        connect();
        store("Tow", {{31, 9}, {42, 110}, {43, 70}});
        open();
        module.setWriteFault(31, bench::WriteFault::refuse);
        watchOverlay([&](const bench::Frame& frame) {
            if (frame.type != 0 || frame.payload[0] != std::vector<int>{31, 42, 43}[cancelAt]) return;
            // The button is there once a write has failed.
            return cancelAt == 0 ? list->cancelCustomTuning() : list->progress()->touchCancel();
        });
        writes.clear();
        activate(1);
        const auto count = std::ranges::count(writes, 43, &bench::Item::aid);
        EXPECT_EQ(count, cancelAt == 2 ? 1 : 0);
        EXPECT_EQ(writes.back().aid, 24);
        EXPECT_EQ(active(), "Default Profile");
        EXPECT_EQ(updates, static_cast<int>(cancelAt) + 1) << "once a pass that was let end";
        const auto at = "Initializing settings (" + std::to_string(cancelAt + 1) + "/3); ";
        std::vector<std::string> expected{"Initializing settings (1/3); Setting custom variables"};
        for (std::size_t i = 1; i <= cancelAt; ++i)
            expected.push_back("Initializing settings (" + std::to_string(i + 1) +
                               "/3); 1 tuning variable failed; Cancel");
        if (cancelAt > 0) expected.push_back(at + "Cancelling...");
        expected.emplace_back("Initializing settings (1/1); Setting custom variables");
        EXPECT_EQ(words, expected);
        onFrame = nullptr;
        updated = {};
    }
}

/// What is stored when the program ends in the middle of a pass is what was stored before.
TEST_F(TuningScreensTest, QuittingAtAnyFrameOfAPassMakesNothingActive) {
    for (std::size_t step = 1; step <= 4; ++step) {
        if (app) app->applicationWillTerminate();
        platform.loop.startAgain();
        fakes::freshenEngine();
        std::filesystem::remove(ProfileList::dataFilePath());
        connect();
        store("Tow", {{31, 9}, {42, 110}});
        open();
        onFrame = [&, frames = std::size_t{0}](const bench::Frame&) mutable {
            if (++frames == step) platform.loop.quit();
        };
        activate(1);
        EXPECT_EQ(active(), "Default Profile") << step;
        EXPECT_EQ(updates, 0) << step;
        onFrame = nullptr;
        updated = {};
    }
    platform.loop.startAgain();
}

/// The stack of screens is closed while a pass goes on in the background, and what failed is told all the
/// same.
TEST_F(TuningScreensTest, AScreenThatIsLeftMeanwhileLeadsToItsReport) {
    connect();
    store("Tow", {{31, 9}, {42, 110}});
    for (const bool isPopped : {false, true}) {
        open();
        const auto page = std::make_shared<PassReportViewController>(app, "", PassReport{});
        page->presentModalViewControllerAnimated(std::exchange(stack, nullptr), false);
        module.setWriteFault(31, bench::WriteFault::stuck);
        list->touchRow(0, 1);
        platform.loop.runWork();
        onFrame = [&, frames = 0](const bench::Frame&) mutable {
            ++frames;
            if (frames == 1 && isPopped) list->popIfOnTop();
            if (frames == 2) page->dismissModalViewControllerAnimated(true);
        };
        page->alert()->touchButton(1);
        platform.loop.runWork();
        onFrame = nullptr;
        EXPECT_EQ(list->navigationController(), nullptr);
        ASSERT_NE(page->alert(), nullptr);
        EXPECT_EQ(page->alert()->message(), "The module has not confirmed 1 of 2 values.");
        page->alert()->touchButton(1);
        platform.loop.runWork();
        const auto* const shown = dynamic_cast<NavigationController*>(page->presentedViewController());
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(
            dynamic_cast<PassReportViewController&>(*shown->topViewController()).numberOfRowsInSection(0), 1);
    }
}

TEST_F(TuningScreensTest, WhatWasNotTakenIsListedAndTriedAgain) {
    connect();
    store("Tow", {{31, 9}, {42, 110}, {43, 70}});
    open();
    hold(42, 60);
    hold(43, 65);
    module.setWriteFault(31, bench::WriteFault::refuse);
    activate(1);
    EXPECT_EQ(active(), "Tow") << "whatever failed";
    auto& report = top<PassReportViewController>();
    EXPECT_EQ(report.cellAt({0, 0})->detailText(), "wanted 9 RPM, not acknowledged, found 0 RPM");
    EXPECT_EQ(report.cellAt({0, 1})->text(), "Fueling 800");
    EXPECT_EQ(report.cellAt({0, 1})->detailText(), "wanted 110 RPM, found 60 RPM");
    writes.clear();
    {
        const auto pass = app->beginPass();
        press(report.rightBarButton());
        EXPECT_TRUE(answer(0).starts_with("One moment|"));
        EXPECT_TRUE(writes.empty());
    }
    onFrame = [&](const bench::Frame& frame) {
        if (frame.type == 0 && frame.payload[0] == 42) report.progress()->touchCancel();
    };
    hold(42, 61);
    press(report.rightBarButton());
    onFrame = nullptr;
    EXPECT_EQ(report.cellAt({0, 1})->detailText(), "wanted 110 RPM, found 61 RPM") << "tried, and cancelled";
    EXPECT_EQ(report.cellAt({0, 2})->text(), "Fueling 1200") << "not tried any more";
    module.setWriteFault(31, bench::WriteFault::none);
    writes.clear();
    press(report.rightBarButton());
    EXPECT_EQ(report.numberOfRowsInSection(0), 2);
    EXPECT_EQ(written(), (std::vector<int>{31, 42, 43}));
    EXPECT_EQ(updates, 1);
}

TEST_F(TuningScreensTest, NamingSavingAndEditing) {
    connect();
    store("Tow", {{31, 9}});
    open();
    press(list->rightBarButton());
    type("Tow");
    EXPECT_EQ(answer(0), "Nae Taken|There is already a Profile with that name");
    type("Tow");
    EXPECT_EQ(answer(0), "Nae Taken|There is already a Profile with that name");
    type("savedprofile");
    EXPECT_TRUE(answer(0).starts_with("A name in use|"));
    EXPECT_EQ(active(), "Default Profile");
    type("SETTINGS_Van");
    EXPECT_TRUE(answer(1).starts_with("A name in use|"));
    for (const auto& name : {QString{"SETTINGS_Van"}, QString::fromUtf8("Zugfahrt \u00e4\u6771\U0001F69A"),
                             QString(10000, 'x')}) {
        if (name != "SETTINGS_Van") type(name);
        EXPECT_EQ(top<ProfileEditViewController>().title(), name);
        EXPECT_EQ(ProfileValues::load(name.toStdString())->size(), 5U);
        stack->popViewControllerAnimated(false);
    }
    type("Race");
    auto& editor = top<ProfileEditViewController>();
    EXPECT_EQ(editor.rightBarButton()->title(), "Save");
    EXPECT_EQ(ProfileValues::load("Race")->size(), 5U) << "there before Save";
    EXPECT_EQ(editor.cellAt({2, 0})->detailText(), "wheel");
    EXPECT_FALSE(editor.shouldHighlightRowAtIndexPath({2, 0}));

    editor.touchRow(0, 0);
    platform.loop.runWork();
    EXPECT_EQ(top<TextValueGetterViewController>().toolTip(),
              "This attribute min value is 0 RPM and it's max value is 200 RPM.");
    type("201");
    EXPECT_EQ(answer(0),
              "Value out of range|The value you typed is out of range. Please use values between 0 and 200.");
    type("55");
    EXPECT_EQ(ProfileValues::load("Race")->at(31).bytes()[0], 55);
    EXPECT_TRUE(writes.empty()) << "nothing goes to the module";

    editor.touchRow(1, 0);
    platform.loop.runWork();
    auto& equalizer = top<EqualizerViewController>();
    equalizer.setHeight(276);
    // A value below the band's range comes up as the group's default.
    EXPECT_EQ(equalizer.knobs()[0]->value(), "100");
    auto& knob = *equalizer.knobs()[1];
    EXPECT_FALSE(knob.beginTracking(10, 0));
    EXPECT_TRUE(knob.beginTracking(10, knob.handleCenter() - 20));
    knob.continueTracking(-500);
    EXPECT_EQ(knob.value(), "150");
    knob.endTracking();
    knob.continueTracking(500);
    EXPECT_EQ(knob.value(), "150");
    knob.step(-2);
    EXPECT_EQ(knob.value(), "148");
    equalizer.knobs()[0]->touchValue();
    platform.loop.runWork();
    type("150.7");  // passes by its whole part, and is out of the band's range all the same
    EXPECT_EQ(equalizer.knobs()[0]->value(), "100");
    press(equalizer.rightBarButton());
    EXPECT_EQ(ProfileValues::load("Race")->at(43).bytes()[0], 148);

    platform.defaults.kept = false;
    press(editor.rightBarButton());
    EXPECT_EQ(answer(0), "Not saved|Your changes can't be saved at the moment.");
    platform.defaults.kept = true;
    EXPECT_EQ(ProfileList{}.count("Race"), 0);
    press(editor.rightBarButton());
    EXPECT_EQ(stack->topViewController(), list.get());
    EXPECT_EQ(list->numberOfRowsInSection(0), 3);
    list->touchAccessory(0, 2);
    platform.loop.runWork();
    EXPECT_EQ(top<ProfileEditViewController>().rightBarButton()->title(), "Export");
    press(top<ProfileEditViewController>().rightBarButton());
    ASSERT_EQ(platform.mail.mails.size(), 1U);
    EXPECT_EQ(platform.mail.mails[0].subject, "Your Torvwerks Custom Tuning Export");
    platform.mail.possible = false;
    press(top<ProfileEditViewController>().rightBarButton());
    EXPECT_EQ(answer(0), "Oops!|Export requires Mail to be configured on this device.");

    platform.files.outcome = {.file = {}, .error = "disk full"};
    press(qobject_cast<BarButtonItem*>(top<ProfileEditViewController>().toolbarItems()[1].value<QObject*>()));
    EXPECT_EQ(answer(0), "Not saved|disk full");
    EXPECT_TRUE(platform.files.documents.at(0).fileName.ends_with(".itorv.json"));
    press(qobject_cast<BarButtonItem*>(top<ProfileEditViewController>().toolbarItems()[0].value<QObject*>()));
    {
        const auto pass = app->beginPass();
        top<TablePickerViewController>().touchRow(0, 0);  // the module
        platform.loop.runWork();
        EXPECT_TRUE(answer(0).starts_with("One moment|"));
    }
    press(qobject_cast<BarButtonItem*>(top<ProfileEditViewController>().toolbarItems()[0].value<QObject*>()));
    top<TablePickerViewController>().touchRow(0, 1);
    platform.loop.runWork();
    EXPECT_EQ(top<TableViewController>().cellAt({0, 0})->detailText(), "55 RPM   ⇄   9 RPM");

    stack->popViewControllerAnimated(false);
    press(qobject_cast<BarButtonItem*>(top<ProfileEditViewController>().toolbarItems()[0].value<QObject*>()));
    onFrame = [this, frames = 0](const bench::Frame&) mutable { answers = ++frames > 3; };
    top<TablePickerViewController>().touchRow(0, 0);
    platform.loop.runWork();
    EXPECT_EQ(top<TableViewController>().cellAt({0, 0})->detailText(), "55 RPM   ⇄   0 RPM")
        << "a few lost answers are no silence";
}

TEST(EqualizerBand, ADefaultOutsideItsRangeIsInTheTextAndNotOnTheRail) {
    TorvAttributeGroup group;
    group.lowValue = 50;
    group.highValue = 150;
    group.defaultValue = 55;
    group.items.resize(2);
    auto& band = group.items[1];
    band.minValue = band.warningvaluelow = 60;
    band.maxValue = band.warningvaluehigh = 150;
    AVFormatterData record;
    record.value = "10";
    EqualizerKnobView knob;
    knob.configureForSettingInGroupWithValue(band, group, record);
    EXPECT_EQ(record.value, "55");
    EXPECT_EQ(knob.slider().selectedValue(), 60);
}

/// At a start, over the first page.
TEST_F(TuningScreensTest, ADamagedListIsTriedAgainReplacedOrLeft) {
    connect();
    store("Tow", {{31, 9}});
    open();
    const auto file = ProfileList::dataFilePath();
    const auto aside = file.string() + " unreadable 1";
    std::filesystem::remove(aside);
    int readable = 0;
    const auto ask = [&] { askAboutDamagedList(*list, [&] { ++readable; }); };
    ask();
    EXPECT_EQ(stack->alert(), nullptr);
    std::ofstream{file} << std::string(5000, '!');
    platform.defaults.setObjectForKey(file.string(), damagedListKey);
    ask();
    EXPECT_NE(answer(1).find(file.string()), std::string::npos);
    EXPECT_NE(answer(0).find(file.string()), std::string::npos) << "it is as it was, and asked about again";
    EXPECT_EQ(readable, 0);
    EXPECT_EQ(ProfileList::damagedFile(), file);
    ask();
    answer(2);
    EXPECT_EQ(readable, 1);
    EXPECT_EQ(ProfileList{}.names(), (std::vector<std::string>{"Tow"}));
    EXPECT_TRUE(std::filesystem::remove(aside));
    platform.defaults.setObjectForKey(file.string(), damagedListKey);
    ask();
    answer(1);
    EXPECT_EQ(readable, 2);
    EXPECT_EQ(stack->alert(), nullptr);
}

/// One that was not read at all leads nowhere; one that holds no document leads to the list.
TEST_F(TuningScreensTest, ALaunchFileThatIsNone) {
    connect();
    for (const bool wasRead : {false, true}) {
        list = std::make_shared<CustomTuningViewController>(app);
        list->setImportTrouble(iTorvAppDelegate::ImportTrouble{.sentence = "Why.", .wasRead = wasRead});
        const auto page = std::make_shared<PassReportViewController>(app, "", PassReport{});
        stack = std::make_shared<NavigationController>(list);
        page->presentModalViewControllerAnimated(stack, false);
        EXPECT_EQ(answer(0), "The file can't be imported|Why.");
        EXPECT_EQ(page->presentedViewController() != nullptr, wasRead);
        EXPECT_EQ(list->leftBarButton(), nullptr);
    }
}

}  // namespace
}  // namespace tuning_test
