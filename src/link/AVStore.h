#pragma once

#include <array>
#include <cstdint>
#include <mutex>

#include "support/AV.h"

namespace torv {

/// The two halves of the store, zero at start, as long as the process lives.
///
/// What the module sends lands in `receiveStore`; what the handset writes goes through `sendStore`. A
/// slot is never cleared: a value of zero and one that never arrived look alike. The slots are read and
/// written under `avStoreMutex`, which nobody holds across a call out.
struct AVHalfStore {
    std::array<std::uint8_t, 220 * shortSlotSize> shortSlots{};
    std::array<std::uint8_t, 35 * longSlotSize> longSlots{};
};

[[nodiscard]] AVHalfStore& receiveStore();
[[nodiscard]] AVHalfStore& sendStore();
[[nodiscard]] std::mutex& avStoreMutex();

}  // namespace torv

/// The AID's slot in the store, 4 or 13 bytes, or null. AID 255 has none in `sendStore`; as a receive slot it
/// yields the `sendStore` slot of AID 0; kept as it is. Callers hold `avStoreMutex`.
[[nodiscard]] std::uint8_t* x2comReceiveSlot(std::uint8_t aid);
[[nodiscard]] std::uint8_t* x2comSendSlot(std::uint8_t aid);
