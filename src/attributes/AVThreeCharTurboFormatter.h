#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// Byte 0 a mode code that holds two switches, bytes 1 and 2 a number. Writes 3 bytes.
///
///   Byte 0  written back  flags
///   0       00            9   both off
///   1       80            10  first on
///   2       40            17  second on
///   3       C0            18  both on
///
/// The code is translated in the caller's own buffer: the same bytes can be decoded again, and come out
/// alike.
class AVThreeCharTurboFormatter final : public AVFormatter {
public:
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
    [[nodiscard]] AVBuffer allocAVFromFormatterData(const AVFormatterData& data) override;
};

}  // namespace torv
