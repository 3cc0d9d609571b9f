#include "attributes/AVFormatter.h"

#include "support/AV.h"

namespace torv {

std::optional<AVFormatterData> AVFormatter::dataFromAV(std::uint8_t*) {
    return std::nullopt;
}

AVBuffer AVFormatter::allocAVFromFormatterData(const AVFormatterData&) {
    return nullptr;
}

AVBuffer AVFormatter::allocBuffer() {
    return AVBuffer{static_cast<std::uint8_t*>(std::calloc(longSlotSize, sizeof(std::uint8_t)))};
}

}  // namespace torv
