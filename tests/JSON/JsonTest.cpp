#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "JSON/JSONValue.h"
#include "JSON/SBJsonParser.h"
#include "JSON/SBJsonWriter.h"

namespace torv {
namespace {

using namespace std::string_literals;

struct Trouble {
    int code;
    std::string text;
    friend bool operator==(const Trouble&, const Trouble&) = default;
    friend void PrintTo(const Trouble& trouble, std::ostream* out) {
        *out << trouble.code << ' ' << trouble.text;
    }
};

/// From the cause to the outermost, by way of the trace; the chain of underlying errors must agree.
std::vector<Trouble> troubles(const SBJsonBase& worker) {
    std::vector<Trouble> found;
    for (const auto& error : worker.errorTrace())
        found.push_back({error.code, error.description});
    if (found.empty()) return found;
    auto expected = found.rbegin();
    for (auto error = std::make_shared<const JSONError>(worker.errorTrace().back()); error;
         error = error->underlying) {
        EXPECT_EQ(error->domain, "org.torvjson.JSON.ErrorDomain");
        EXPECT_EQ(*expected++, (Trouble{error->code, error->description}));
    }
    EXPECT_EQ(expected, found.rend());
    return found;
}

std::string nested(std::size_t levels) {
    return std::string(levels, '[') + std::string(levels, ']');
}

TEST(JsonReading, RefusesWithItsTrace) {
    const Trouble inArray{3, "Expected value while parsing array"};
    const Trouble key{3, "Object key string expected"};
    const Trouble broken{6, "Broken unicode character"};
    const Trouble noDigit{6, "Missing hex digit in quad"};
    const Trouble noQuad{6, "Missing hex quad"};
    const Trouble noLow{6, "Missing low character in surrogate pair"};
    const Trouble badLow{6, "Invalid low surrogate char"};
    const Trouble end{11, "Unexpected end of string"};
    const Trouble endInString{11, "Unexpected EOF while parsing string"};
    const Trouble unrecognised{3, "Unrecognised leading character"};
    const auto control = [](const std::string& code) {
        return std::vector<Trouble>{{5, "Unescaped control character '0x" + code + "'"}};
    };
    const std::vector<std::pair<std::vector<Trouble>, std::vector<std::string>>> rows{
        {{end}, {"", " \t\n\v\f\r"}},
        {{{2, "Leading + disallowed in number"}}, {"+1"}},
        {{{2, "Leading 0 disallowed in number"}}, {"01", "-01"}},
        {{{2, "No digits after initial minus"}}, {"-"}},
        {{{2, "No digits after decimal point"}}, {"1.", "1.e5"}},
        {{{2, "No digits after exponent"}}, {"1e", "1E+"}},
        {{unrecognised}, {"x", "\0"s, "\xEF\xBB\xBF[]"}},
        {{{3, "Expected 'true'"}}, {"trux"}},
        {{{11, "End of input while parsing array"}}, {"[", "[1, "}},
        {{end, inArray}, {"[ "}},
        {{unrecognised, inArray}, {"[1,,2]"}},
        {{{9, "Trailing comma disallowed in array"}}, {"[1,]", "[1 , ]"}},
        {{{11, "End of input while parsing object"}}, {"{", "{\"a\":1"}},
        {{key}, {"{1:2}"}},
        {{endInString, key}, {"{\"a"}},
        {{{3, "Expected ':' separating key and value"}}, {"{\"a\" 1}"}},
        {{unrecognised, {3, "Object value expected for key: a"}}, {"{\"a\":}"}},
        {{{2, "No digits after initial minus"}, inArray, {3, "Object value expected for key: %@"}},
         {"{\"%@\":[-]}"}},
        {{{9, "Trailing comma disallowed in object"}}, {"{\"a\":1,}"}},
        {{{10, "Garbage after JSON"}}, {"[] x", "[]\0"s}},
        {{endInString}, {"\"abc", "\"abc\\", "\"abc\0def\""s}},
        {control("a"), {"\"a\nb\""}},
        {control("c3"), {"\"ok\xC3\""}},
        {control("c0"), {"\"\xC0\x80\""}},
        {control("ed"), {"\"\xED\xA0\x80\""}},
        {control("f4"), {"\"\xF4\x90\x80\x80\""}},
        {{{8, "Illegal escape sequence '0x78'"}}, {R"("\x41")"}},
        {{noDigit, noQuad, broken}, {R"("\u12)", R"("\u12g4")", R"("\u-123")"}},
        {{{6, "Invalid high character in surrogate pair"}, broken}, {R"("\udc00")"}},
        {{noLow, broken}, {R"("\ud800")", R"("\ud800\n")"}},
        {{badLow, broken}, {R"("\ud800\u0041")", R"("\ud800\udfff")"}},
    };
    SBJsonParser parser;
    for (const auto& [trace, texts] : rows) {
        for (const auto& text : texts) {
            SCOPED_TRACE(text);
            EXPECT_EQ(parser.fragmentWithString(text), std::nullopt);
            EXPECT_EQ(troubles(parser), trace);
        }
    }
}

TEST(JsonReading, Accepts) {
    const auto number = [](const char* text) { return Value{Number{text}}; };
    const std::tuple<std::string, Value> rows[] = {
        {"\v\f null\r\n\t", Value{}},
        {"[true false]", Array{true, false}},
        {"[1 2]", Array{number("1"), number("2")}},
        {"[1-2]", Array{number("1"), number("-2")}},
        {"[ ]", Array{}},
        {"{\"a\":1 \"b\":{} }", Dictionary{{"a", number("1")}, {"b", Dictionary{}}}},
        {"-0.10E+05", number("-0.10E+05")},
        {"123456789012345678901234567890.10", number("123456789012345678901234567890.10")},
        {R"("\"\\\/\b\f\n\r\t\u00e9\uABCDx")", "\"\\/\b\f\n\r\t\xC3\xA9\xEA\xAF\x8Dx"},
        {"\"a\\u0000b\x7F\"", "a\0b\x7F"s},
        {"\"\xE2\x82\xAC \xF0\x9F\x98\x80\"", "\xE2\x82\xAC \xF0\x9F\x98\x80"},
        {R"("\ud83d\ude00")", "\xEF\x98\x80"},                           // U+1F600 without its plane
        {R"("\ud836\udc00<\ud837\udffe")", "\xEF\xBF\xBD<\xEF\xBF\xBD"}  // what is left is half a pair
    };
    SBJsonParser parser;
    for (const auto& [text, value] : rows) {
        SCOPED_TRACE(text);
        EXPECT_EQ(parser.fragmentWithString(text), value);
        EXPECT_TRUE(parser.errorTrace().empty());
    }
}

TEST(JsonReading, ObjectsOnlyAtTheTop) {
    SBJsonParser parser;
    EXPECT_EQ(JSONRepresentation(*parser.objectWithString(R"({"a":1,"b":2,"a":3})")), R"({"a":3,"b":2})");
    EXPECT_FALSE(parser.objectWithString("5"));
    EXPECT_EQ(troubles(parser), (std::vector<Trouble>{{4, "Valid fragment, but not JSON"}}));
    EXPECT_FALSE(parser.objectWithString(std::nullopt));
    EXPECT_EQ(troubles(parser), (std::vector<Trouble>{{12, "Input was 'nil'"}}));
}

TEST(JsonDepth, LimitHoldsBothWays) {
    const std::tuple<std::uint64_t, std::size_t> rows[] = {
        {512, 512}, {3, 3}, {0, SBJsonBase::deepest}, {1'000'000, SBJsonBase::deepest}};
    const Trouble tooDeep{7, "Nested too deep"};
    for (const auto& [limit, accepted] : rows) {
        SCOPED_TRACE(limit);
        SBJsonParser parser;
        SBJsonWriter writer;
        parser.setMaxDepth(limit);
        writer.setMaxDepth(limit);
        auto value = parser.fragmentWithString(nested(accepted));
        ASSERT_TRUE(value);
        EXPECT_EQ(writer.stringWithObject(*value), nested(accepted));
        EXPECT_TRUE(parser.fragmentWithString("[" + nested(accepted - 1) + nested(accepted - 1) + "]"));

        EXPECT_FALSE(parser.fragmentWithString(nested(accepted + 1)));
        EXPECT_EQ(troubles(parser).front(), tooDeep);
        EXPECT_EQ(parser.errorTrace().size(), accepted + 1);
        EXPECT_FALSE(writer.stringWithObject(Array{*value}));
        EXPECT_EQ(troubles(writer), std::vector{tooDeep});
    }
}

TEST(JsonWriting, Tables) {
    const auto number = Value{Number{"1.50"}};
    const Dictionary members{{"b", Array{number, Dictionary{}}}, {"\xC3\xA9", Array{}}, {"a", Value{}}};
    const struct {
        Value value;
        bool humanReadable, sortKeys;
        std::string text;
    } rows[] = {{number, false, false, "1.50"},
                {true, false, false, "true"},
                {Value{}, false, false, "null"},
                {"\"\\/\b\t\n\f\r\x01\x1F\x7F\xC3\xA9\0"s, false, false,
                 "\"\\\"\\\\/\\b\\t\\n\\f\\r\\u0001\\u001f\x7F\xC3\xA9\\u0000\""},
                {members, false, false, "{\"b\":[1.50,{}],\"\xC3\xA9\":[],\"a\":null}"},
                {members, false, true, "{\"a\":null,\"b\":[1.50,{}],\"\xC3\xA9\":[]}"},
                {members, true, true,
                 "{\n  \"a\" : null,\n  \"b\" : [\n    1.50,\n    {}\n  ],\n  \"\xC3\xA9\" : []\n}"},
                {Array{}, true, false, "[]"}};
    for (const auto& row : rows) {
        SBJsonWriter writer;
        writer.setHumanReadable(row.humanReadable);
        writer.setSortKeys(row.sortKeys);
        const auto text = writer.stringWithFragment(row.value);
        EXPECT_EQ(text, row.text);
        EXPECT_EQ(SBJsonParser{}.fragmentWithString(row.text), row.value);
    }
}

TEST(JsonWriting, RefusesWhatHasNoForm) {
    const Trouble unsupported{1, "JSON serialisation not supported for Data"};
    SBJsonWriter writer;
    EXPECT_FALSE(writer.stringWithFragment(Array{Dictionary{{"k", Data{1, 2}}}}));
    EXPECT_EQ(troubles(writer),
              (std::vector<Trouble>{unsupported, {1, "Unsupported value for key k in object"}}));
    EXPECT_FALSE(writer.stringWithObject("text"));
    EXPECT_EQ(troubles(writer), (std::vector<Trouble>{{4, "Not valid type for JSON"}}));
}

}  // namespace
}  // namespace torv
