#include "support/TimeTexts.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::int64_t millisecondsInSecond = 1000;
constexpr std::int64_t lastMoment = 253402300799999;  // of the year 9999

struct Moment {
    std::time_t seconds;
    int milliseconds;
};

Moment momentOf(WallTime time) {
    const auto count = std::clamp<std::int64_t>(time.time_since_epoch().count(), 0, lastMoment);
    return {count / millisecondsInSecond, static_cast<int>(count % millisecondsInSecond)};
}

std::string formatted(const std::tm& parts, const char* pattern) {
    std::array<char, 40> text{};
    return {text.data(), std::strftime(text.data(), text.size(), pattern, &parts)};
}

/// Keeps the last second asked for: a file has many moments in one second, and working out local time is
/// slow.
const std::tm& localParts(std::time_t seconds) {
    thread_local std::time_t known = -1;
    thread_local std::tm parts{};
    if (known != seconds) localtime_r(&seconds, &parts);
    known = seconds;
    return parts;
}

std::string localText(WallTime time, const char* pattern) {
    return formatted(localParts(momentOf(time).seconds), pattern);
}

std::string threeDigits(int number) {
    return paddedText(number, 3, '0');
}

}  // namespace

std::string isoText(WallTime time) {
    const auto moment = momentOf(time);
    std::tm parts{};
    gmtime_r(&moment.seconds, &parts);
    return formatted(parts, "%Y-%m-%dT%H:%M:%S.") + threeDigits(moment.milliseconds) + "Z";
}

std::string logTimeText(WallTime time) {
    return localText(time, "%Y/%m/%d %I:%M:%S.") + threeDigits(momentOf(time).milliseconds);
}

std::string fileTimeText(WallTime time) {
    return localText(time, "%Y-%m-%d-%I.%M.%S");
}

std::string dayText(WallTime time) {
    return localText(time, "%Y-%m-%d");
}

std::string dateText(WallTime time) {
    return localText(time, "%Y-%m-%d %H:%M");
}

std::string clockText(WallTime time) {
    constexpr int hundred = 100;
    return localText(time, "%H:%M:%S.") + std::to_string(momentOf(time).milliseconds / hundred);
}

std::string lengthText(std::chrono::seconds length) {
    constexpr std::int64_t sixty = 60;
    const auto seconds = std::max<std::int64_t>(length.count(), 0);
    const auto minutes = seconds / sixty;
    const auto rest = paddedText(seconds % sixty, 2, '0');
    if (minutes < sixty) return std::to_string(minutes) + ":" + rest;
    return std::to_string(minutes / sixty) + ":" + paddedText(minutes % sixty, 2, '0') + ":" + rest;
}

}  // namespace torv
