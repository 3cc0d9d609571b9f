#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <sstream>

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

TEST(Attribute, ElementsOfListsAreNotDecoded) {
    const auto a = attribute(R"({"options": ["Off", 1, "%41"]})");
    EXPECT_EQ(textsOfList(a.options), (std::vector<std::string>{"Off", "1", "%41"}));
}

TEST(Attribute, AGroupTakesItsMembersAsTheyStand) {
    const auto group = TorvAttributeGroup::torvAttributeGroupFromDictionary(parsed(
        R"({"name": "Fuel%20%41", "default": 0.1, "high": "7", "items": [{"aid": 5}, 6, {"aid": 7}]})"));
    EXPECT_EQ(group.name, "Fuel%20%41");
    EXPECT_EQ(group.defaultValue, static_cast<double>(0.1F));
    EXPECT_EQ(group.highValue, 7);
    ASSERT_EQ(group.items.size(), 3U);
    EXPECT_EQ(group.items[0].aid + group.items[1].aid + group.items[2].aid, 12);
    EXPECT_TRUE(TorvAttributeGroup::torvAttributeGroupFromDictionary({}).items.empty());
}

TEST(Attribute, ConvertsOddDocuments) {
    /// The document, what it makes of the field that is named, and that field.
    const std::array<std::string, 3> rows[] = {
        {"{}", "nothing 0 0", "name aid of1"},
        {R"({"name": null, "aid": 12})", "nothing 0", "name aid"},
        {R"({"name": "Oil%20%41"})", "Oil A", "name"},
        {R"({"name": "100%"})", "nothing", "name"},
        {R"({"Name": "n", "AID": 3})", "n 0", "name aid"},
        {R"({"name": "a", "Name": "b"})", "b", "name"},
        {R"({"name": 5})", "5", "name"},
        {R"({"category": "%41_1", "minmax": "%41"})", "%41_1 %41", "category minmax"},
        {R"({"decimaldigits": 3, "multiplyFactor": 1})", "0 1", "digits of1"},
        {R"({"aid": [1]})", "0", "aid"},
        {R"({"aid": null, "warningRule": 2})", "0 2", "aid rule"},
        {R"({"warningRule": 3000000000})", "2147483647", "rule"},
        {R"({"options": {"a": 1}})", "0", "options"},
        {R"({"options": null, "aid": 4, "offset": 5, "minmax": "low"})", "0 5 low", "aid of1 minmax"},
        {R"({"formatter": 11})", "none", "of1"},
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

struct VehicleTest : testing::Test {
    fakes::FakePlatform platform;
};

TEST_F(VehicleTest, StoresSensorWarningsByName) {
    auto vehicle = Vehicle::vehicleFromDictionary({{"vehicle", "Truck"}});
    vehicle.setInfo(ProfileInfo{parsed(R"({"parameters": {"sensors": [
        {"aid": 1, "name": "Oil", "warningRule": 1}, {"aid": 2}, {"aid": 3, "name": "Oil"}]}})")});
    auto oil = vehicle.sensors().front();
    oil.warningRule = 103;
    vehicle.updateSensor(oil);
    EXPECT_EQ(platform.defaults.keys(), std::vector<std::string>{"SENSORS_Truck"});
    EXPECT_EQ(vehicle.sensors().at(1).warningRule, 0);
    EXPECT_EQ(vehicle.sensors().at(2).warningRule, 103) << "of the same name";
    vehicle.clearSensors();
    EXPECT_TRUE(platform.defaults.entries.empty());
    EXPECT_EQ(vehicle.sensors().at(0).warningRule, 1);
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
}

}  // namespace
}  // namespace torv
