#include "settings/SettingRules.h"

#include <array>

#include "support/TextNumbers.h"

namespace torv {
namespace {

using Flag = AVFormatterData::Flag;

/// The flag of each option of the setting with three.
constexpr std::array<std::int32_t, 3> threeWayFlags{Flag::firstOff, Flag::firstOn, Flag::third};

AVFormatterData recordOf(std::int32_t flags, std::string value) {
    return {.flags = flags, .value = std::move(value), .additionalData = {}};
}

}  // namespace

bool isSwitchedOn(const AVFormatterData& record) {
    return (record.flags & Flag::firstOn) != 0;
}

std::size_t choiceOfSetting(const TorvAttribute& setting, const AVFormatterData& record) {
    if (setting.aid == turboTimerSettingAID) return isInSecondMode(setting, record) ? 1 : 0;
    return record.flags == Flag::firstOn ? 1 : record.flags == Flag::third ? 2 : 0;
}

std::string textOfChoice(const TorvAttribute& setting, std::size_t choice) {
    const auto options = textsOfList(setting.options);
    return choice < options.size() ? options[choice] : std::to_string(choice);
}

bool isChangeable(const TorvAttribute& setting) {
    return setting.formatter && setting.formatter->allocAVFromFormatterData({});
}

AVFormatterData switchedRecord(const TorvAttribute& setting, const AVFormatterData& record, bool on) {
    auto flags = on ? Flag::firstOn : Flag::firstOff;
    if (setting.aid != turboTimerSettingAID) return recordOf(flags, record.value);
    const auto second = (record.flags & Flag::secondOn) != 0 ? Flag::secondOn : Flag::secondOff;
    return recordOf(flags + second, record.value);
}

AVFormatterData pickedRecord(const TorvAttribute& setting, const AVFormatterData& record,
                             std::size_t choice) {
    if (setting.aid != turboTimerSettingAID)
        return recordOf(threeWayFlags[choice < threeWayFlags.size() ? choice : 0], record.value);
    const auto first = isSwitchedOn(record) ? Flag::firstOn : Flag::firstOff;
    const bool second = choice == 1;
    const double lowest = second ? setting.additionalMinValue : setting.minValue;
    return recordOf(first + (second ? Flag::secondOn : Flag::secondOff),
                    std::to_string(longLongFromDouble(lowest)));
}

AVFormatterData typedRecord(const AVFormatterData& record, const std::string& text) {
    return recordOf(record.flags, trimmed(text));
}

}  // namespace torv
