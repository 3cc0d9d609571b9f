#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// One byte, the level in decimal. The flags tell whether it is odd, and not whether it is 0; kept as it is.
/// Needs bytes; no way back.
class AVPowerLevelFormatter final : public AVFormatter {
public:
    [[nodiscard]] static std::shared_ptr<AVPowerLevelFormatter> formatter() {
        return std::make_shared<AVPowerLevelFormatter>();
    }

    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
};

}  // namespace torv
