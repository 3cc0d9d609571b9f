#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// Byte 0 the length, from 1 up to six more codes of two bytes; they are a `std::vector<std::string>`. Here
/// it is the length that tells how many, and every letter reads as P, whatever the code's two highest bits
/// say: kept as it is. No way back.
class AVDTCFormatter225 final : public AVFormatter {
public:
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
};

}  // namespace torv
