#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "support/TimeTexts.h"

namespace torv {

/// Takes the next piece of a file; false when it could not be kept, which ends the writing.
using TextSink = std::function<bool(std::string_view)>;

struct LoggedSample {
    double value = 0;
    WallTime time;
};

/// One sensor of a data log: its samples, oldest first, one with each call.
struct DataLogColumn {
    std::string name;
    std::int64_t decimaldigits = 0;
    std::function<std::optional<LoggedSample>()> next;
};

/// Two columns for each sensor, its times and its values. Rows line up by the number of the sample and not by
/// the time. Names stand as they are, without quotes. Nothing at all without a sensor; false when the sink
/// refused a piece. Any thread.
bool writeDataLogCsv(std::span<const DataLogColumn> columns, const TextSink& write);

}  // namespace torv
