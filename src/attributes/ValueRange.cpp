#include "attributes/ValueRange.h"

#include "support/TextNumbers.h"

namespace torv {

bool isInSecondMode(const TorvAttribute& attribute, const AVFormatterData& record) {
    return attribute.aid == turboTimerSettingAID && (record.flags & AVFormatterData::secondOn) != 0;
}

ValueRange valueRange(const TorvAttribute& attribute, const AVFormatterData& record) {
    const bool second = isInSecondMode(attribute, record);
    return {.lowest = longLongFromDouble(second ? attribute.additionalMinValue : attribute.minValue),
            .highest = longLongFromDouble(second ? attribute.additionalMaxValue : attribute.maxValue),
            .unit = second ? attribute.additionalUnit : attribute.unit,
            .isTold = attribute.minValue != 0.0 || attribute.maxValue != 0.0};
}

std::string trimmed(const std::string& text) {
    constexpr auto blanks = " \t";
    const auto begin = text.find_first_not_of(blanks);
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

}  // namespace torv
