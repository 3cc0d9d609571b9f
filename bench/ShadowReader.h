#pragma once

#include "FrameCodec.h"

namespace bench {

/// Mirrors how a handset reads: segments of at most 16 bytes, taken in turn into two buffers that keep stale
/// bytes behind a shorter one. One thread at a time.
///
/// An 8-bit CRC lets one damaged frame in 256 through. Faults are checked here before they are sent, so that
/// a wrong value on a handset is never just bad luck.
class ShadowReader final {
public:
    /// Whether the segment could be read as a frame that is not one of `meant`. Also tried on both buffers
    /// and on a blank one, as a handset may have missed segments or be freshly started.
    [[nodiscard]] bool misleads(ByteView segment, std::span<const Bytes> meant) const;

    void take(ByteView segment);

private:
    using Buffer = std::array<std::uint8_t, maxFrame>;

    std::array<Buffer, 2> m_buffers{};
    std::size_t m_next = 0;
};

}  // namespace bench
