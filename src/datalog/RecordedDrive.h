#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "support/AV.h"
#include "support/TimeTexts.h"

namespace torv {

/// What a recording tells of one sensor, as it was when the recording began.
struct RecordedSensor {
    AID aid = 0;
    std::string name;
    std::string unit;  ///< as it stands behind a value
    std::int64_t decimaldigits = 0;
    std::string minmax;            ///< "high", "low", "both", "off" or "none"
    std::int32_t warningRule = 0;  ///< as of an attribute
    std::int64_t warningValue = 0;

    /// The limit that its warning looks at; nothing while that is off.
    [[nodiscard]] std::optional<double> limit() const {
        constexpr std::int32_t lastRule = 4;
        if (warningRule < 1 || warningRule > lastRule) return std::nullopt;
        return static_cast<double>(warningValue);
    }
};

struct RecordedDrive {
    std::string name;
    std::string vehicle;
    WallTime begun;
    std::vector<RecordedSensor> sensors;
};

/// A moment of a recording: nanoseconds since it began, by a clock that nobody sets and that goes on while
/// the machine is suspended.
using DriveTime = std::chrono::nanoseconds;

/// One value, as it came to the store.
struct RecordedValue {
    AID aid = 0;
    DriveTime time{};
    WallTime wall;
    std::optional<double> value;  ///< as it is shown, a running time in seconds; nothing where it shows none
    AV bytes;
};

/// What befell the link.
struct RecordedEvent {
    DriveTime time{};
    WallTime wall;
    std::string text;
};

}  // namespace torv
