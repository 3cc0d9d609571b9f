#pragma once

#include <QSocketNotifier>
#include <memory>
#include <mutex>

#include "platform/ByteStream.h"
#include "platform/RunLoop.h"

namespace torv {

/// A TCP connection on a non-blocking socket that the run loop watches.
///
/// Bytes leave at once (TCP_NODELAY), and a peer that has vanished becomes an error once sent bytes have
/// stayed unacknowledged for 3.5 s (TCP_USER_TIMEOUT). The kernel looks at that only when it sends them
/// again, which on a connection that was slow to come up may be 8 s later; so each write looks at it too:
/// a peer that has sent neither acks nor data for so long has vanished.
class PosixByteStream final : public ByteStream, public std::enable_shared_from_this<PosixByteStream> {
public:
    PosixByteStream(RunLoop& loop, Endpoint endpoint);
    ~PosixByteStream() override;

    void setClient(Client client) override { m_client = std::move(client); }
    [[nodiscard]] bool open() override;
    void close() override;
    std::ptrdiff_t read(std::span<std::uint8_t> room) override;
    void rearm() override;
    std::ptrdiff_t write(std::span<const std::uint8_t> bytes) override;
    [[nodiscard]] bool canAcceptBytes() override;
    [[nodiscard]] Reach reach() const override { return m_reach; }

private:
    [[nodiscard]] std::unique_ptr<QSocketNotifier> watch(QSocketNotifier::Type type,
                                                         void (PosixByteStream::*handler)());
    [[nodiscard]] bool hasVanished() const;
    void becameReadable();
    void becameWritable();
    void end(Event event, int error);
    void tell(Event event);

    RunLoop& m_loop;
    const Endpoint m_endpoint;
    Client m_client;
    bool m_connecting = false;
    Reach m_reach = Reach::noAnswer;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;

    std::mutex m_mutex;  // the socket's number: the reading thread reads while the main thread closes
    int m_socket = -1;
};

}  // namespace torv
