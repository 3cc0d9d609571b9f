// Arbitrary bytes into the codec and, cut into chunks, into the engine, while it writes and reads.

#include <algorithm>

#include "FuzzPlatform.h"
#include "link/AVStore.h"
#include "link/x2comEngine.h"

namespace {

void demand(bool holds) {
    if (!holds) std::abort();
}

struct Sink final : x2comSink {
    void sendBytes(std::span<const std::uint8_t> frame) override {
        demand(frame.size() >= 2 && frame.size() <= x2comFrameSize);
        demand(x2comFrameLength(frame.data()) + 1U == frame.size());
        demand(x2comCheckFrame(frame.data(), x2comFrameLength(frame.data())) == x2comFrameGood);
    }
    [[nodiscard]] bool canSend() override { return open; }
    bool open = true;
};

/// The frame as it is, and with the CRC put right, so that its payload is looked at.
void parse(x2comFrame frame) {
    for (int pass = 0; pass < 2; ++pass) {
        std::uint32_t type = 0;
        x2comAIDList list;
        const auto result = x2comParseFrame(frame.data(), type, list);
        demand(list.count <= x2comListSize);
        if (result == x2comFrameBadCrc || result == x2comFrameEmpty) {
            demand(type == x2comFrameNoType && list.count == 0);
        }
        const auto length = x2comFrameLength(frame.data());
        frame[length] = x2comCrc8(frame.data(), length);
    }
}

}  // namespace

/// A byte ahead of each chunk holds its length less 1 in the low 4 bits, and in the high ones what happens
/// besides.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static FuzzPlatform platform;
    static Sink sink;
    x2comSetSink(&sink);
    x2comReset();
    torv::receiveStore() = torv::sendStore() = {};
    std::span input{bytes, size};
    while (!input.empty()) {
        const auto event = static_cast<unsigned>(input.front()) >> 4U;
        const auto chunk =
            input.subspan(1, std::min<std::size_t>((input.front() & 15U) + 1U, input.size() - 1));
        input = input.subspan(1 + chunk.size());
        x2comFrame frame{};
        std::copy(chunk.begin(), chunk.end(), frame.begin());
        parse(frame);
        if ((event & 1U) != 0)
            frame[x2comFrameLength(frame.data())] = x2comCrc8(frame.data(), frame[0] & 15U);
        x2comPushChunk(frame.data(),
                       (event & 1U) != 0 ? x2comFrameSize : static_cast<std::uint8_t>(chunk.size()));
        x2comAIDList list;
        if ((event & 14U) != 14U) static_cast<void>(x2comReceive(list));
        demand(list.count <= x2comListSize);
        sink.open = event != 8;
        if (event == 2) static_cast<void>(x2comRequestWrite(chunk));
        if (event == 4) static_cast<void>(x2comRequestRead(chunk));
        if (event == 6) x2comAckTimedOut();
        if (event == 10) x2comRespTimedOut();
        if (event == 12 && !chunk.empty() && x2comSendSlot(chunk[0])) *x2comSendSlot(chunk[0]) = chunk.back();
        x2comTransmit();
    }
    x2comAIDList list;
    while (x2comReceive(list) != x2comRxIdle)
        demand(list.count <= x2comListSize);
    return 0;
}
