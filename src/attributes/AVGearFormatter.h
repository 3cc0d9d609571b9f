#pragma once

#include "attributes/AVFormatter.h"

namespace torv {

/// One byte, the gear. The text is the character code of the gear's label in decimal, which the gear widget
/// shows as one sign. Needs bytes; no way back.
class AVGearFormatter final : public AVFormatter {
public:
    [[nodiscard]] std::optional<AVFormatterData> dataFromAV(std::uint8_t* bytes) override;
};

}  // namespace torv
