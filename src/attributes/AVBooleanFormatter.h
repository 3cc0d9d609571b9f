#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// One byte, off at 0. The state stands in the flags. Needs bytes; no way back.
class AVBooleanFormatter final : public AVFormatter {
public:
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
};

}  // namespace torv
