#pragma once

#include <cstdint>

#include "support/TextNumbers.h"

namespace torv {

/// What the factory needs to make a formatter. A plain value.
struct AVFormatterParameter {
    float multiplyFactor = 0.0F;
    std::int32_t offset = 0;
    std::int32_t decimalDigits = 0;
    std::int32_t type = 0;  ///< row of the factory's table

    /// The offset is cut toward zero, the digits to 32 bits.
    [[nodiscard]] static AVFormatterParameter formatterParameterMultiplyFactorOffsetDecimalDigits(
        std::int32_t type, float multiplyFactor, float offset, std::int64_t decimalDigits) {
        return {.multiplyFactor = multiplyFactor,
                .offset = intFromFloat(static_cast<double>(offset)),
                .decimalDigits = static_cast<std::int32_t>(decimalDigits),
                .type = type};
    }
};

}  // namespace torv
