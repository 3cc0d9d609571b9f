#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// Byte 0 a switch, bytes 1 and 2 a number that is not scaled. Writes 3 bytes; a fraction in the text is
/// lost.
class AVThreeCharBooleanFormatter final : public AVFormatter {
public:
    explicit AVThreeCharBooleanFormatter(std::int64_t decimalDigits) : m_decimalDigits(decimalDigits) {}
    [[nodiscard]] static std::shared_ptr<AVThreeCharBooleanFormatter> formatterWithDecimalPlaces(
        std::int64_t digits) {
        return std::make_shared<AVThreeCharBooleanFormatter>(digits);
    }

    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
    [[nodiscard]] AVBuffer allocAVFromFormatterData(const AVFormatterData& data) override;

private:
    const std::int64_t m_decimalDigits;
};

}  // namespace torv
