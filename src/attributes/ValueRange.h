// What may be typed as the value of a setting or of a tuning item. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "attributes/TorvAttribute.h"

namespace torv {

inline constexpr AID turboTimerSettingAID = 152;  ///< a switch, and a choice of two modes with a range each

/// Between which whole numbers a value may lie, both included, and in what unit.
struct ValueRange {
    std::int64_t lowest = 0;
    std::int64_t highest = 0;
    std::optional<std::string> unit;  ///< key of the unit table
    bool isTold = false;              ///< with neither end given there is nothing to tell

    [[nodiscard]] bool contains(std::int64_t number) const { return number >= lowest && number <= highest; }
};

/// The mode of a two-mode setting decides.
[[nodiscard]] ValueRange valueRange(const TorvAttribute& attribute, const AVFormatterData& record);
[[nodiscard]] bool isInSecondMode(const TorvAttribute& attribute, const AVFormatterData& record);

/// A text without the blanks at its ends.
[[nodiscard]] std::string trimmed(const std::string& text);

}  // namespace torv
