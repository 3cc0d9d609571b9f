#pragma once

#include "Faults.h"
#include "FrameCodec.h"

namespace bench {

/// What has happened since the bench was made.
struct Statistics {
    std::uint64_t connections = 0;
    std::uint64_t framesSent = 0;  ///< whole frames, damaged ones too
    std::array<std::uint64_t, 16> sentByType{};
    std::array<std::uint64_t, 16> receivedByType{};
    std::uint64_t badFrames = 0;                     ///< received with a wrong CRC
    std::vector<Item> writes;                        ///< received, the latest last, no more than `keptWrites`
    std::array<std::uint64_t, faultCount> faults{};  ///< how often each struck
    std::uint64_t valuesNotKept = 0;                 ///< distinct values sent beyond what `sent` keeps

    static constexpr std::size_t keptWrites = 4096;
    static constexpr std::size_t keptValues = 32768;  ///< for each AID

    [[nodiscard]] std::uint64_t struck(Fault fault) const { return faults[static_cast<std::size_t>(fault)]; }
    [[nodiscard]] std::uint64_t acksSent() const { return sentByType[typeByte(FrameType::ack)]; }
    [[nodiscard]] std::uint64_t received(FrameType type) const { return receivedByType[typeByte(type)]; }
};

}  // namespace bench
