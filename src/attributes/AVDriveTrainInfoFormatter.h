#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// Byte 0 the length, 1 the transmission, 2 the rear end ratio, 3 and 4 the tire size in tenths of an inch,
/// 5 the vehicle selection. The text is the tire size; the codes are an `AVDriveTrainInfoData`. Writes 6
/// bytes.
class AVDriveTrainInfoFormatter final : public AVFormatter {
public:
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
    [[nodiscard]] AVBuffer allocAVFromFormatterData(const AVFormatterData& data) override;
};

}  // namespace torv
