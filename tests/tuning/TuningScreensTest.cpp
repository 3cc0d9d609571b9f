// The list, the names, the editor and the equalizer on their screens, in virtual time.
#include "Truck.h"
#include "platform/NotificationNames.h"
#include "screens/NavigationController.h"
#include "tuning/ProfileValues.h"
#include "tuning/screens/CustomTuningViewController.h"
#include "tuning/screens/PassReportViewController.h"
#include "tuning/screens/ProfileEditViewController.h"
#include "tuning/screens/ProfileNameViewController.h"

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
        const auto words = (alert->title() + "|" + alert->message()).toStdString();
        alert->touchButton(button);
        platform.loop.runWork();
        return words;
    }
    std::string activate(int row, int button = 1) {
        list->touchRow(0, row);
        platform.loop.runWork();
        return answer(button);
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

TEST_F(TuningScreensTest, ACancelledPassEndsWithTheReset) {
    for (const std::size_t cancelAt : {0U, 1U, 2U}) {
        if (app) app->applicationWillTerminate();
        fakes::freshenEngine();
        std::filesystem::remove(ProfileList::dataFilePath());
        connect();
        store("Tow", {{31, 9}, {42, 110}, {43, 70}});
        open();
        module.setWriteFault(31, bench::WriteFault::refuse);
        std::vector<std::string> words;
        onFrame = [&](const bench::Frame& frame) {
            auto* const hud = list->progress();
            if (frame.type != 0 || !hud) return;
            const auto text = (hud->labelText() + "; " + hud->detailsLabelText()).toStdString() +
                              (hud->cancellable() ? "; Cancel" : "");
            if (words.empty() || words.back() != text) words.push_back(text);
            if (frame.payload[0] == std::vector<int>{31, 42, 43}[cancelAt]) list->cancelCustomTuning();
        };
        writes.clear();
        activate(1);
        const auto count = std::ranges::count(writes, 43, &bench::Item::aid);
        EXPECT_EQ(count, cancelAt == 2 ? 1 : 0);
        EXPECT_EQ(writes.back().aid, 24);
        EXPECT_EQ(active(), "Default Profile");
        EXPECT_EQ(updates, static_cast<int>(cancelAt) + 1) << "once a pass that was let end";
        ASSERT_FALSE(words.empty());
        EXPECT_EQ(words.front(), "Initializing settings (1/3); Setting custom variables");
        EXPECT_EQ(words.back(), "Initializing settings (1/1); Setting custom variables");
        if (cancelAt == 1) {
            EXPECT_EQ(words[1], "Initializing settings (2/3); 1 tuning variable failed; Cancel");
        }
        onFrame = nullptr;
        updated = {};
    }
}

TEST_F(TuningScreensTest, WhatWasNotTakenIsListedAndTriedAgain) {
    connect();
    store("Tow", {{31, 9}, {42, 110}});
    open();
    hold(42, 60);
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
    module.setWriteFault(31, bench::WriteFault::none);
    writes.clear();
    press(report.rightBarButton());
    EXPECT_EQ(report.numberOfRowsInSection(0), 1);
    EXPECT_EQ(written(), (std::vector<int>{31, 42}));
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
    EXPECT_TRUE(equalizer.knobs()[0]->ticks().empty());
    EXPECT_EQ(knob.ticks().size(), 11);
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
}

TEST_F(TuningScreensTest, AnImportGoesByTheNameAndTheEditor) {
    connect();
    store("Race", {{31, 1}});
    list = std::make_shared<CustomTuningViewController>(app);
    list->setImportVehicleInfo(Dictionary{
        {"profileName", "Race"}, {"vehicleName", "Van"}, {"settingsMap", Dictionary{{"31", "66"}}}});
    stack = std::make_shared<NavigationController>(list);
    stack->loadViewIfNeeded();
    stack->viewWillAppear();
    stack->viewDidAppear();
    EXPECT_EQ(list->leftBarButton()->title(), "Close");
    press(top<ProfileNameViewController>().rightBarButton());
    EXPECT_TRUE(answer(0).starts_with("Nae Taken"));
    type("Race 2");
    EXPECT_EQ(answer(0), "Please look this profile through|The file was made for Van.");
    EXPECT_EQ(ProfileValues::load("Race 2")->at(31).bytes()[0], 66);
    press(top<ProfileEditViewController>().rightBarButton());
    EXPECT_EQ(stack->topViewController(), list.get());
    EXPECT_EQ(list->numberOfRowsInSection(0), 3);
    EXPECT_TRUE(writes.empty());
}

}  // namespace
}  // namespace tuning_test
