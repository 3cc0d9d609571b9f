#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// Byte 1 a number that nothing uses, 2 the number of codes in all, from 3 up to five codes of two bytes. The
/// text is byte 1, the codes are an `AVDTCData224`. How many are read goes by byte 2 and not by the length in
/// byte 0. No way back.
class AVDTCFormatter224 final : public AVFormatter {
public:
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
};

}  // namespace torv
