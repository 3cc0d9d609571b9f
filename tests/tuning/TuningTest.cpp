// Profiles, passes and documents, in virtual time on the bench's own memory.
#include <fstream>
#include <random>

#include "JSON/JSONValue.h"
#include "Truck.h"
#include "platform/NotificationNames.h"
#include "tuning/Activation.h"
#include "tuning/AsFoundProfile.h"
#include "tuning/EqualizerScale.h"
#include "tuning/EqualizerSliderControl.h"
#include "tuning/ProfileEditor.h"
#include "tuning/ProfileValues.h"

namespace tuning_test {
namespace {

AV one(AID aid, std::uint8_t value) {
    return AV::forAID(aid, Bytes{value});
}
TuningPass::Progress silent() {
    return [](std::size_t, std::size_t, std::size_t) {};
}
bool never() {
    return false;
}

TEST_F(TuningTest, TheListKeepsNamesAsTheyAre) {
    const std::string quotes = "O'Neill \"; DROP TABLE FIELDS; --";
    ProfileList list;
    for (const auto& name : {std::string{"Tow"}, quotes, std::string{}, std::string(10000, 'x')})
        list.add(name);
    EXPECT_EQ(ProfileList{}.names(), (std::vector<std::string>{"Tow", quotes, "", std::string(10000, 'x')}));
    EXPECT_EQ(list.count("tow"), 0);
    EXPECT_EQ(list.count(quotes), 1);
    list.add("Tow");
    EXPECT_EQ(list.count("Tow"), 2);
    list.remove("Tow");
    EXPECT_EQ(list.names().front(), quotes);
}

TEST_F(TuningTest, ADamagedListStaysAndANewOneIsMadeOfWhatIsStored) {
    ProfileValues::store("Tow", {{31, one(31, 9)}});
    platform.defaults.setObjectForKey(archivedProfileDictionary({}), "SETTINGS_Truck");
    const auto file = ProfileList::dataFilePath();
    std::ofstream{file} << std::string(5000, '!');
    EXPECT_DEATH(ProfileList{}, "Error creating table: file is not a database");
    std::ofstream{file.string() + "-journal"} << "what is left of a change";
    platform.defaults.setObjectForKey(file.string(),
                                      damagedListKey);  // which the process that ended has kept
    EXPECT_EQ(ProfileList::damagedFile(), file);
    const auto aside = file.string() + " unreadable 1";
    std::filesystem::remove(aside);
    EXPECT_TRUE(ProfileList::beginAnew());
    EXPECT_EQ(std::filesystem::file_size(aside), 5000U);
    EXPECT_TRUE(std::filesystem::remove(aside + "-journal"));
    EXPECT_EQ(ProfileList{}.names(), (std::vector<std::string>{"Tow"}));
    EXPECT_TRUE(ProfileList::damagedFile().empty());
    std::filesystem::remove(aside);
}

TEST_F(TuningTest, WhatIsFatalIsToldAsItIs) {
    const auto file = ProfileList::dataFilePath();
    std::filesystem::create_directory(file);
    EXPECT_DEATH(ProfileList{}, "failed to open");
    std::filesystem::remove(file);
    ProfileList list;
    sqlite3* database = nullptr;
    sqlite3_open(file.c_str(), &database);
    sqlite3_exec(database,
                 "CREATE TRIGGER t BEFORE INSERT ON FIELDS BEGIN SELECT RAISE(ABORT, 'no room'); END",
                 nullptr, nullptr, nullptr);
    sqlite3_close(database);
    EXPECT_DEATH(list.add("Tow"), "error sqlite no room");
}

TEST_F(TuningTest, NamesThatTheProgramUsesItself) {
    for (const auto* name : {"savedprofile", "Default Profile", "current_vehicle", "SETTINGS_Truck",
                             "Truck_1_2_KEY", "AS_FOUND_x", "vehicles unreadable 1"})
        EXPECT_TRUE(isSystemKey(name)) << name;
    for (const auto* name : {"", "Tow", "default profile", "SETTINGS"})
        EXPECT_FALSE(isSystemKey(name)) << name;
    ProfileValues::remove("savedprofile");
    EXPECT_EQ(platform.defaults.objectForKey(activeProfileKey).textValue(), "Default Profile");
}

TEST_F(TuningTest, TheRecordAgreesWithTheModuleUnderEachFault) {
    connect();
    const std::vector<AID> aids{31, 42, 43, 44};
    bench::Profile memory;
    for (const AID aid : aids)
        memory.tuning.push_back({.aid = static_cast<std::uint8_t>(aid), .factor = 1, .maxValue = 200});
    module.adopt(memory);
    std::mt19937 random{7};
    for (int pass = 0; pass < 200; ++pass) {
        ProfileDictionary profile;
        for (const AID aid : aids) {
            profile.emplace(aid, one(aid, static_cast<std::uint8_t>(random() % 200)));
            module.setWriteFault(static_cast<std::uint8_t>(aid),
                                 static_cast<bench::WriteFault>(random() % 4));
        }
        ProfileValues::store("Tow", profile);
        Activation activation{app->feeder(), truck()};
        const auto report = activation.push("Tow", silent(), never);
        EXPECT_EQ(report.total, aids.size());
        for (const AID aid : aids) {
            const auto row = std::ranges::find(report.rows, aid, &PassReport::Row::aid);
            const int held = module.value(static_cast<std::uint8_t>(aid))[0];
            const int wanted = profile.at(aid).bytes()[0];
            const bool refused = writes.empty() ? false
                                                : std::ranges::count(writes, static_cast<std::uint8_t>(aid),
                                                                     &bench::Item::aid) > 1;
            EXPECT_EQ(row == report.rows.end(), held == wanted && !refused) << pass << " " << aid;
            if (row == report.rows.end()) continue;
            EXPECT_EQ(row->wanted, std::to_string(wanted) + " RPM");
            EXPECT_EQ(row->found, std::to_string(held) + " RPM");
            EXPECT_EQ(row->fault,
                      refused ? PassReport::Fault::notAcknowledged : PassReport::Fault::different);
        }
        EXPECT_EQ(report.wanted.size(), report.rows.size());
        writes.clear();
    }
}

TEST_F(TuningTest, ALinkThatIsLostAtAnyStepEndsInAReport) {
    ProfileValues::store("Tow", {{31, one(31, 9)}, {42, one(42, 110)}, {43, one(43, 70)}});
    for (std::size_t step = 1; step <= 6; ++step) {
        if (app) app->applicationWillTerminate();
        fakes::freshenEngine();
        connect();
        std::size_t frames = 0;
        onFrame = [&](const bench::Frame&) {
            if (++frames != step) return;
            answers = false;
            platform.stream().lose();
        };
        const auto report = Activation{app->feeder(), truck()}.push("Tow", silent(), never);
        EXPECT_EQ(report.total, 3U) << step;
        EXPECT_EQ(report.rows.size(), 3U - (step - 1) / 2) << step;
        onFrame = nullptr;
        answers = true;
    }
}

/// The replay after a reconnect brings the profile that was active into the middle of the pass.
TEST_F(TuningTest, AReplayInsideAPassIsInItsReport) {
    const ProfileDictionary wanted{{31, one(31, 9)}, {42, one(42, 110)}, {43, one(43, 70)}};
    ProfileValues::store("Tow", wanted);
    ProfileValues::store("Old", {{31, one(31, 1)}, {42, one(42, 2)}, {43, one(43, 3)}});
    platform.defaults.setObjectForKey(std::string{"Old"}, activeProfileKey);
    for (std::size_t step = 1; step <= 6; ++step) {
        if (app) app->applicationWillTerminate();
        fakes::freshenEngine();
        connect();
        platform.loop.runFor(1s);
        ConnectReplay replay{app, [](const auto&) {}};
        loseAt(step, replay);
        const auto report = Activation{app->feeder(), truck()}.push("Tow", silent(), never);
        EXPECT_EQ(module.value(31)[0], 1) << step;
        for (const auto& [aid, value] : wanted) {
            if (std::ranges::find(report.rows, aid, &PassReport::Row::aid) != report.rows.end()) continue;
            EXPECT_EQ(module.value(static_cast<std::uint8_t>(aid))[0], value.bytes()[0])
                << step << " " << aid;
        }
        onFrame = nullptr;
        answers = true;
        loseAt(step, replay);
        const auto reset =
            Activation{app->feeder(), truck()}.push(std::string{defaultProfileName}, silent(), never);
        EXPECT_TRUE(reset.isReset) << step;
        onFrame = nullptr;
        answers = true;
        lost = {};
    }
}

TEST_F(TuningTest, AResetIsReadBackAndEndsBetweenItsItems) {
    connect();
    for (const std::size_t cancelAfter : {0U, 2U, 9U}) {
        std::vector<int> asked;
        onFrame = [&](const bench::Frame& frame) {
            if (frame.type != 0) asked.push_back(frame.payload[0]);
        };
        TuningPass pass{app->feeder(), silent(), [&] { return asked.size() >= cancelAfter; }};
        pass.reset(truck());
        std::vector<int> all{31, 152, 42, 43, 44};
        all.resize(std::min(cancelAfter, all.size()));
        EXPECT_EQ(asked, all);
    }
}

TEST_F(TuningTest, WhatTheModuleHeldAtFirstIsKeptOnce) {
    platform.defaults.removeObjectForKey("AS_FOUND_Truck");
    connect();
    hold(31, 77);
    EXPECT_EQ(AsFoundProfile::keep(app->feeder(), truck(), never), AsFoundProfile::Outcome::kept);
    const auto names = ProfileList{}.names();
    ASSERT_EQ(names.size(), 1U);
    EXPECT_TRUE(names[0].starts_with("As found 20"));
    EXPECT_EQ(ProfileValues::load(names[0])->at(31).bytes()[0], 77);
    EXPECT_EQ(ProfileValues::load(names[0])->size(), 5U);
    EXPECT_EQ(AsFoundProfile::keep(app->feeder(), truck(), never), AsFoundProfile::Outcome::notDue);

    // Another vehicle, whose module says nothing: asked for again until something has been written.
    auto other = truck();
    other.setName("Other");
    answers = false;
    EXPECT_EQ(AsFoundProfile::keep(app->feeder(), other, never), AsFoundProfile::Outcome::unanswered);
    AsFoundProfile::closeAfter({{.aid = 31, .acknowledged = false}}, other);
    answers = true;
    EXPECT_EQ(AsFoundProfile::keep(app->feeder(), other, never), AsFoundProfile::Outcome::kept);
    EXPECT_EQ(ProfileList{}.names().back(), names[0] + " 2");
    // With a damaged list nothing ends, and a new list finds it.
    const auto file = ProfileList::dataFilePath();
    std::ofstream{file, std::ios::trunc} << std::string(5000, '!');
    other.setName("Fourth");
    EXPECT_EQ(AsFoundProfile::keep(app->feeder(), other, never), AsFoundProfile::Outcome::kept);
    const auto aside = file.string() + " unreadable 1";
    std::filesystem::remove(aside);
    EXPECT_TRUE(ProfileList::beginAnew());
    EXPECT_EQ(ProfileList{}.count(names[0] + " 3"), 1);
    std::filesystem::remove(aside);
    auto third = truck();
    third.setName("Third");
    AsFoundProfile::closeAfter({{.aid = 31, .acknowledged = true}}, third);
    EXPECT_EQ(AsFoundProfile::keep(app->feeder(), third, never), AsFoundProfile::Outcome::notDue);
}

TEST_F(TuningTest, AnEditorSeedsStoresAndTravels) {
    connect();
    hold(31, 5);
    hold(42, 120);
    for (const AID aid : {31, 42})
        app->feeder()->requestValueForAID(aid);
    ProfileEditor editor{"Tow", truck(), app->feeder()};
    editor.seed();
    const auto stored = [] { return *ProfileValues::load("Tow"); };
    EXPECT_EQ(stored().size(), 5U);
    EXPECT_EQ(stored().at(42).bytes()[0], 120);
    const auto& rev = editor.groups()[0].items[0];
    const auto& timer = editor.groups()[0].items[1];
    for (const auto& [text, fits] : std::vector<std::pair<const char*, bool>>{{"0", true},
                                                                              {" 200 ", true},
                                                                              {"200.9", true},
                                                                              {"201", false},
                                                                              {"-1", false},
                                                                              {"abc", true},
                                                                              {"-0.9", true}})
        EXPECT_EQ(editor.accepts(rev, text), fits) << text;
    EXPECT_TRUE(editor.accepts(timer, "600"));
    editor.setRecord(timer, {.flags = 18, .value = "650", .additionalData = {}});
    EXPECT_FALSE(editor.accepts(timer, "200")) << "the second mode has a range of its own";
    EXPECT_TRUE(editor.accepts(timer, "700"));
    editor.setText(rev, " 33 ");
    EXPECT_EQ(stored().at(31).bytes()[0], 33);

    // There and back: values travel, flags don't, and what the document lacks is live.
    auto document = *JSONValue(*editor.document());
    EXPECT_EQ(document.dictionary()->size(), 3U);
    EXPECT_EQ(document["vehicleName"].textValue(), "Truck");
    EXPECT_EQ(profileNameOf(document), "Tow");
    EXPECT_EQ(document["settingsMap"]["31"].textValue(), "33");
    EXPECT_EQ(oddityOf(document, truck()), "");
    document.dictionary()->find("settingsMap")->dictionary()->remove("42");
    hold(42, 99);
    app->feeder()->requestValueForAID(42);
    ProfileEditor import{"Import", truck(), app->feeder()};
    import.take(document);
    EXPECT_EQ(import.settingValues().at(31).bytes()[0], 33);
    EXPECT_EQ(import.settingValues().at(42).bytes()[0], 99);
    EXPECT_EQ(import.formattedValueForSetting(timer).value, "650");
    EXPECT_NE(import.formattedValueForSetting(timer).flags, 18);

    const Value odd =
        Dictionary{{"vehicleName", "Van"},
                   {"settingsMap",
                    Dictionary{{"31", Number::fromInteger(7)}, {"42", "NaN"}, {"43", Array{}}, {"7", "1"}}}};
    EXPECT_EQ(
        oddityOf(odd, truck()),
        "The file was made for Van. 1 of its 4 values are not of this vehicle and are left out. 2 of its "
        "values don't fit as they stand: look them through.");
    import.take(odd);
    EXPECT_EQ(import.settingValues().at(31).bytes()[0], 7);
    EXPECT_NE(oddityOf(Value{"text"}, truck()), "");

    const auto differences =
        differencesOf({{31, one(31, 1)}, {42, one(42, 2)}}, {{31, one(31, 1)}, {42, one(42, 3)}}, truck());
    ASSERT_EQ(differences.size(), 1U);
    EXPECT_EQ(differences[0].name + ": " + differences[0].first + ", " + differences[0].second,
              "Fueling 800: 2 RPM, 3 RPM");
}

/// There and back, by the number of the formatter. Flags don't travel, times have no way back of their own,
/// and what has none at all is what the module holds.
TEST_F(TuningTest, WhatADocumentCarriesByFormatter) {
    struct Row {
        Bytes stored;
        const char* text;
        Bytes imported;
    };
    const Bytes live{7};
    const std::vector<Row> rows{
        {{10}, "10", {10}},
        {{1}, "Refer to flags.", live},
        {{16}, "82", live},
        {{5}, "5", live},
        {{1, 20}, "20", {0, 20}},
        {{2, 30}, "30", {0, 30}},
        {{1, 44, 1}, "300", {0, 44, 1}},
        {{3, 44, 1}, "300", {0, 44, 1}},
        {{6, 1, 2, 44, 1, 3}, "30.0", {6, 0, 0, 44, 1}},
        {{10}, "10", {10}},
        {{1, 0, 2, 3}, "   1:02:03", {0}},
    };
    constexpr int wide = 226;  // of 13 bytes
    const auto aidOf = [](int formatter) { return formatter == 8 ? wide : 50 + formatter; };
    Array items;
    for (int formatter = 0; formatter < static_cast<int>(rows.size()); ++formatter)
        items.push_back(item(aidOf(formatter), "Item", 0, 200, formatter));
    Vehicle vehicle;
    vehicle.setName("Truck");
    vehicle.setInfo(ProfileInfo{Dictionary{
        {"parameters",
         Dictionary{{"tuning", Array{Dictionary{{"name", "All"}, {"type", "list"}, {"items", items}}}}}}}});
    connect();
    ProfileEditor from{"From", vehicle, app->feeder()};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto aid = aidOf(static_cast<int>(i));
        if (aid != wide) hold(static_cast<std::uint8_t>(aid), 7);
        if (aid != wide) app->feeder()->requestValueForAID(aid);
        from.updateAIDWithAV(aid, AV::forAID(aid, rows[i].stored));
    }
    const auto document = *JSONValue(*from.document());
    ProfileEditor into{"Into", vehicle, app->feeder()};
    into.take(document);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto aid = aidOf(static_cast<int>(i));
        EXPECT_EQ(document["settingsMap"][std::to_string(aid)].textValue(), rows[i].text) << i;
        const auto imported = into.settingValues().at(aid);
        const auto expected = AV::forAID(aid, rows[i].imported);
        EXPECT_TRUE(std::ranges::equal(imported.bytes(), expected.bytes())) << i;
    }
    // Two that read the same and differ in the fields behind the text.
    EXPECT_EQ(differencesOf({{wide, AV::forAID(wide, Bytes{6, 1, 2, 44, 1, 3})}},
                            {{wide, AV::forAID(wide, Bytes{6, 1, 9, 44, 1, 3})}}, vehicle)
                  .size(),
              1U);
    // What is not stored is left out.
    EXPECT_EQ(JSONValue(*ProfileEditor("Nothing", vehicle, app->feeder()).document())
                  ->dictionary()
                  ->find("settingsMap")
                  ->dictionary()
                  ->size(),
              0U);
}

TEST(EqualizerSlider, SettersPushTheOthers) {
    using Slider = EqualizerSliderControl;
    struct Row {
        void (Slider::*set)(double);
        double value;
        std::vector<double> after;  // display, slider and warning, the lower ends and then the upper
    };
    const std::vector<Row> rows{
        {&Slider::setMinDisplayValue, 40, {40, 40, 40, 80, 90, 100}},
        {&Slider::setMinDisplayValue, -5, {-5, 10, 20, 80, 90, 100}},
        {&Slider::setMinSliderValue, -5, {-5, -5, 20, 80, 90, 100}},
        {&Slider::setMinSliderValue, 50, {0, 50, 50, 80, 90, 100}},
        {&Slider::setLowWarningValue, -9, {-9, -9, -9, 80, 90, 100}},
        {&Slider::setLowWarningValue, 99, {0, 10, 99, 80, 90, 100}},
        {&Slider::setMaxDisplayValue, 70, {0, 10, 20, 70, 70, 70}},
        {&Slider::setMaxSliderValue, 60, {0, 10, 20, 60, 60, 100}},
        {&Slider::setMaxSliderValue, 120, {0, 10, 20, 80, 120, 120}},
        {&Slider::setHighWarningValue, 130, {0, 10, 20, 130, 130, 130}},
    };
    for (const auto& row : rows) {
        Slider slider;
        slider.setMinSliderValue(10);
        slider.setLowWarningValue(20);
        slider.setMinDisplayValue(0);
        slider.setMinSliderValue(10);
        slider.setLowWarningValue(20);
        slider.setMaxSliderValue(90);
        slider.setHighWarningValue(80);
        (slider.*row.set)(row.value);
        EXPECT_EQ((std::vector<double>{slider.minDisplayValue(), slider.minSliderValue(),
                                       slider.lowWarningValue(), slider.highWarningValue(),
                                       slider.maxSliderValue(), slider.maxDisplayValue()}),
                  row.after)
            << row.value;
    }
}

TEST(EqualizerSlider, HandleTouchAndRailByTheFigures) {
    EqualizerSliderControl slider;
    slider.setSize(20, 122, 20, 22);
    for (const auto& [value, center] : {std::pair{0.0, 111.0}, {100.0, 11.0}, {25.0, 86.0}}) {
        slider.setSelectedValue(value);
        EXPECT_EQ(slider.handleCenter(), center);
        EXPECT_EQ(slider.valueAt(center), value);
    }
    EXPECT_TRUE(slider.canGrab(10, 86 + 41) && slider.canGrab(10, 86 - 41));
    EXPECT_FALSE(slider.canGrab(10, 86 + 41.5) || slider.canGrab(10, 86 - 41.5));
    slider.setMaxSliderValue(80);
    slider.setMinSliderValue(30);
    slider.setSelectedValue(99);
    EXPECT_EQ(slider.selectedValue(), 80);
    slider.setSelectedValue(-3);
    EXPECT_EQ(slider.selectedValue(), 30);
    slider.setHighWarningValue(75);
    EXPECT_EQ(slider.sliderMaxOutOfRangeLine().top, 11);
    EXPECT_EQ(slider.sliderMaxOutOfRangeLine().height, 122 * 0.25 - 5.5);
    EXPECT_EQ(slider.sliderMinOutOfRangeLine().height, 122 * 0.30 - 5.5);
    EXPECT_EQ(slider.sliderMinOutOfRangeLine().top, 122 - 31.1 - 11);
    EXPECT_EQ(slider.sliderRangeLine().top, 11 + 25);
    EXPECT_EQ(slider.sliderRangeLine().height, 122 - 22 - 25 - 31.1);
    slider.setMaxDisplayValue(5);
    slider.setMinDisplayValue(5);
    EXPECT_EQ(slider.handleCenter(), 111);
}

TEST(EqualizerScale, ElevenTicksFromTheTop) {
    const auto ticks = EqualizerScale{0, 20, 10}.ticks(20, 100, true);
    ASSERT_EQ(ticks.size(), 11U);
    std::string labels;
    for (const auto& tick : ticks)
        labels += tick.label + (tick.highlighted ? "!" : "") + ",";
    EXPECT_EQ(labels, ",,16,,12,!,8,,4,,0,");
    EXPECT_EQ(ticks[1].x, 10);
    EXPECT_EQ(ticks[2].width, 20);
    EXPECT_FLOAT_EQ(static_cast<float>(ticks[10].y), 98);
    EXPECT_FLOAT_EQ(static_cast<float>(ticks[10].labelTop), 84);
}

}  // namespace
}  // namespace tuning_test
