#include "vehicles/VehicleDataSource.h"

#include <gtest/gtest.h>

#include <fstream>

#include "fakes/FakePlatform.h"
#include "platform/Reachability.h"
#include "vehicles/ProfileDocument.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/StoreTrouble.h"
#include "vehicles/VehicleArchive.h"
#include "vehicles/VersionComparison.h"

namespace {

using namespace torv;
using Texts = std::vector<std::string>;

Vehicle made(const std::string& name, const Vehicle::Text& version, const Vehicle::Text& url,
             const std::string& info = {}) {
    Vehicle vehicle;
    vehicle.setName(name);
    vehicle.setVersion(version);
    vehicle.setUrl(url);
    if (!info.empty()) vehicle.setInfo(ProfileInfo{info});
    return vehicle;
}

/// "NAME VERSION URL", "+" where there is a document, "!" where an update is available.
std::string line(const Vehicle& vehicle) {
    const auto text = [](const Vehicle::Text& t) { return t.value_or("-"); };
    return text(vehicle.name()) + ' ' + text(vehicle.version()) + ' ' + text(vehicle.url()) +
           (vehicle.info().empty() ? "" : " +") + (vehicle.updateAvailable() ? " !" : "");
}

Texts lines(const std::vector<Vehicle>& vehicles) {
    Texts all;
    for (const auto& vehicle : vehicles)
        all.push_back(line(vehicle));
    return all;
}

std::string entry(const std::string& name, const std::string& version, const std::string& url) {
    return R"({"vehicle": ")" + name + R"(", "version": ")" + version + R"(", "url": ")" + url + R"("})";
}

class VehicleDataSourceTest : public testing::Test {
protected:
    VehicleDataSourceTest() {
        platform.network.flags = Reachability::reachable;
        EXPECT_TRUE(VehicleDataSource::setUpdateServer("http://server/", platform.loader));
    }
    ~VehicleDataSourceTest() override {
        static_cast<void>(
            VehicleDataSource::setUpdateServer(VehicleDataSource::defaultUpdateServer, platform.loader));
    }

    void answer(const std::string& text, int status = 200) {
        platform.loader.replies.push_back(
            {.body = Data{text.begin(), text.end()}, .status = status, .error = {}});
    }
    void store(const std::vector<Vehicle>& vehicles) {
        platform.defaults.entries["vehicles"] = archivedVehicles(vehicles);
        platform.defaults.entries["current_vehicle"] = archivedVehicles({vehicles.data(), 1});
    }

    fakes::FakePlatform platform;
};

TEST_F(VehicleDataSourceTest, MergesByTheRules) {
    const std::string doc = R"({"vehicle": "A"})";
    const struct {
        const char* name;
        std::vector<Vehicle> stored;
        Texts manifest;
        Texts merged;
        std::string current;
    } rows[]{
        {"unknown",
         {made("B", "1.0", "u", doc)},
         {entry("A", "1.0", "a")},
         {"A 1.0 a", "B 1.0 u +"},
         "B 1.0 u +"},
        {"newer, with a document",
         {made("A", "1.2", "u", doc)},
         {entry("A", "1.3", "new")},
         {"A 1.2 new + !"},
         "A 1.2 new + !"},
        {"not newer", {made("A", "1.3", "u", doc)}, {entry("A", "1.3", "new")}, {"A 1.3 u +"}, "A 1.3 u +"},
        {"one name twice",
         {made("B", "1.0", "u")},
         {entry("A", "1.0", "a"), entry("A", "1.1", "b")},
         {"A 1.1 b", "B 1.0 u"},
         "B 1.0 u"},
        {"another than the current is newer",
         {made("B", "1.0", "u"), made("A", "1.0", "u", doc)},
         {entry("A", "2.0", "a")},
         {"A 1.0 a + !", "B 1.0 u"},
         "B 1.0 u"},
        {"sorted by code point",
         {made("b", "1.0", "u"), made("Z", "1.0", "u")},
         {entry("a", "1.0", "u"), entry("É", "1.0", "u"), entry("A", "1.0", "u")},
         {"A 1.0 u", "Z 1.0 u", "a 1.0 u", "b 1.0 u", "É 1.0 u"},
         "b 1.0 u"},
        {"numbers left from the vehicle before",
         {made("A", "1.0", "u"), made("B", "7", "u", doc)},
         {entry("A", "2.0", "u"), entry("B", "7", "b")},
         {"A 2.0 u", "B 7 b + !"},
         "A 2.0 u"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        store(row.stored);
        std::string manifest;
        for (const auto& text : row.manifest)
            manifest += (manifest.empty() ? "" : ",") + text;
        answer('[' + manifest + ']');
        const auto merged = VehicleDataSource::vehicles();
        EXPECT_EQ(lines(merged), row.merged);
        EXPECT_EQ(line(VehicleDataSource::currentVehicle()), row.current);
        auto stored = VehicleDataSource::storedVehicles();
        EXPECT_EQ(line(stored.front()).front(), line(row.stored.front()).front()) << "the stored order stays";
        std::sort(stored.begin(), stored.end(),
                  [](const auto& a, const auto& b) { return a.name() < b.name(); });
        EXPECT_EQ(lines(stored), row.merged);
    }
    EXPECT_EQ(platform.loader.requests.front(), "http://server/itorvv2/update.json");
}

TEST_F(VehicleDataSourceTest, WritesNothingWithoutANetwork) {
    store({made("B", "1.0", "u"), made("A", "1.0", "u")});
    const auto before = platform.defaults.entries;
    platform.network.flags = 0;
    EXPECT_EQ(lines(VehicleDataSource::vehicles()), (Texts{"A 1.0 u", "B 1.0 u"}));
    EXPECT_EQ(platform.defaults.entries, before);
    EXPECT_TRUE(platform.loader.requests.empty());
}

TEST_F(VehicleDataSourceTest, UpdatesAVehicle) {
    const std::string whole = R"({"vehicle": "Other", "version": "2.0", "DTC": "YES", "url": "elsewhere"})";
    const struct {
        const char* name;
        Vehicle::Text url;
        std::string body;
        int status;
        bool came;
        std::string after;
    } rows[]{
        {"whole", "u", whole, 200, true, "A 2.0 u +"},
        {"404", "u", whole, 404, false, "A 1.0 u + !"},
        {"no url", {}, whole, 200, false, "A 1.0 - + !"},
        {"nothing came", "u", "", 0, false, "A 1.0 u + !"},
        {"no JSON", "u", "<html>", 200, true, "A - u"},
        {"not UTF-8", "u", "{\"version\": \"2.0\", \"x\": \"\xFF\"}", 200, true, "A - u"},
        {"no version", "u", R"({"parameters": {}})", 200, true, "A - u +"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        auto vehicle = made("A", "1.0", row.url, "{\"a\": 1}");
        vehicle.setUpdateAvailable(true);
        store({vehicle, made("B", "1.0", "u")});
        const auto before = platform.defaults.entries;
        platform.loader.replies.clear();
        if (row.status != 0) answer(row.body, row.status);
        EXPECT_EQ(VehicleDataSource::updateVehicle(vehicle), row.came);
        EXPECT_EQ(line(vehicle), row.after);
        if (row.came) {
            EXPECT_EQ(lines(VehicleDataSource::storedVehicles()), (Texts{"B 1.0 u", row.after}));
            EXPECT_EQ(platform.defaults.entries.at("current_vehicle"), before.at("current_vehicle"));
        } else {
            EXPECT_EQ(platform.defaults.entries, before);
        }
        EXPECT_EQ(vehicle.DTC().has_value(), row.after == "A 2.0 u +");
    }
}

TEST_F(VehicleDataSourceTest, SetsAsideWhatItCanNotRead) {
    const Value unreadable[]{"iTorv vehicles 2\n", Number::fromInteger(1), Data{1, 2}, archivedVehicles({}),
                             "iTorv vehicles 1\n{}\n"};
    for (const auto* key : {"current_vehicle", "vehicles"}) {
        int number = 0;
        for (const auto& value : unreadable) {
            platform.defaults.entries[key] = value;
            EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "Diesel Pickup 6.7L");
            EXPECT_EQ(VehicleDataSource::storedVehicles().size(), 1U);
            EXPECT_EQ(
                platform.defaults.entries.at(std::string{key} + " unreadable " + std::to_string(++number)),
                value);
        }
    }
    Vehicle damaged = VehicleDataSource::currentVehicle();
    damaged.setInfo(ProfileInfo{std::string{"{\"parameters\": "}});
    VehicleDataSource::setCurrentVehicle(damaged);
    EXPECT_FALSE(VehicleDataSource::currentVehicle().sensors().empty());
    EXPECT_TRUE(platform.defaults.entries.contains("current_vehicle unreadable 6"));
}

TEST_F(VehicleDataSourceTest, OneThatCanNotBeReadIsNotTakenForAChoice) {
    platform.defaults.entries["current_vehicle"] = "cut";
    for (int start = 0; start < 2; ++start) {
        answer('[' + entry("Diesel Pickup 6.7L", "9.9", "u") + ']');
        static_cast<void>(VehicleDataSource::vehicles());  // the merge may store the current one as well
        EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "Diesel Pickup 6.7L");
        EXPECT_EQ(platform.defaults.stateForKey("current_vehicle"), EntryState::unreadable);
    }
    VehicleDataSource::setCurrentVehicle(made("A", "1.0", "u"));
    EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "A");
}

TEST_F(VehicleDataSourceTest, NoVehicleWithoutANameIsStoredOrStays) {
    platform.resourcesMissing = true;
    EXPECT_TRUE(VehicleDataSource::storedVehicles().empty());
    VehicleDataSource::setCurrentVehicle({});
    EXPECT_FALSE(VehicleDataSource::saveVehicle({}));
    EXPECT_TRUE(platform.defaults.entries.empty());
    platform.resourcesMissing = false;
    store({Vehicle{}});  // as older starts without resources have left it
    EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "Diesel Pickup 6.7L");
    EXPECT_EQ(VehicleDataSource::storedVehicles().at(0).name(), "Diesel Pickup 6.7L");
    EXPECT_EQ(platform.defaults.entries.size(), 2U) << "nothing was set aside";
    platform.defaults.kept = false;
    EXPECT_FALSE(VehicleDataSource::saveVehicle(made("A", "1.0", "u")));
}

TEST_F(VehicleDataSourceTest, AByteOrderMarkIsNoFault) {
    const std::string mark = "\xEF\xBB\xBF";
    store({made("A", "1.0", "u")});
    answer(mark + '[' + entry("A", "2.0", "u") + ']');
    EXPECT_EQ(lines(VehicleDataSource::remoteVehicles()), (Texts{"A 2.0 u"}));
    const auto file = testing::TempDir() + "with a mark.json";
    std::ofstream{file} << mark << R"({"vehicle": "A"})";
    std::string error;
    EXPECT_TRUE(vehicleFromFile(file, error)) << error;
}

TEST_F(VehicleDataSourceTest, DamagedSettingsKeepWhatCanBeRead) {
    const auto truck = made("A", "1.0", "u");
    auto& entries = platform.defaults.entries;
    const Value damaged = Dictionary{{"version", Number::fromInteger(1)},
                                     {"values", Dictionary{{"91", Data{1}}, {"92", Value{}}, {"93", "x"}}}};
    EXPECT_EQ(SettingValueStore::state(truck), EntryState::absent);
    entries["SETTINGS_A"] = damaged;
    for (int start = 0; start < 2; ++start) {
        const auto values = SettingValueStore::load(truck);
        ASSERT_TRUE(values);
        EXPECT_EQ(values->size(), 1U);
        EXPECT_EQ(values->count(91), 1U);
        EXPECT_EQ(SettingValueStore::state(truck), EntryState::unreadable);
        EXPECT_EQ(storeTrouble(truck), StoreTrouble::someSettings);
    }
    EXPECT_EQ(entries.at("SETTINGS_A unreadable 1"), damaged);
    EXPECT_EQ(entries.size(), 2U);
    EXPECT_TRUE(SettingValueStore::save({}, truck));
    EXPECT_EQ(SettingValueStore::state(truck), EntryState::there);
    EXPECT_TRUE(SettingValueStore::load(truck)->empty());
}

TEST_F(VehicleDataSourceTest, TheGravestTroubleIsTold) {
    const auto truck = made("A", "1.0", "u");
    auto& defaults = platform.defaults;
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::none);
    EXPECT_EQ(sentenceFor(StoreTrouble::none), "");
    defaults.kept = false;
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::unwritable);
    defaults.entries["savedprofile"] = "Tow";
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::unwritable) << "never stored";
    defaults.entries["Tow"] = archivedProfileDictionary({});
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::unwritable);
    defaults.entries["Tow"] = "no archive";
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::activeValues);
    defaults.entries.erase("Tow");
    defaults.entries["Tow unreadable 1"] = "x";
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::activeValues);
    defaults.entries.erase("savedprofile");
    defaults.entries["savedprofile unreadable 1"] = "x";
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::activeProfile);
    defaults.entries["SETTINGS_A unreadable 12"] = "x";
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::settings);
    EXPECT_EQ(storeTrouble(made("B", "1.0", "u")), StoreTrouble::activeProfile);
    defaults.entries["current_vehicle unreadable 1"] = "x";
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::vehicle);
    defaults.whole = false;
    EXPECT_EQ(storeTrouble(truck), StoreTrouble::unreadable);
    EXPECT_TRUE(sentenceFor(StoreTrouble::activeValues).starts_with("The values of the active tuning"));
    EXPECT_EQ(sentenceFor(StoreTrouble::unwritable), "Your changes can't be saved at the moment.");
}

TEST(VersionComparison, FollowsTheTable) {
    const struct {
        Vehicle::Text stored;
        Vehicle::Text remote;
        bool newer;
    } rows[]{
        {"1.2", "1.3", true},
        {"1.9", "2.0", true},
        {"1.9", "1.10", true},
        {"1.3", "1.3", false},
        {"1.2.9", "1.3", true},
        {"1.x", "1.1", true},
        {"2.0", "1.1", true},
        {"1", "2", false},
        {{}, {}, false},
        {{}, "0.1", true},
        {"1.0", {}, false},
        {"1.0", "99999999999.0", true},
        {"2147483647.0", "99999999999.0", false},
    };
    for (const auto& [stored, remote, newer] : rows) {
        EXPECT_EQ(VersionComparison{}.isNewer(stored, remote), newer)
            << stored.value_or("-") << " and " << remote.value_or("-");
    }
}

TEST(VersionComparison, KeepsTheNumbersOfEachSide) {
    VersionComparison comparison;
    EXPECT_TRUE(comparison.isNewer("1.0", "2.0"));
    EXPECT_TRUE(comparison.isNewer("9", "3")) << "1.0 and 2.0 are left";
    EXPECT_FALSE(comparison.isNewer("2.0", ".5")) << "2.0 is left on the server's side";
    EXPECT_TRUE(comparison.isNewer({}, "2.1")) << "2.0 is left on the stored side";
}

}  // namespace
