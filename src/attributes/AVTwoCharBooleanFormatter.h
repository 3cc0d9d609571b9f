#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// Byte 0 a switch, byte 1 a number. Writes 2 bytes.
class AVTwoCharBooleanFormatter final : public AVFormatter {
public:
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
    [[nodiscard]] AVBuffer allocAVFromFormatterData(const AVFormatterData& data) override;
};

}  // namespace torv
