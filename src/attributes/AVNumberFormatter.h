#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// A scaled number: text = raw x factor + offset, in single precision, rounded at each step.
///
/// The raw value is the slot's 4 bytes, unsigned; above 16777216 it loses its low bits. The way back undoes
/// only the scale: the offset stays in, so that encoding mirrors decoding only for an offset of 0; kept as it
/// is. Writes 4 bytes.
class AVNumberFormatter : public AVFormatter {
public:
    AVNumberFormatter(float offset, float multiplyFactor, std::int64_t decimalDigits)
        : m_offset(offset), m_multiplyFactor(multiplyFactor), m_decimalDigits(decimalDigits) {}
    [[nodiscard]] static std::shared_ptr<AVNumberFormatter> formatterWithOffsetMultiplyFactorDecimalDigits(
        float offset, float multiplyFactor, std::int64_t decimalDigits) {
        return std::make_shared<AVNumberFormatter>(offset, multiplyFactor, decimalDigits);
    }

    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
    [[nodiscard]] AVBuffer allocAVFromFormatterData(const AVFormatterData& data) override;

    [[nodiscard]] float offset() const { return m_offset; }
    [[nodiscard]] float multiplyFactor() const { return m_multiplyFactor; }
    [[nodiscard]] std::int64_t decimalDigits() const { return m_decimalDigits; }

private:
    const float m_offset;
    const float m_multiplyFactor;
    const std::int64_t m_decimalDigits;
};

}  // namespace torv
