#pragma once

#include <chrono>
#include <cstdint>
#include <span>

#include "link/x2comCodec.h"
#include "link/x2comEngine.h"
#include "platform/ByteStream.h"

namespace torv {

/// For whoever wants to see the link itself: each attempt to connect and what became of it, every frame and
/// every exchange. Each word is told at once and keeps whoever tells it waiting, so a monitor is quick and
/// starts no exchange.
class LinkMonitor {
public:
    struct Exchange {
        bool isWrite = false;  ///< or a request
        std::int32_t aid = 0;
        std::chrono::nanoseconds took{};  ///< from the call to its outcome
        bool answered = false;
    };

    LinkMonitor() = default;
    LinkMonitor(const LinkMonitor&) = delete;
    LinkMonitor& operator=(const LinkMonitor&) = delete;
    virtual ~LinkMonitor() = default;

    /// These four: main thread, no lock held.
    virtual void attempted(const Endpoint&) {}
    virtual void sessionCameUp() {}
    /// How far the attempt came; a session may have been up or not.
    virtual void connectionEnded(const Endpoint&, ByteStream::Reach, bool /*hadSession*/) {}
    /// Not told of one that ended because the program quits.
    virtual void exchangeEnded(const Exchange&) {}
    /// Main thread, under the driver's exchange lock.
    virtual void frameSent(std::span<const std::uint8_t> /*frame*/, x2comTxResult) {}
    /// Reading thread, no lock held; the last ones of a connection may be told after its end. The engine
    /// decodes one chunk late: the result is that of the chunk before this one.
    virtual void chunkReceived(std::span<const std::uint8_t> /*chunk*/, x2comResult) {}
};

}  // namespace torv
