#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace torv {

/// A connection that carries bytes both ways.
class ByteStream {
public:
    enum class Event : std::uint8_t { bytesAvailable = 2, error = 8, end = 16 };
    using Client = std::function<void(Event)>;
    /// How far a connection has come, or how it ended.
    enum class Reach : std::uint8_t {
        noAnswer,     ///< nobody has answered, yet
        unreachable,  ///< there is no way to that address
        refused,
        open,
        closed  ///< the other end took the connection and has closed it, or it broke
    };

    ByteStream() = default;
    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;
    virtual ~ByteStream() = default;

    /// Main thread, before `open`. The client is called on the main thread. After a `bytesAvailable`
    /// it is not called again until `rearm`.
    virtual void setClient(Client client) = 0;
    /// Main thread. Starts to connect and does not wait; false when that is impossible at once.
    [[nodiscard]] virtual bool open() = 0;
    /// Main thread. No event comes afterwards.
    virtual void close() = 0;
    /// How many bytes were read, at most `room.size()`; 0 or less when there are none. Any thread.
    virtual std::ptrdiff_t read(std::span<std::uint8_t> room) = 0;
    /// Asks for the next `bytesAvailable`, also for bytes that are there already. Any thread; the main
    /// loop is woken.
    virtual void rearm() = 0;
    /// How many of the bytes were taken; less than 0 on failure. Main thread.
    virtual std::ptrdiff_t write(std::span<const std::uint8_t> bytes) = 0;
    /// Main thread. When the answer is no and a yes may follow, the main loop is woken then. Never again
    /// once the connection was refused or has ended.
    [[nodiscard]] virtual bool canAcceptBytes() = 0;
    /// Main thread. Known before the client hears of an error or the end.
    [[nodiscard]] virtual Reach reach() const = 0;
};

/// Where a stream leads: a dotted address (IPv4) and a port.
struct Endpoint {
    std::string host;
    std::uint16_t port = 0;

    friend bool operator==(const Endpoint&, const Endpoint&) = default;
};

/// Main thread.
class ByteStreamFactory {
public:
    ByteStreamFactory() = default;
    ByteStreamFactory(const ByteStreamFactory&) = delete;
    ByteStreamFactory& operator=(const ByteStreamFactory&) = delete;
    virtual ~ByteStreamFactory() = default;

    /// A stream that is not open yet.
    [[nodiscard]] virtual std::shared_ptr<ByteStream> streamToHost(const Endpoint& endpoint) = 0;
};

}  // namespace torv
