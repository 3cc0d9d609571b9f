#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

#include "JSON/SBJsonParser.h"
#include "attributes/AVNumberFormatter.h"
#include "fakes/FakePlatform.h"
#include "vehicles/ProfileDocument.h"
#include "vehicles/VehicleArchive.h"

namespace torv {
namespace {

Dictionary parsed(std::string_view text) {
    SBJsonParser parser;
    const auto value = parser.objectWithString(text);
    return value && value->dictionary() ? *value->dictionary() : Dictionary{};
}

TorvAttribute attribute(std::string_view text) {
    return TorvAttribute::torvAttributeFromDictionary(parsed(text));
}

std::string decoded(const TorvAttribute& attribute, std::uint32_t raw) {
    auto value = AV::forAID(
        1, std::array<std::uint8_t, 2>{static_cast<std::uint8_t>(raw), static_cast<std::uint8_t>(raw >> 8U)});
    const auto data = attribute.dataFromAV(value);
    return data ? data->value : "none";
}

TEST(Attribute, TakesEveryKey) {
    const auto a =
        attribute(R"({"aid": 12, "name": "Boost", "unit": "PSI", "minValue": -1.5, "maxValue": 60.25,
        "warningvaluelow": 1, "warningvaluehigh": 2, "additionalUnit": "RPM", "additionalMinValue": 3,
        "additionalMaxValue": 4, "warningValue": 40, "warningRule": 1, "options": ["Off", 1, "%41"],
        "optionValues": [0, 1], "options1": ["A"], "optionValues1": [7], "toggable": true, "enabled": 1,
        "minmax": "high", "category": "Air_1", "formatter": 0, "multiplyFactor": 0.1, "offset": -40,
        "decimalDigits": 1, "unheardOf": {"name": "x"}})");
    EXPECT_EQ(a.aid, 12);
    EXPECT_EQ(a.name, "Boost");
    EXPECT_EQ(a.unit, "PSI");
    EXPECT_EQ((std::vector{a.minValue, a.maxValue, a.warningvaluelow, a.warningvaluehigh,
                           a.additionalMinValue, a.additionalMaxValue}),
              (std::vector{-1.5, 60.25, 1.0, 2.0, 3.0, 4.0}));
    EXPECT_EQ(a.additionalUnit, "RPM");
    EXPECT_EQ(a.warningValue, 40);
    EXPECT_EQ(a.warningRule, 1);
    EXPECT_EQ(textsOfList(a.options), (std::vector<std::string>{"Off", "1", "%41"}))
        << "elements are not decoded";
    EXPECT_EQ(a.optionValues->elements().at(1).intValue(), 1);
    EXPECT_EQ(textsOfList(a.options1), std::vector<std::string>{"A"});
    EXPECT_EQ(a.optionValues1->elements().at(0).intValue(), 7);
    EXPECT_TRUE(a.toggable && a.enabled);
    EXPECT_EQ(a.minmax, "high");
    EXPECT_EQ(a.category, "Air_1");
    EXPECT_EQ(a.decimaldigits, 1);
    EXPECT_EQ(decoded(a, 1000), "60.0");
}

TEST(Attribute, IsBlankWithoutKeys) {
    for (const auto* text : {"{}", R"({"name": null, "aid": 12})", R"({"unheardOf": 1})"}) {
        const auto a = attribute(text);
        EXPECT_EQ(a.aid, 0);
        EXPECT_FALSE(a.name || a.unit || a.options || a.minmax || a.category || a.toggable);
        EXPECT_TRUE(textsOfList(a.options).empty());
        EXPECT_EQ(decoded(a, 1000), "0") << "a factor of 0";
    }
}

TEST(Attribute, ConvertsOddDocuments) {
    /// The document, what it makes of the field that is named, and that field.
    const std::array<std::string, 3> rows[] = {
        {R"({"name": "Oil%20%41"})", "Oil A", "name"},
        {R"({"name": "100%"})", "nothing", "name"},
        {R"({"name": "%ff"})", "nothing", "name"},
        {R"({"Name": "n", "AID": 3})", "n 0", "name aid"},
        {R"({"name": "a", "Name": "b"})", "b", "name"},
        {R"({"name": 5})", "5", "name"},
        {R"({"category": "%41_1", "minmax": "%41"})", "%41_1 %41", "category minmax"},
        {R"({"Category": "a", "Minmax": "b"})", "nothing nothing", "category minmax"},
        {R"({"decimaldigits": 3, "multiplyFactor": 1})", "0 1", "digits of1"},
        {R"({"aid": "12x"})", "12", "aid"},
        {R"({"aid": true})", "1", "aid"},
        {R"({"aid": [1]})", "0", "aid"},
        {R"({"aid": null, "warningRule": 2})", "0 2", "aid rule"},
        {R"({"aid": 9007199254740993})", "9007199254740993", "aid"},
        {R"({"warningRule": 3000000000})", "2147483647", "rule"},
        {R"({"toggable": "YES"})", "1", "toggable"},
        {R"({"toggable": "NO"})", "0", "toggable"},
        {R"({"options": {"a": 1}})", "0", "options"},
        {R"({"options": null, "aid": 4, "offset": 5, "minmax": "low"})", "0 5 low", "aid of1 minmax"},
        {R"({"formatter": null, "aid": 4, "offset": 5})", "0 5", "aid of1"},
        {R"({"offset": -40.7})", "-40", "of1"},
        {R"({"offset": "-40.7"})", "-40", "of1"},
        {R"({"formatter": 11})", "none", "of1"},
        {R"({"formatter": -1})", "none", "of1"},
        {R"({"formatter": "2"})", "49", "of1"},
        {R"({"formatter": [2], "multiplyFactor": {}, "decimalDigits": false})", "0", "of1"}};
    for (const auto& [document, expected, names] : rows) {
        const auto a = attribute(document);
        const std::map<std::string, std::string> fields{
            {"name", a.name.value_or("nothing")},
            {"category", a.category.value_or("nothing")},
            {"minmax", a.minmax.value_or("nothing")},
            {"aid", std::to_string(a.aid)},
            {"rule", std::to_string(a.warningRule)},
            {"toggable", std::to_string(a.toggable)},
            {"digits", std::to_string(a.decimaldigits)},
            {"of1", decoded(a, 1)},
            {"options", std::to_string(textsOfList(a.options).size())}};
        std::istringstream words{names};
        std::string found;
        for (std::string name; words >> name;)
            found += (found.empty() ? "" : " ") + fields.at(name);
        EXPECT_EQ(found, expected) << document;
    }
}

TEST(Attribute, NamesItsUnits) {
    const std::map<std::string, std::string> units{
        {"DEGF", "\u00BAF"}, {"PSI", "PSI"},           {"PERC", "%"},  {"DEG", "\u00B0"},   {"", ""},
        {"RPM", "RPM"},      {"USEC", "microseconds"}, {"SEC", "SEC"}, {"INCHES", "INCHES"}};
    for (const auto& [key, text] : units)
        EXPECT_EQ(TorvAttribute::shortUnitDescriptionForUnitKey(key), text) << key;
    for (const auto* key : {"degf", "tSEC", "tMIN", "PSI "})
        EXPECT_EQ(TorvAttribute::shortUnitDescriptionForUnitKey(key), std::nullopt) << key;
}

TEST(Attribute, WarnsByItsRule) {
    const std::map<int, std::string> rows{// below, at and above the limit, and for what is no number
                                          {0, "----"}, {1, "-ww-"},   {2, "ww--"},   {3, "--w-"}, {4, "w---"},
                                          {5, "----"}, {101, "----"}, {104, "----"}, {-1, "----"}};
    for (const auto& [rule, expected] : rows) {
        TorvAttribute a;
        a.warningRule = rule;
        a.warningValue = 100;
        std::string warns;
        for (const double value : {99.5, 100.0, 100.5, std::nan("")})
            warns += a.isInWarning(value) ? 'w' : '-';
        EXPECT_EQ(warns, expected) << rule;
    }
}

TEST(AttributeGroup, PassesItsScaleThroughSinglePrecision) {
    const auto group = TorvAttributeGroup::torvAttributeGroupFromDictionary(parsed(
        R"({"name": "T%41", "type": "equalizer", "unit": "DEG", "default": 0.1, "low": -5, "high": "5.5",
            "resolution": 1, "items": [{"aid": 60}, 7, {"aid": 61}]})"));
    EXPECT_EQ(group.name, "T%41");
    EXPECT_EQ(group.type, "equalizer");
    EXPECT_EQ(group.unit, "DEG");
    EXPECT_EQ(group.defaultValue, static_cast<double>(0.1F));
    EXPECT_EQ((std::vector{group.lowValue, group.highValue, group.resolutionValue}),
              (std::vector{-5.0, 5.5, 1.0}));
    ASSERT_EQ(group.items.size(), 3U);
    EXPECT_EQ(group.items[0].aid + group.items[1].aid + group.items[2].aid, 121);
    EXPECT_TRUE(TorvAttributeGroup::torvAttributeGroupFromDictionary({}).items.empty());
}

class VehicleTest : public testing::Test {
protected:
    /// "Oil" stands twice among the sensors.
    static Vehicle truck(const std::string& name = "Truck") {
        auto vehicle = Vehicle::vehicleFromDictionary({{"vehicle", name}, {"version", "1.4"}, {"url", "u"}});
        vehicle.setInfo(ProfileInfo{parsed(R"({"parameters": {
            "sensors": [{"aid": 1, "name": "Oil", "warningRule": 1, "warningValue": 10}, {"aid": 2, "name": "Air"},
                        {"aid": 3, "name": "Oil", "warningRule": 2}, {"aid": 4}],
            "settings": [{"aid": 91}],
            "tuning": [{"items": [{"aid": 60}, {"aid": 61}]}, {}, {"items": [{"aid": 62}]}],
            "powerLevel": {"aid": 5, "formatter": 3}, "currentGear": {"aid": 6}, "torqueLock": {"aid": 7},
            "sootReg": {"aid": 8}, "soxReg": [9]}})")});
        return vehicle;
    }
    static std::vector<AID> aids(const std::vector<TorvAttribute>& attributes) {
        std::vector<AID> all;
        for (const auto& a : attributes)
            all.push_back(a.aid);
        return all;
    }
    static std::vector<std::int64_t> warnings(const Vehicle& vehicle) {
        std::vector<std::int64_t> all;
        for (const auto& sensor : vehicle.sensors())
            all.insert(all.end(), {sensor.warningRule, sensor.warningValue});
        return all;
    }

    fakes::FakePlatform platform;
};

TEST_F(VehicleTest, FromAManifestEntryHasNoInfo) {
    const auto vehicle = Vehicle::vehicleFromDictionary(parsed(
        R"({"vehicle": "Truck", "version": 1.4, "url": "u", "DTC": "YES", "parameters": {"sensors": [{}]}})"));
    EXPECT_EQ((std::tuple{vehicle.name(), vehicle.version(), vehicle.url(), vehicle.DTC()}),
              (std::tuple{"Truck", "1.4", "u", "YES"}));
    EXPECT_TRUE(vehicle.info().empty());
    EXPECT_FALSE(vehicle.updateAvailable());
    EXPECT_TRUE(vehicle.sensors().empty() && vehicle.settings().empty() && vehicle.tuningItems().empty());
    EXPECT_EQ(vehicle.powerLevelAttribute().aid, 0);
    EXPECT_EQ(decoded(vehicle.powerLevelAttribute(), 3), "0");
    EXPECT_FALSE(vehicle.hasAID(0));
}

TEST_F(VehicleTest, HandsOutTheDocumentInOrder) {
    const auto vehicle = truck();
    EXPECT_EQ(aids(vehicle.sensors()), (std::vector<AID>{1, 2, 3, 4}));
    EXPECT_EQ(aids(vehicle.updatableSensors()), (std::vector<AID>{1, 3}));
    EXPECT_EQ(aids(vehicle.settings()), std::vector<AID>{91});
    EXPECT_EQ(vehicle.tuningGroups().size(), 3U);
    EXPECT_EQ(aids(vehicle.tuningItems()), (std::vector<AID>{60, 61, 62}));
    EXPECT_EQ(aids({vehicle.powerLevelAttribute(), vehicle.currentGearAttribute(),
                    vehicle.torqueLockAttribute(), vehicle.sootAttribute(), vehicle.soxAttribute()}),
              (std::vector<AID>{5, 6, 7, 8, 0}));
    EXPECT_TRUE(vehicle.isEqual(Vehicle::vehicleFromDictionary({{"vehicle", "Truck"}})));
    EXPECT_FALSE(vehicle.isEqual(truck("truck")));
    EXPECT_FALSE(Vehicle{}.isEqual(Vehicle{}));
    EXPECT_TRUE(vehicle.hasAID(4));
    EXPECT_FALSE(vehicle.hasAID(91));
    auto odd = truck();
    odd.setInfo(ProfileInfo{parsed(
        R"({"parameters": {"sensors": {"aid": 1}, "settings": "x", "tuning": [1], "powerLevel": 3}})")});
    EXPECT_TRUE(odd.sensors().empty() && odd.settings().empty() && odd.tuningItems().empty());
    EXPECT_EQ(odd.powerLevelAttribute().aid, 0);
}

TEST_F(VehicleTest, StoresSensorWarningsByName) {
    const auto vehicle = truck();
    const std::vector<std::int64_t> document{1, 10, 0, 0, 2, 0, 0, 0};
    EXPECT_EQ(warnings(vehicle), document);
    auto oil = vehicle.sensors().front();
    oil.warningRule = 103;
    oil.warningValue = -7;
    vehicle.updateSensor(oil);
    EXPECT_EQ(platform.defaults.synchronized, 1);
    EXPECT_EQ(platform.defaults.keys(), std::vector<std::string>{"SENSORS_Truck"});
    EXPECT_EQ(warnings(vehicle), (std::vector<std::int64_t>{103, -7, 0, 0, 103, -7, 0, 0}));
    EXPECT_EQ(warnings(truck("Other")), document);
    oil.name = "gone";
    vehicle.updateSensor(oil);
    EXPECT_EQ(platform.defaults.objectForKey("SENSORS_Truck").dictionary()->size(), 2U);
    EXPECT_EQ(warnings(vehicle)[0], 103);
    vehicle.clearSensors();
    EXPECT_EQ(platform.defaults.synchronized, 3);
    EXPECT_TRUE(platform.defaults.entries.empty());
    EXPECT_EQ(warnings(vehicle), document);
    for (const auto* damaged : {"[]", R"({"Oil": 5})", R"({"Oil": [5]})", R"({"Oil": {}})"}) {
        platform.defaults.setObjectForKey(parsed(damaged), "SENSORS_Truck");
        EXPECT_EQ(warnings(vehicle), document) << damaged;
    }
}

TEST_F(VehicleTest, TravelsThroughTheArchive) {
    const auto fields = [](const Vehicle& v) {
        return std::tuple{v.name(), v.url(), v.version(), v.DTC(), v.info().document(), v.updateAvailable()};
    };
    std::vector<Vehicle> originals{truck("T\n\"\xC3\xA9"), Vehicle{}, truck("Other")};
    originals[0].setUpdateAvailable(true);
    const auto archive = archivedVehicles(originals);
    std::string error;
    int whole = 0;
    // Cut off anywhere: refused, or fewer vehicles.
    for (std::size_t size = 0; size <= archive.size(); ++size) {
        error.clear();
        const auto back = vehiclesFromArchive(std::string_view{archive}.substr(0, size), error);
        ASSERT_EQ(error.empty(), back.has_value()) << size;
        if (!back) continue;
        ++whole;
        for (std::size_t i = 0; i < back->size(); ++i)
            EXPECT_EQ(fields((*back)[i]), fields(originals[i]));
    }
    EXPECT_EQ(whole, 4);
    const std::string flag = R"(iTorv vehicles 1
{"updateAvailable": )";
    for (const auto& damaged :
         {std::string{}, std::string{"iTorv vehicles 2\n"}, std::string{"iTorv vehicles 1\n\n"},
          std::string{"iTorv vehicles 1\n[]\n\n"}, flag + "true, \"infoBytes\": 2}\n{}x",
          flag + "true, \"infoBytes\": -1}\n\n", flag + "true, \"infoBytes\": 9e18}\n\n",
          flag + "1, \"infoBytes\": 0}\n\n", flag + "true, \"name\": 5, \"infoBytes\": 0}\n\n"})
        EXPECT_FALSE(vehiclesFromArchive(damaged, error)) << damaged;
}

TEST_F(VehicleTest, TheShippedProfileIsWhole) {
    std::string error;
    const auto vehicle = vehicleFromFileOrShipped({}, error);
    ASSERT_TRUE(vehicle) << error;
    EXPECT_EQ(vehicle->DTC(), "YES");
    EXPECT_EQ(vehicle->sensors().size(), 41U);
    EXPECT_EQ(vehicle->settings().size(), 12U);
    EXPECT_EQ(vehicle->tuningItems().size(), 40U);
    std::vector all{vehicle->powerLevelAttribute(), vehicle->currentGearAttribute(),
                    vehicle->torqueLockAttribute(), vehicle->sootAttribute(), vehicle->soxAttribute()};
    for (const auto& part : {vehicle->sensors(), vehicle->settings(), vehicle->tuningItems()})
        all.insert(all.end(), part.begin(), part.end());
    std::set<AID> distinct;
    for (const auto& a : all) {
        EXPECT_TRUE(a.name && !a.name->empty()) << a.aid;
        EXPECT_TRUE(a.aid > 0 && a.aid < 255 && distinct.insert(a.aid).second) << a.aid;
        EXPECT_NE(a.formatter, nullptr) << a.aid;
        const auto* number = dynamic_cast<const AVNumberFormatter*>(a.formatter.get());
        EXPECT_TRUE(!number || number->multiplyFactor() != 0.0F) << a.aid;
    }
    for (const auto& a : vehicle->settings()) {
        EXPECT_TRUE(a.formatter->dataFromAV(nullptr)) << "a setting with nothing stored, " << a.aid;
        EXPECT_TRUE(!a.optionValues || textsOfList(a.optionValues).size() == textsOfList(a.options).size())
            << a.aid;
    }
}

TEST_F(VehicleTest, TellsWhereAFileIsWrong) {
    const auto file = std::filesystem::path{testing::TempDir()} / "itorv_profile_test.json";
    const std::tuple<std::string, std::string> rows[] = {
        {"{\n  \"vehicle\": nul\n}", ": line 2, column 14: Expected 'null'"},
        {"", ": line 1, column 1: "},
        {"{\"a\": \"\xFF\"}", ": line 1, column "},
        {"[]", ": a profile is an object, and this is a list"},
        {std::string((16U << 20U) + 1, ' '), ": is larger than 16 MiB"}};
    std::string error;
    for (const auto& [text, expected] : rows) {
        std::ofstream{file, std::ios::binary} << text;
        EXPECT_FALSE(vehicleFromFile(file, error));
        EXPECT_EQ(error.substr(0, file.string().size() + expected.size()), file.string() + expected) << error;
        EXPECT_EQ(error.find('\n'), std::string::npos);
    }
    std::ofstream{file} << R"({"vehicle": "Truck", "parameters": {"settings": [{"aid": 91}]}})";
    const auto vehicle = vehicleFromFileOrShipped(file, error);
    ASSERT_TRUE(vehicle);
    EXPECT_EQ(aids(vehicle->settings()), std::vector<AID>{91});
    std::filesystem::remove(file);
    EXPECT_FALSE(vehicleFromFile(file, error));
    EXPECT_EQ(error, file.string() + ": No such file or directory");
    EXPECT_FALSE(vehicleFromFile(testing::TempDir(), error));
    EXPECT_NE(error.find("is not a regular file"), std::string::npos);
}

}  // namespace
}  // namespace torv
