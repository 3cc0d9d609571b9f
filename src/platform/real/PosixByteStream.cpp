#include "platform/real/PosixByteStream.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

namespace torv {
namespace {

constexpr std::chrono::milliseconds userTimeout{3500};

void setOption(int socket, int level, int name, int value) {
    // A kernel that refuses an option still carries the bytes.
    static_cast<void>(::setsockopt(socket, level, name, &value, sizeof value));
}

/// Of an attempt to connect.
ByteStream::Reach reachOfError(int error) {
    if (error == ECONNREFUSED) return ByteStream::Reach::refused;
    return error == ETIMEDOUT ? ByteStream::Reach::noAnswer : ByteStream::Reach::unreachable;
}

}  // namespace

PosixByteStream::PosixByteStream(RunLoop& loop, Endpoint endpoint)
    : m_loop(loop), m_endpoint(std::move(endpoint)) {}

PosixByteStream::~PosixByteStream() {
    if (m_socket >= 0) ::close(m_socket);
}

bool PosixByteStream::open() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(m_endpoint.port);
    if (::inet_pton(AF_INET, m_endpoint.host.c_str(), &address.sin_addr) != 1) return false;
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (socket < 0) return false;
    setOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
    setOption(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, static_cast<int>(userTimeout.count()));
    const int result = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (result != 0 && errno != EINPROGRESS) {
        m_reach = reachOfError(errno);
        ::close(socket);
        return false;
    }
    {
        const std::scoped_lock lock{m_mutex};
        m_socket = socket;
    }
    m_connecting = true;
    m_readable = watch(QSocketNotifier::Read, &PosixByteStream::becameReadable);
    m_writable = watch(QSocketNotifier::Write, &PosixByteStream::becameWritable);
    m_writable->setEnabled(true);
    return true;
}

std::unique_ptr<QSocketNotifier> PosixByteStream::watch(QSocketNotifier::Type type,
                                                        void (PosixByteStream::*handler)()) {
    auto notifier = std::make_unique<QSocketNotifier>(m_socket, type);
    notifier->setEnabled(false);
    // The handler runs once the notifier has returned: it may turn the loop inside, or close this stream.
    QObject::connect(notifier.get(), &QSocketNotifier::activated, [this, handler, watching = notifier.get()] {
        watching->setEnabled(false);
        m_loop.performOnMainThread([weak = weak_from_this(), handler] {
            if (const auto stream = weak.lock()) (stream.get()->*handler)();
        });
    });
    return notifier;
}

void PosixByteStream::close() {
    m_client = nullptr;
    m_readable.reset();
    m_writable.reset();
    const std::scoped_lock lock{m_mutex};
    if (m_socket >= 0) ::close(std::exchange(m_socket, -1));
}

/// `error` is that of the attempt to connect, or 0.
void PosixByteStream::end(Event event, int error) {
    m_reach = error == 0 ? Reach::closed : reachOfError(error);
    tell(event);
}

void PosixByteStream::tell(Event event) {
    if (const auto client = m_client) client(event);
}

void PosixByteStream::becameWritable() {
    if (m_socket < 0 || !m_connecting) return;
    m_connecting = false;
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(m_socket, SOL_SOCKET, SO_ERROR, &error, &size) != 0 || error != 0) {
        end(Event::error, error);
    } else {
        m_reach = Reach::open;
        m_readable->setEnabled(true);
    }
}

void PosixByteStream::becameReadable() {
    if (m_socket < 0) return;
    std::uint8_t first = 0;
    const auto count = ::recv(m_socket, &first, 1, MSG_PEEK | MSG_DONTWAIT);
    if (count > 0) return tell(Event::bytesAvailable);
    if (count == 0) return end(Event::end, 0);
    if (errno != EAGAIN && errno != EINTR) return end(Event::error, 0);
    m_readable->setEnabled(true);
}

std::ptrdiff_t PosixByteStream::read(std::span<std::uint8_t> room) {
    const std::scoped_lock lock{m_mutex};
    return m_socket < 0 ? -1 : ::recv(m_socket, room.data(), room.size(), MSG_DONTWAIT);
}

void PosixByteStream::rearm() {
    m_loop.performOnMainThread([weak = weak_from_this()] {
        const auto stream = weak.lock();
        if (stream && stream->m_readable) stream->m_readable->setEnabled(true);
    });
}

std::ptrdiff_t PosixByteStream::write(std::span<const std::uint8_t> bytes) {
    if (m_socket < 0) return -1;
    if (hasVanished()) {
        m_loop.performOnMainThread([weak = weak_from_this()] {
            if (const auto stream = weak.lock()) stream->end(Event::error, 0);
        });
    }
    return ::send(m_socket, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}

bool PosixByteStream::hasVanished() const {
    tcp_info info{};
    socklen_t size = sizeof info;
    return ::getsockopt(m_socket, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 && info.tcpi_unacked > 0 &&
           std::chrono::milliseconds{std::min(info.tcpi_last_ack_recv, info.tcpi_last_data_recv)} >
               userTimeout;
}

bool PosixByteStream::canAcceptBytes() {
    if (m_socket < 0 || m_reach != Reach::open) return false;
    pollfd query{m_socket, POLLOUT | POLLRDHUP, 0};
    const bool answered = ::poll(&query, 1, 0) > 0;
    // The end or the error is on its way to the client, and the socket would stay writable all the while.
    if (answered && (query.revents & (POLLERR | POLLHUP | POLLRDHUP)) != 0) return false;
    if (answered && (query.revents & POLLOUT) != 0) return true;
    m_writable->setEnabled(true);
    return false;
}

}  // namespace torv
