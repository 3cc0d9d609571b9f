#include "vehicles/VehicleDataSource.h"

#include <gtest/gtest.h>

#include "fakes/FakePlatform.h"
#include "support/Reachability.h"
#include "vehicles/SettingValueStore.h"
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
        VehicleDataSource::setUpdateServer("http://server/");
    }
    ~VehicleDataSourceTest() override {
        VehicleDataSource::setUpdateServer(VehicleDataSource::defaultUpdateServer);
    }

    void answer(const std::string& text, int status = 200) {
        platform.loader.replies.push_back(
            {.body = Data{text.begin(), text.end()}, .status = status, .error = {}});
    }
    void store(const std::vector<Vehicle>& vehicles) {
        platform.defaults.entries["vehicles"] = archivedVehicles(vehicles);
        platform.defaults.entries["current_vehicle"] = archivedVehicles({vehicles.data(), 1});
    }
    [[nodiscard]] bool logged(std::string_view part) const {
        return std::any_of(platform.log.begin(), platform.log.end(),
                           [&](const std::string& text) { return text.find(part) != std::string::npos; });
    }

    fakes::FakePlatform platform;
};

TEST_F(VehicleDataSourceTest, BeginsWithTheProfileThatShips) {
    const auto current = VehicleDataSource::currentVehicle();
    EXPECT_EQ(current.name(), "Diesel Pickup 6.7L");
    EXPECT_FALSE(current.sensors().empty());
    EXPECT_EQ(lines(VehicleDataSource::storedVehicles()), Texts{line(current)});
    EXPECT_EQ(platform.defaults.keys(), (Texts{"current_vehicle", "vehicles"}));
    EXPECT_EQ(VehicleDataSource::currentVehicle().info().document(), current.info().document())
        << "read back";
    EXPECT_EQ(platform.defaults.synchronized, 0);
    EXPECT_TRUE(platform.loader.requests.empty());
}

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
        {"gone from the server",
         {made("A", "1.0", "u"), made("B", "1.0", "u")},
         {},
         {"A 1.0 u", "B 1.0 u"},
         "A 1.0 u"},
        {"newer, with a document",
         {made("A", "1.2", "u", doc)},
         {entry("A", "1.3", "new")},
         {"A 1.2 new + !"},
         "A 1.2 new + !"},
        {"newer, without one",
         {made("A", "1.2", "u")},
         {entry("A", "1.3", "new")},
         {"A 1.3 new"},
         "A 1.3 new"},
        {"not newer", {made("A", "1.3", "u", doc)}, {entry("A", "1.3", "new")}, {"A 1.3 u +"}, "A 1.3 u +"},
        {"one name twice",
         {made("B", "1.0", "u")},
         {entry("A", "1.0", "a"), entry("A", "1.1", "b")},
         {"A 1.1 b", "B 1.0 u"},
         "B 1.0 u"},
        {"one name twice, older behind",
         {made("B", "1.0", "u")},
         {entry("A", "1.1", "a"), entry("A", "1.0", "b")},
         {"A 1.1 a", "B 1.0 u"},
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
        {"no numbers before",
         {made("A", "1.0", "u"), made("B", "7", "u", doc)},
         {entry("B", "8", "b"), entry("A", "2.0", "u")},
         {"A 2.0 u", "B 7 u +"},
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
    EXPECT_EQ(platform.defaults.synchronized, 0);
    EXPECT_EQ(platform.loader.requests.front(), "http://server/itorvv2/update.json");
}

TEST_F(VehicleDataSourceTest, WritesTheListsCopyOfTheCurrentVehicleBack) {
    store({made("A", "1.0", "list")});
    VehicleDataSource::setCurrentVehicle(made("A", "0.9", "own"));
    answer('[' + entry("A", "1.0", "new") + ']');
    static_cast<void>(VehicleDataSource::vehicles());
    EXPECT_EQ(line(VehicleDataSource::currentVehicle()), "A 1.0 list");
}

TEST_F(VehicleDataSourceTest, WritesNothingWithoutANetwork) {
    store({made("B", "1.0", "u"), made("A", "1.0", "u")});
    const auto before = platform.defaults.entries;
    platform.network.flags = 0;
    EXPECT_EQ(lines(VehicleDataSource::vehicles()), (Texts{"A 1.0 u", "B 1.0 u"}));
    EXPECT_EQ(platform.defaults.entries, before);
    EXPECT_TRUE(platform.loader.requests.empty());
}

TEST_F(VehicleDataSourceTest, KeepsTheStoredVehiclesWhateverTheManifestIs) {
    const struct {
        std::string manifest;
        int status;
        Texts remote;
        const char* log;
    } rows[]{
        {"[]", 200, {}, ""},
        {"{}", 200, {}, "is no list of vehicles"},
        {"[", 200, {}, "is no list of vehicles"},
        {"", 200, {}, "is no list of vehicles"},
        {"\"x\"", 200, {}, "is no list of vehicles"},
        {"[{\"vehicle\": \"\xE9\"}]", 200, {}, "is not UTF-8"},
        {"[1, null, [], {}, {\"version\": \"1.0\"}, {\"vehicle\": null}, " + entry("C", "1.0", "c") + "]",
         200,
         {"C 1.0 c"},
         "has an entry without a name"},
        {R"([{"vehicle": "C", "version": 1.5, "url": {}}])", 200, {"C 1.5 -"}, ""},
        {'[' + entry("C", "1.0", "c") + ']', 404, {}, "status 404"},
        {'[' + entry("C", "1.0", "c") + ']', 399, {"C 1.0 c"}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.manifest);
        store({made("A", "1.0", "u")});
        const auto before = platform.defaults.entries;
        platform.log.clear();
        answer(row.manifest, row.status);
        EXPECT_EQ(lines(VehicleDataSource::remoteVehicles()), row.remote);
        EXPECT_TRUE(*row.log == '\0' || logged(row.log)) << row.log;
        answer(row.manifest, row.status);
        EXPECT_EQ(line(VehicleDataSource::vehicles().front()), "A 1.0 u");
        if (row.remote.empty()) {
            EXPECT_EQ(platform.defaults.entries, before);
        }
    }
}

TEST_F(VehicleDataSourceTest, SavesAtTheEndOfTheList) {
    store({made("A", "1.0", "u"), made("B", "1.0", "u"), made("C", "1.0", "u")});
    VehicleDataSource::saveVehicle(made("B", "2.0", "v", "{\"a\": 1}"));
    VehicleDataSource::saveVehicle(made("D", {}, {}));
    EXPECT_EQ(lines(VehicleDataSource::storedVehicles()),
              (Texts{"A 1.0 u", "C 1.0 u", "B 2.0 v +", "D - -"}));
    EXPECT_EQ(platform.defaults.synchronized, 2);
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
        {"no url", {}, whole, 200, false, "A 1.0 - + !"},
        {"404", "u", whole, 404, false, "A 1.0 u + !"},
        {"nothing came", "u", "", 0, false, "A 1.0 u + !"},
        {"no JSON", "u", "<html>", 200, true, "A - u"},
        {"empty", "u", "", 200, true, "A - u"},
        {"a list", "u", "[1]", 200, true, "A - u"},
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
            platform.log.clear();
            platform.defaults.entries[key] = value;
            EXPECT_EQ(VehicleDataSource::currentVehicle().name(), "Diesel Pickup 6.7L");
            EXPECT_EQ(VehicleDataSource::storedVehicles().size(), 1U);
            EXPECT_EQ(
                platform.defaults.entries.at(std::string{key} + " unreadable " + std::to_string(++number)),
                value);
            EXPECT_TRUE(logged("can't be read and is kept as"));
        }
    }
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
        {"2.0", "1.1", true},
        {"1.3", "1.3", false},
        {"2.1", "1.0", false},
        {"1.2", "1.2.9", false},
        {"1.2.9", "1.3", true},
        {"1.x", "1.1", true},
        {"x.y", "0.0", false},
        {"x.y", "0.1", true},
        {"1.5", "1.x", false},
        {"1", "2", false},
        {".5", ".6", false},
        {"", "", false},
        {{}, {}, false},
        {{}, "0.1", true},
        {"1.0", {}, false},
        {"1.", "1.1", true},
        {"-1.0", "0.0", true},
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

TEST(VehicleArchive, RefusesWhatIsDamaged) {
    const std::string head = "iTorv vehicles 1\n";
    const auto fields = [](const char* bytes) {
        return R"({"name":"A","version":null,"DTC":null,"url":null,"updateAvailable":false,"infoBytes":)" +
               std::string{bytes} + "}\n";
    };
    std::string error;
    ASSERT_TRUE(vehiclesFromArchive(head + fields("2") + "{}\n", error));
    const std::string damaged[]{
        "",
        "iTorv vehicles 1",
        "iTorv vehicles 2\n",
        "bplist00",
        head + "\n",
        head + "[]\n\n",
        head + "{\n\n",
        head + fields("2"),
        head + fields("2") + "{}",
        head + fields("3") + "{}\n",
        head + fields("1") + "{}\n",
        head + fields("-1") + "\n",
        head + fields("99999999999999999999") + "{}\n",
        head + fields("null") + "{}\n",
        head + R"({"name":1,"updateAvailable":false,"infoBytes":0})" + "\n\n",
        head + R"({"name":"A","updateAvailable":0,"infoBytes":0})" + "\n\n",
        head + fields("2") + "{}\nrest",
    };
    for (const auto& text : damaged) {
        error.clear();
        EXPECT_FALSE(vehiclesFromArchive(text, error)) << text;
        EXPECT_NE(error, "");
    }
}

TEST_F(VehicleDataSourceTest, KeepsSettingValuesByVehicle) {
    const std::array<std::uint8_t, 3> bytes{1, 2, 3};
    const ProfileDictionary values{{91, AV::forAID(91, bytes)}, {226, AV::forAID(226, bytes)}};
    const auto a = made("A", "1.0", "u");
    EXPECT_FALSE(SettingValueStore::load(a));
    SettingValueStore::save(values, a);
    const auto back = SettingValueStore::load(a);
    ASSERT_TRUE(back);
    EXPECT_EQ(archivedProfileDictionary(*back), archivedProfileDictionary(values));
    EXPECT_EQ(back->at(91).bytes().size(), 4U);
    EXPECT_EQ(back->at(226).bytes().size(), 13U);
    EXPECT_FALSE(SettingValueStore::load(made("B", "1.0", "u")));
    SettingValueStore::save({}, a);
    EXPECT_TRUE(SettingValueStore::load(a)->empty());
}

TEST_F(VehicleDataSourceTest, SetsDamagedSettingValuesAside) {
    const auto archive = [](std::string key, Value value, int version = 1) {
        Dictionary values;
        values.set(std::move(key), std::move(value));
        return Value{Dictionary{{"version", Number::fromInteger(version)}, {"values", std::move(values)}}};
    };
    const Value damaged[]{"text",
                          Array{},
                          Dictionary{},
                          archive("91", Data{1}, 2),
                          archive("91", "01"),
                          archive("91", Data(14)),
                          archive("x", Data{1}),
                          archive("091", Data{1})};
    const auto vehicle = made("A", "1.0", "u");
    const auto key = SettingValueStore::keyFor(vehicle);
    int number = 0;
    for (const auto& value : damaged) {
        platform.defaults.entries[key] = value;
        EXPECT_FALSE(SettingValueStore::load(vehicle));
        EXPECT_EQ(platform.defaults.entries.count(key), 0U);
        EXPECT_EQ(platform.defaults.entries.at(key + " unreadable " + std::to_string(++number)), value);
    }
}

}  // namespace
