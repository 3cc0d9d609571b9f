#include "attributes/AVNumberFormatter.h"

#include "support/TextNumbers.h"

namespace torv {

std::optional<AVFormatterData> AVNumberFormatter::dataFromAV(std::uint8_t* bytes) {
    float number = 0.0F;
    if (bytes) {
        const auto raw = static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8U |
                         static_cast<std::uint32_t>(bytes[2]) << 16U |
                         static_cast<std::uint32_t>(bytes[3]) << 24U;
        number = static_cast<float>(raw);
    }
    number *= m_multiplyFactor;
    number += m_offset;
    AVFormatterData data;
    data.value = fixedText(static_cast<double>(number), m_decimalDigits);
    return data;
}

AVBuffer AVNumberFormatter::allocAVFromFormatterData(const AVFormatterData& data) {
    auto rest = intFromFloat(static_cast<double>(floatValue(data.value) / m_multiplyFactor));
    auto buffer = allocBuffer();
    if (!buffer) return buffer;
    for (int i = 0; i < 4; ++i) {
        buffer[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(rest & 0xFF);
        // Divided and not shifted: below 0 this is not two's complement (-1 is FF 00 00 00). Kept as it is.
        rest /= 256;
    }
    return buffer;
}

}  // namespace torv
