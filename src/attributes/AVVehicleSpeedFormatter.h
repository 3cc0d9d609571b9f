#pragma once

#include <string>

#include "attributes/AVNumberFormatter.h"

namespace torv {

/// A speed corrected for the tires: the module reckons with the stock size.
///
/// The correction works on the rounded text of the number formatter. The way back has no correction. The
/// two sizes are process-wide texts, both "1" until they are set; any thread.
class AVVehicleSpeedFormatter final : public AVNumberFormatter {
public:
    using AVNumberFormatter::AVNumberFormatter;
    [[nodiscard]] static std::shared_ptr<AVVehicleSpeedFormatter>
    formatterWithOffsetMultiplyFactorDecimalDigits(float offset, float multiplyFactor,
                                                   std::int64_t decimalDigits) {
        return std::make_shared<AVVehicleSpeedFormatter>(offset, multiplyFactor, decimalDigits);
    }

    static void setCurrentTireSize(std::string size);
    static void setStockTireSize(std::string size);
    [[nodiscard]] static std::string currentTireSize();
    [[nodiscard]] static std::string stockTireSize();

    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
};

}  // namespace torv
