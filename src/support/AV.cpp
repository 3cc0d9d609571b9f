#include "support/AV.h"

#include <algorithm>

namespace torv {

AV::AV(std::span<const std::uint8_t> bytes, std::size_t size) : m_size(std::min(size, longSlotSize)) {
    std::copy_n(bytes.begin(), std::min(bytes.size(), m_size), m_bytes.begin());
}

}  // namespace torv
