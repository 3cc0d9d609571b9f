#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <tuple>

#include "fakes/FakePlatform.h"
#include "platform/Reachability.h"
#include "support/KeyedHash.h"
#include "support/TextNumbers.h"
#include "support/TimeTexts.h"
#include "support/Value.h"
#include "support/WholeFile.h"

namespace torv {
namespace {

using namespace std::string_literals;

constexpr auto most32 = std::numeric_limits<std::int32_t>::max();
constexpr auto least32 = std::numeric_limits<std::int32_t>::min();
constexpr auto most64 = std::numeric_limits<std::int64_t>::max();
constexpr auto least64 = std::numeric_limits<std::int64_t>::min();
constexpr auto infinite = std::numeric_limits<double>::infinity();

TEST(TextNumbers, ReadTheLeadingNumber) {
    for (const auto* text :
         {"", "+-5", "- 5", ".", "0x10", "inf", "-nan", "no", "000", "0e99999999999999999999"}) {
        EXPECT_EQ(doubleValue(text), 0) << text;
        EXPECT_EQ(longLongValue(text), 0) << text;
        EXPECT_FALSE(boolValue(text)) << text;
    }
    const std::tuple<std::string, std::int32_t, std::int64_t, double, bool> rows[] = {
        {" \t\n-7.9 psi", -7, -7, -7.9, true},
        {"-.5", 0, 0, -0.5, false},
        {"1,5", 1, 1, 1, true},
        {"1.5.5", 1, 1, 1.5, true},
        {"1e2", 1, 1, 100, true},
        {"yes", 0, 0, 0, true},
        {"True", 0, 0, 0, true},
        {"2147483648", most32, 2147483648, 2147483648.0, true},
        {"9223372036854775808", most32, most64, 9223372036854775808.0, true},
        {"-99999999999999999999", least32, least64, -1e20, true},
        {"-1e999", -1, -1, -infinite, true},
        {"0."s + std::string(400, '0') + "1e500", 0, 0, 1e99, false},
        {"1"s + std::string(400, '0') + "e-500", most32, most64, 1e-100, true},
        {"9e99999999999999999999", 9, 9, infinite, true}};
    for (const auto& [text, whole, wide, real, truth] : rows) {
        SCOPED_TRACE(text);
        EXPECT_EQ(intValue(text), whole);
        EXPECT_EQ(longLongValue(text), wide);
        EXPECT_EQ(doubleValue(text), real);
        EXPECT_EQ(floatValue(text), static_cast<float>(real));
        EXPECT_EQ(boolValue(text), truth);
    }
    EXPECT_EQ(floatValue("16777217"), 16777216.0F);
}

/// Of one sign alone, in a place of its own: what lies behind it is nobody's, as the address sanitizer knows.
TEST(TextNumbers, ReadNothingBehindTheEnd) {
    for (const char sign : {'+', '-', '.', ' ', '0', 'e'}) {
        const auto place = std::make_unique<char>(sign);
        const std::string_view text{place.get(), 1};
        EXPECT_EQ(intValue(text) + longLongValue(text), 0) << sign;
        EXPECT_EQ(doubleValue(text) + floatValue(text), 0) << sign;
        EXPECT_EQ(wholeTextFloatValue(text), sign == '0' ? std::optional{0.0F} : std::nullopt) << sign;
        EXPECT_FALSE(boolValue(text)) << sign;
    }
}

TEST(NumberTest, IsExact) {
    const auto megabyte = std::string(1U << 20U, '9');
    const std::tuple<std::string, std::int64_t, std::int32_t, double> rows[] = {
        {"9007199254740993", 9007199254740993, most32, 9007199254740992.0},
        {"9.007199254740993e15", 9007199254740993, most32, 9007199254740992.0},
        {"9223372036854775807.9", most64, most32, 9223372036854775808.0},
        {"-9223372036854775808", least64, least32, -9223372036854775808.0},
        {"922337203685477580.7E+1", most64, most32, 9223372036854775808.0},
        {"-1e300", least64, least32, -1e300},
        {"1e99999999999", most64, most32, infinite},
        {"-0.9", 0, 0, -0.9},
        {"12345e-3", 12, 12, 12.345},
        {"1e-99999999999", 0, 0, 0},
        {megabyte, most64, most32, infinite},
        {"0." + megabyte, 0, 0, 1},
        {megabyte + "e-1048575", 9, 9, 10}};
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
    for (const int count : {3, 16, 17, 100'000}) {  // the last takes for ever where a look-up walks
        Dictionary dictionary;
        for (int i = 0; i < 2 * count; ++i)
            dictionary.set("k" + std::to_string(i % count), Number::fromInteger(i));
        ASSERT_EQ(dictionary.size(), static_cast<std::size_t>(count));
        int at = 0;
        for (const auto& [key, value] : dictionary) {
            ASSERT_EQ(key, "k" + std::to_string(at));
            ASSERT_EQ(value.intValue(), count + at++);
        }
        EXPECT_EQ(Dictionary{dictionary}, dictionary);
    }
    EXPECT_EQ((Dictionary{{"a", true}, {"b", "x"}}), (Dictionary{{"b", "x"}, {"a", true}}));
    EXPECT_NE((Dictionary{{"a", true}}), (Dictionary{{"a", {}}}));
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

TEST(ReachabilityTest, TellsItsStatusFromTheFlags) {
    using R = Reachability;
    const std::tuple<std::uint32_t, int, int, std::string> rows[] = {
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
        {R::reachable | R::connectionRequired | R::isMobile | R::isLocalAddress, 1, 0, "WR -c---l-"}};
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

}  // namespace
TEST(TimeTexts, LocalOnesHaveTwelveHoursWhereTheyMust) {
    std::tm evening{};
    evening.tm_year = 126;
    evening.tm_mon = 10;
    evening.tm_mday = 23;
    evening.tm_hour = 21;
    evening.tm_isdst = -1;
    const auto time = wallTime(std::chrono::system_clock::from_time_t(std::mktime(&evening))) +
                      std::chrono::milliseconds{45};
    EXPECT_EQ(fileTimeText(time), "2026-11-23-09.00.00");
    EXPECT_EQ(logTimeText(time), "2026/11/23 09:00:00.045");
    EXPECT_EQ(dateText(time), "2026-11-23 21:00");
    EXPECT_EQ(clockText(time + std::chrono::milliseconds{100}), "21:00:00.1");
    EXPECT_EQ(isoText(WallTime{std::chrono::milliseconds{1500}}), "1970-01-01T00:00:01.500Z");
    EXPECT_EQ(isoText(WallTime::max()), "9999-12-31T23:59:59.999Z");
    EXPECT_EQ(isoText(WallTime::min()), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(lengthText(std::chrono::seconds{59}), "0:59");
    EXPECT_EQ(lengthText(std::chrono::seconds{3723}), "1:02:03");
}

TEST(WholeFile, OneThatCanNotBeWrittenLeavesTheOldOne) {
    const auto place = std::filesystem::path{testing::TempDir()} / "whole";
    const auto put = [&](std::size_t length) {
        WholeFile file{place};
        static_cast<void>(file.write(std::string(length, 'x')));
        return file.finish();
    };
    const auto held = [&] { return std::filesystem::file_size(place); };
    EXPECT_TRUE(put(5000));
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = ::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{10000, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_FALSE(put(20000));
    EXPECT_EQ(held(), 5000U);
    EXPECT_TRUE(put(6000));
    EXPECT_EQ(held(), 6000U);
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, handler);
    EXPECT_FALSE(std::filesystem::exists(place.string() + ".part"));
    std::filesystem::remove(place);
}

TEST(KeyedHash, IsSipHash) {
    std::string text;
    for (char c = 0; c < 15; ++c)
        text += c;
    const std::array<std::uint64_t, 2> key{0x0706050403020100U, 0x0f0e0d0c0b0a0908U};
    EXPECT_EQ(keyedHash(text, key), 0xa129ca6149be45e5U);  // the vector of its authors
    EXPECT_EQ(keyedHash("", key), 0x726fdb47dd0e0e31U);
    EXPECT_NE(keyedHash(text), keyedHash(text, {})) << "the key of a process is random";
}

}  // namespace torv
