#pragma once

#include <chrono>
#include <string>

namespace torv {

// Moments and spans as texts. What lies beyond the years 1970 to 9999 counts as their ends. Any thread.

/// Milliseconds since 1970, UTC.
using WallTime = std::chrono::sys_time<std::chrono::milliseconds>;
[[nodiscard]] inline WallTime wallTime(std::chrono::system_clock::time_point time) {
    return std::chrono::floor<std::chrono::milliseconds>(time);
}
[[nodiscard]] inline WallTime wallNow() {
    return wallTime(std::chrono::system_clock::now());
}

/// ISO 8601 in UTC: "2026-11-24T02:52:43.123Z".
[[nodiscard]] std::string isoText(WallTime time);
/// Local, by a clock of 12 hours without AM or PM: "2026/11/24 02:52:43.123". Kept as it is.
[[nodiscard]] std::string logTimeText(WallTime time);
/// For the name of an exported file, by the same clock, kept as it is too: "2026-11-24-02.52.43".
[[nodiscard]] std::string fileTimeText(WallTime time);
/// Local, for people: "2026-11-24", and with " 14:52".
[[nodiscard]] std::string dayText(WallTime time);
[[nodiscard]] std::string dateText(WallTime time);
/// Local: "14:52:43.1".
[[nodiscard]] std::string clockText(WallTime time);
/// "1:02:03", or "2:03" below an hour.
[[nodiscard]] std::string lengthText(std::chrono::seconds length);

}  // namespace torv
