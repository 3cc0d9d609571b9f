// What a switch, a choice or a typed value does to the record of a device setting. Nothing here knows of a
// store or of a module. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "attributes/ValueRange.h"

namespace torv {

// Settings with rules of their own; every module has them under these AIDs.
inline constexpr AID threeWaySettingAID = 91;  // a choice of three beside the value
inline constexpr AID driveTrainSettingAID = 226;

[[nodiscard]] bool isSwitchedOn(const AVFormatterData& record);
/// The index of the option that the setting's record holds.
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

}  // namespace torv
