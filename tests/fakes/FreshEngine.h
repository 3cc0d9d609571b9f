#pragma once

#include "link/AVStore.h"
#include "link/x2comEngine.h"

namespace fakes {

/// Engine and store are process-wide: this ends what the test before has left under way, and puts the two
/// frame buffers and all values back to what a fresh process has. Needs an installed platform.
inline void freshenEngine() {
    {
        const std::scoped_lock lock{torv::avStoreMutex()};
        torv::receiveStore() = {};
        torv::sendStore() = {};
    }
    struct Nowhere final : x2comSink {
        void sendBytes(std::span<const std::uint8_t>) override {}
        [[nodiscard]] bool canSend() override { return true; }
    } nowhere;
    x2comReset();
    x2comSetSink(&nowhere);
    while (x2comTransmit() != x2comTxIdle)
        x2comAckTimedOut();
    x2comSetSink(nullptr);

    x2comAIDList list;
    const x2comFrame nothing{};
    for (int i = 0; i < 2; ++i)
        x2comPushChunk(nothing.data(), x2comFrameSize);
    while (x2comReceive(list) != x2comRxIdle) {
    }
}

}  // namespace fakes
