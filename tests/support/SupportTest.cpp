#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "fakes/FakePlatform.h"
#include "support/PropertyTable.h"
#include "support/Reachability.h"
#include "support/TextNumbers.h"
#include "support/URLData.h"
#include "support/Utf8.h"
#include "support/Value.h"

namespace torv {
namespace {

using namespace std::string_literals;

constexpr auto most32 = std::numeric_limits<std::int32_t>::max();
constexpr auto least32 = std::numeric_limits<std::int32_t>::min();
constexpr auto most64 = std::numeric_limits<std::int64_t>::max();
constexpr auto least64 = std::numeric_limits<std::int64_t>::min();
constexpr auto infinite = std::numeric_limits<double>::infinity();

TEST(TextNumbers, ReadTheLeadingNumber) {
    const struct {
        std::string text;
        std::int32_t whole;
        std::int64_t wide;
        double real;
        bool truth;
    } rows[] = {
        {"", 0, 0, 0, false},
        {"12", 12, 12, 12, true},
        {" \t\n-7.9 psi", -7, -7, -7.9, true},
        {"+5", 5, 5, 5, true},
        {"+-5", 0, 0, 0, false},
        {"- 5", 0, 0, 0, false},
        {".5", 0, 0, 0.5, false},
        {"-.5", 0, 0, -0.5, false},
        {".", 0, 0, 0, false},
        {"1,5", 1, 1, 1, true},
        {"1.5.5", 1, 1, 1.5, true},
        {"1e2", 1, 1, 100, true},
        {"1e", 1, 1, 1, true},
        {"0x10", 0, 0, 0, false},
        {"inf", 0, 0, 0, false},
        {"-nan", 0, 0, 0, false},
        {"yes", 0, 0, 0, true},
        {"True", 0, 0, 0, true},
        {"no", 0, 0, 0, false},
        {"-0007", -7, -7, -7, true},
        {"000", 0, 0, 0, false},
        {"2147483648", most32, 2147483648, 2147483648.0, true},
        {"-2147483649", least32, -2147483649, -2147483649.0, true},
        {"9223372036854775808", most32, most64, 9223372036854775808.0, true},
        {"-99999999999999999999", least32, least64, -1e20, true},
        {"1e999", 1, 1, infinite, true},
        {"-1e999", -1, -1, -infinite, true},
        {"1e-999", 1, 1, 0, true},
        {"0."s + std::string(400, '0') + "1e500", 0, 0, 1e99, false},
        {"1"s + std::string(400, '0') + "e-500", most32, most64, 1e-100, true},
        {"9e99999999999999999999", 9, 9, infinite, true},
        {"0e99999999999999999999", 0, 0, 0, false},
    };
    for (const auto& [text, whole, wide, real, truth] : rows) {
        SCOPED_TRACE(text);
        EXPECT_EQ(intValue(text), whole);
        EXPECT_EQ(longLongValue(text), wide);
        EXPECT_EQ(doubleValue(text), real);
        EXPECT_EQ(floatValue(text), static_cast<float>(real));
        EXPECT_EQ(boolValue(text), truth);
    }
    EXPECT_EQ(floatValue("1e39"), static_cast<float>(infinite));
    EXPECT_EQ(floatValue("1e-60"), 0.0F);
    EXPECT_EQ(floatValue("16777217"), 16777216.0F);
}

TEST(TextNumbers, TakeAWholeTextOrNothing) {
    EXPECT_EQ(wholeTextFloatValue(" 31.5 "), 31.5F);
    EXPECT_EQ(wholeTextFloatValue("1e99"), std::numeric_limits<float>::infinity());
    for (const auto* text : {"", "  ", "31.5in", "31,5", "in", "nan", "inf", "3 1"})
        EXPECT_EQ(wholeTextFloatValue(text), std::nullopt) << text;
}

TEST(TextNumbers, WriteAndCut) {
    EXPECT_EQ(fixedText(2.5, 0), "2");
    EXPECT_EQ(fixedText(0.125, 2), "0.12");
    EXPECT_EQ(fixedText(-0.004, 2), "-0.00");
    EXPECT_EQ(fixedText(7, -1), "7");
    EXPECT_EQ(fixedText(-infinite, 3), "-inf");
    EXPECT_EQ(fixedText(-std::nan(""), 3), "nan");
    EXPECT_EQ(fixedText(-std::numeric_limits<double>::max(), most64).size(), 460U);
    EXPECT_EQ(paddedText(-5, 4, '0') + paddedText(-5, 4, ' ') + paddedText(12345, 2, '0'), "-005  -512345");
    EXPECT_EQ(hoursMinutesSeconds(3661), "   1:01:01");
    EXPECT_EQ(hoursMinutesSeconds(most32), "596523:14:07");
    EXPECT_EQ(sixtiethsText(125), "   2:05");
    EXPECT_EQ(intFromFloat(-1.9), -1);
    EXPECT_EQ(intFromFloat(2147483647.9), most32);
    EXPECT_EQ(intFromFloat(-infinite), least32);
    EXPECT_EQ(intFromFloat(std::nan("")), 0);
    EXPECT_EQ(longLongFromDouble(9.3e18), most64);
    EXPECT_EQ(longLongFromDouble(-9.3e18), least64);
}

TEST(NumberTest, IsExact) {
    const auto megabyte = std::string(1U << 20U, '9');
    const struct {
        std::string text;
        std::int64_t wide;
        std::int32_t whole;
        double real;
    } rows[] = {
        {"9007199254740993", 9007199254740993, most32, 9007199254740992.0},
        {"9007199254740993.0", 9007199254740993, most32, 9007199254740992.0},
        {"9.007199254740993e15", 9007199254740993, most32, 9007199254740992.0},
        {"9223372036854775807.9", most64, most32, 9223372036854775808.0},
        {"-9223372036854775808", least64, least32, -9223372036854775808.0},
        {"922337203685477580.7E+1", most64, most32, 9223372036854775808.0},
        {"1e19", most64, most32, 1e19},
        {"-1e300", least64, least32, -1e300},
        {"1e99999999999", most64, most32, infinite},
        {"-0.9", 0, 0, -0.9},
        {"1.99e0", 1, 1, 1.99},
        {"12345e-3", 12, 12, 12.345},
        {"0.000012e6", 12, 12, 12},
        {"1e-99999999999", 0, 0, 0},
        {"0e99", 0, 0, 0},
        {megabyte, most64, most32, infinite},
        {"-" + megabyte, least64, least32, -infinite},
        {"0." + megabyte, 0, 0, 1},
        {megabyte + "e-1048575", 9, 9, 10},
    };
    for (const auto& [text, wide, whole, real] : rows) {
        SCOPED_TRACE(text.substr(0, 40));
        const Number number{text};
        EXPECT_EQ(number.longLongValue(), wide);
        EXPECT_EQ(number.intValue(), whole);
        EXPECT_EQ(number.doubleValue(), real);
        EXPECT_EQ(number.boolValue(), real != 0.0);
    }
    EXPECT_EQ(Number::fromDouble(0.1).stringValue() + Number::fromFloat(0.1F).stringValue(), "0.10.1");
    EXPECT_EQ(Number::fromDouble(infinite), Number{});
    EXPECT_EQ(Number::fromInteger(least64).longLongValue(), least64);
}

TEST(DictionaryTest, KeepsOrderAndTheLastValue) {
    for (const int count : {3, 16, 17, 200}) {
        Dictionary dictionary;
        for (int i = 0; i < 2 * count; ++i)
            dictionary.set("k" + std::to_string(i % count), Number::fromInteger(i));
        ASSERT_EQ(dictionary.size(), static_cast<std::size_t>(count));
        int at = 0;
        for (const auto& [key, value] : dictionary) {
            EXPECT_EQ(key, "k" + std::to_string(at));
            EXPECT_EQ(value.intValue(), count + at++);
        }
    }
    EXPECT_EQ((Dictionary{{"a", true}, {"b", "x"}}), (Dictionary{{"b", "x"}, {"a", true}}));
    EXPECT_NE((Dictionary{{"a", true}}), (Dictionary{{"a", {}}}));
    EXPECT_TRUE((Dictionary{}["none"].isNull()));
}

TEST(DictionaryTest, FindsWhatIsLeftAfterRemoval) {
    for (const int count : {10, 16, 17, 40}) {
        SCOPED_TRACE(count);
        const auto key = [](int i) { return "k" + std::to_string(i); };
        Dictionary dictionary;
        for (int i = 0; i < count; ++i)
            dictionary.set(key(i), Number::fromInteger(i));
        for (int i = 0; i < count - 5; ++i)
            EXPECT_TRUE(dictionary.remove(key(i)));
        EXPECT_FALSE(dictionary.remove(key(0)));
        for (int i = count - 5; i < count; ++i)
            EXPECT_EQ(dictionary[key(i)].intValue(), i);
        for (int i = 0; i < 2; ++i)  // the second time replaces
            dictionary.set("new", "value");
        EXPECT_NE(dictionary.find("new"), nullptr);
        EXPECT_EQ(dictionary.size(), 6U);
    }
}

TEST(DictionaryTest, TakesAHundredThousandKeys) {
    Dictionary dictionary;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 100'000; ++i)
            dictionary.set(std::to_string(i), Number::fromInteger(i + round));
    }
    ASSERT_EQ(dictionary.size(), 100'000U);
    const auto copy = dictionary;
    EXPECT_EQ(copy, dictionary);
    for (int i = 0; i < 100'000; ++i)
        ASSERT_EQ(copy[std::to_string(i)].intValue(), i + 1);
}

TEST(ValueTest, ConvertsWhatItIs) {
    const struct {
        Value value;
        int whole;
        bool truth;
        std::optional<std::string> text;
    } rows[] = {
        {{}, 0, false, {}},
        {true, 1, true, "1"},
        {Number{"2.50"}, 2, true, "2.50"},
        {"3x", 3, true, "3x"},
        {Data{1}, 0, false, {}},
        {Array{true}, 0, false, {}},
        {Dictionary{{"a", true}}, 0, false, {}},
    };
    for (const auto& [value, whole, truth, text] : rows) {
        EXPECT_EQ(value.intValue(), whole);
        EXPECT_EQ(value.longLongValue(), whole);
        EXPECT_EQ(value.boolValue(), truth);
        EXPECT_EQ(value.textValue(), text);
        EXPECT_EQ(value.elements().size(), value.array() ? 1U : 0U);
        EXPECT_EQ(value["a"].isNull(), !value.dictionary());
    }
}

TEST(Texts, ChangeTheirFirstLetter) {
    const struct {
        std::string text, upper, lower;
    } rows[] = {
        {"", "", ""},
        {"a", "A", "a"},
        {"Z", "Z", "z"},
        {"minValue", "MinValue", "minValue"},
        {"1a", "1a", "1a"},
        {"\xC3\xA9t", "\xC3\x89t", "\xC3\xA9t"},
        {"\xC3\x97", "\xC3\x97", "\xC3\x97"},
        {"\xD0\x96", "\xD0\x96", "\xD0\xB6"},
        {"\xFF"
         "a",
         "\xFF"
         "a",
         "\xFF"
         "a"},
    };
    for (const auto& [text, upper, lower] : rows) {
        EXPECT_EQ(capitalizeFirstLetterUpper(text, true), upper);
        EXPECT_EQ(capitalizeFirstLetterUpper(text, false), lower);
    }
}

TEST(Texts, ResolvePercentEscapes) {
    const struct {
        std::string text;
        std::optional<std::string> decoded;
    } rows[] = {
        {"", ""},
        {"a%20b", "a b"},
        {"%41%c3%A9", "A\xC3\xA9"},
        {"%25%34%31", "%41"},
        {"a+b", "a+b"},
        {"%00", "\0"s},
        {"100%", {}},
        {"%4", {}},
        {"%4g", {}},
        {"%%", {}},
        {"%C3", {}},
        {"%ED%A0%80", {}},
        {"\xFF", {}},
    };
    for (const auto& [text, decoded] : rows)
        EXPECT_EQ(percentDecoded(text), decoded) << text;
}

TEST(Texts, AreUtf8) {
    for (const auto& text : {""s, "a\0b"s, "\xC2\x80"s, "\xDF\xBF"s, "\xE0\xA0\x80"s, "\xED\x9F\xBF"s,
                             "\xEE\x80\x80"s, "\xF0\x90\x80\x80"s, "\xF4\x8F\xBF\xBF"s})
        EXPECT_TRUE(isUtf8(text)) << testing::PrintToString(text);
    for (const auto& text :
         {"\x80"s, "\xC1\xBF"s, "\xC2"s, "\xC2\x41"s, "\xE0\x9F\xBF"s, "\xED\xA0\x80"s, "\xEF\xBF"s,
          "\xF0\x8F\xBF\xBF"s, "\xF4\x90\x80\x80"s, "\xF8\x88\x80\x80\x80"s, "\xFE"s, "ab\xFF"s})
        EXPECT_FALSE(isUtf8(text)) << testing::PrintToString(text);
}

TEST(Properties, AreFilledInOrderUpToANull) {
    struct Object {
        std::optional<std::string> name = "old";
        ObjectProperty list;
        std::int32_t count = 9;
        float size = 9;
    };
    static const std::array<Property<Object>, 4> properties{{{"Name", &Object::name},
                                                             {"List", &Object::list},
                                                             {"Count", &Object::count},
                                                             {"Size", &Object::size}}};
    Object object;
    setPropertiesFromDictionary<Object>(
        object, {{"other", {}}, {"count", {}}, {"Size", "2.5"}, {"list", {}}, {"name", "new"}}, properties);
    EXPECT_EQ(object.count, 0);
    EXPECT_EQ(object.size, 2.5F);
    EXPECT_EQ(object.name, "old");
    setPropertiesFromDictionary<Object>(object, {{"name", "100%"}, {"list", Array{"100%"}}}, properties);
    EXPECT_EQ(object.name, std::nullopt);
    EXPECT_EQ(object.list, Value{Array{"100%"}});
}

TEST(ReachabilityTest, TellsItsStatusFromTheFlags) {
    using R = Reachability;
    const struct {
        std::uint32_t flags;
        int internet, wifi;
        std::string letters;
    } rows[] = {
        {0, 0, 0, "-- -------"},
        {R::reachable, 1, 0, "-R -------"},
        {R::reachable | R::isDirect, 1, 1, "-R ------d"},
        {R::isDirect | R::isMobile, 0, 0, "W- ------d"},
        {R::reachable | R::connectionRequired | R::transientConnection, 0, 0, "-R tc-----"},
        {R::reachable | R::connectionRequired | R::connectionOnTraffic, 1, 0, "-R -cC----"},
        {R::reachable | R::connectionRequired | R::connectionOnDemand, 1, 0, "-R -c--D--"},
        {R::reachable | R::connectionRequired | R::connectionOnDemand | R::interventionRequired, 0, 0,
         "-R -c-iD--"},
        {R::reachable | R::connectionOnTraffic | R::interventionRequired, 1, 0, "-R --Ci---"},
        {R::reachable | R::connectionRequired | R::isMobile | R::isLocalAddress, 1, 0, "WR -c---l-"},
    };
    fakes::FakePlatform platform;
    for (const auto& [flags, internet, wifi, letters] : rows) {
        SCOPED_TRACE(letters);
        platform.log.clear();
        platform.network.flags = flags;
        EXPECT_EQ(Reachability::isInternetAvailable(), internet != 0);
        EXPECT_EQ((Reachability{platform.network, true}.currentReachabilityStatus()), wifi);
        EXPECT_EQ(platform.log,
                  (std::vector{"Reachability Flag Status: " + letters + " networkStatusForFlags\n",
                               "Reachability Flag Status: " + letters + " localWiFiStatusForFlags\n"}));
    }
    platform.network.flags = std::nullopt;
    EXPECT_FALSE(Reachability::isInternetAvailable());
}

TEST(URLData, IsWhatCameWithAGoodStatus) {
    const Data body{'o', 'k'};
    const struct {
        URLLoader::Reply reply;
        std::optional<Data> data;
    } rows[] = {
        {{.body = body, .status = 200, .error = {}}, body},
        {{.body = body, .status = 399, .error = {}}, body},
        {{.body = body, .status = 400, .error = {}}, {}},
        {{.body = body, .status = 404, .error = {}}, {}},
        {{.body = body, .status = {}, .error = {}}, body},
        {{.body = {}, .status = {}, .error = "no route"}, {}},
    };
    fakes::FakePlatform platform;
    for (const auto& [reply, data] : rows) {
        platform.loader.replies.push_back(reply);
        platform.log.clear();
        EXPECT_EQ(dataOfURL("http://example.com/a"), data);
        EXPECT_EQ(platform.log.empty(), data.has_value()) << "the log says why";
    }
    EXPECT_EQ(platform.loader.requests.size(), std::size(rows));
}

}  // namespace
}  // namespace torv
