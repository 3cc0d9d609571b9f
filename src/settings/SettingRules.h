// What a switch, a choice or a typed value does to the record of a device setting. Nothing here knows of a
// store or of a module. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "attributes/TorvAttribute.h"

namespace torv {

// Settings with a part of their own; modules have them under these numbers.
inline constexpr AID threeWaySettingAID = 91;     // a choice of three beside the value
inline constexpr AID turboTimerSettingAID = 152;  // a switch, and a choice of two modes with a range each
inline constexpr AID driveTrainSettingAID = 226;

/// Between which whole numbers a value may lie, both included, and in what unit.
struct SettingRange {
    std::int64_t lowest = 0;
    std::int64_t highest = 0;
    std::optional<std::string> unit;  ///< key of the unit table
    bool isTold = false;              ///< with neither end given there is nothing to tell

    [[nodiscard]] bool contains(std::int64_t number) const { return number >= lowest && number <= highest; }
};

/// The mode of a two-mode setting decides.
[[nodiscard]] SettingRange rangeOfSetting(const TorvAttribute& setting, const AVFormatterData& record);

[[nodiscard]] bool isSwitchedOn(const AVFormatterData& record);
/// Which of its options the record of a setting with a choice stands at.
[[nodiscard]] std::size_t choiceOfSetting(const TorvAttribute& setting, const AVFormatterData& record);
/// The option's text; its number where the profile has no such option.
[[nodiscard]] std::string textOfChoice(const TorvAttribute& setting, std::size_t choice);
/// False for a formatter with no way back, and for none.
[[nodiscard]] bool isChangeable(const TorvAttribute& setting);

/// The second switch of a two-mode setting stays.
[[nodiscard]] AVFormatterData switchedRecord(const TorvAttribute& setting, const AVFormatterData& record,
                                             bool on);
/// The first switch of a two-mode setting stays, and its number becomes the lowest of the new mode.
[[nodiscard]] AVFormatterData pickedRecord(const TorvAttribute& setting, const AVFormatterData& record,
                                           std::size_t choice);
[[nodiscard]] AVFormatterData typedRecord(const AVFormatterData& record, const std::string& text);

/// A text without the blanks at its ends.
[[nodiscard]] std::string trimmed(const std::string& text);

}  // namespace torv
