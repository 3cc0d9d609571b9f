#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// Byte 0 a state of three (flags 1, 2, 4), byte 1 a number. Writes 2 bytes.
class AVTwoCharGearFormatter final : public AVFormatter {
public:
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
    [[nodiscard]] AVBuffer allocAVFromFormatterData(const AVFormatterData& data) override;
};

}  // namespace torv
