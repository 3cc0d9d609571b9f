#include "platform/real/WaylandGlobals.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstring>

namespace torv {
namespace {

// A message is the object's number, its length and operation in one word, and the arguments; all words are of
// the machine's own order, and a text is its length with the zero behind it and bytes up to whole words.
enum Object : std::uint32_t { display = 1, registry = 2, callback = 3 };
constexpr std::size_t wordSize = 4;
constexpr std::size_t headingSize = 2 * wordSize;
constexpr std::uint32_t global = 0;  // the registry's event: number, interface, version
constexpr std::array<std::uint32_t, 6> questions{
    display, (12U << 16U) | 1U, registry,  // get_registry
    display, (12U << 16U) | 0U, callback,  // sync
};
constexpr std::size_t longestAnswer = 1U << 20U;

/// Nothing behind the end.
std::optional<std::uint32_t> wordAt(std::string_view bytes, std::size_t place) {
    std::uint32_t word = 0;
    if (bytes.size() < place + wordSize) return std::nullopt;
    std::memcpy(&word, bytes.data() + place, wordSize);
    return word;
}

class Descriptor final {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() {
        if (m_number >= 0) ::close(m_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    [[nodiscard]] int number() const { return m_number; }

private:
    const int m_number;
};

}  // namespace

std::optional<std::vector<std::string>> waylandGlobalsFrom(std::string_view received) {
    std::vector<std::string> interfaces;
    while (const auto heading = wordAt(received, wordSize)) {
        const auto object = wordAt(received, 0);
        const std::size_t size = *heading >> 16U;
        if (size < headingSize || size > received.size()) return std::nullopt;
        if (object == callback) return interfaces;
        const auto message = received.substr(headingSize, size - headingSize);
        received.remove_prefix(size);
        if (object != registry || (*heading & 0xFFFFU) != global) continue;
        const auto length = wordAt(message, wordSize);
        if (!length || *length == 0 || *length > message.size() - 2 * wordSize) return std::nullopt;
        interfaces.emplace_back(message.substr(2 * wordSize, *length - 1));
    }
    return std::nullopt;
}

std::optional<std::vector<std::string>> waylandGlobals(const std::filesystem::path& socket) {
    using Clock = std::chrono::steady_clock;
    sockaddr_un address{};
    const auto path = socket.string();
    if (path.size() >= sizeof address.sun_path) return std::nullopt;
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), std::begin(address.sun_path));
    const Descriptor link{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
    const auto* where = reinterpret_cast<const sockaddr*>(&address);
    if (link.number() < 0 || ::connect(link.number(), where, sizeof address) != 0 ||
        ::send(link.number(), questions.data(), sizeof questions, MSG_NOSIGNAL) != sizeof questions)
        return std::nullopt;
    const auto limit = Clock::now() + std::chrono::seconds{1};
    std::string received;
    while (received.size() < longestAnswer) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(limit - Clock::now()).count();
        pollfd waiting{.fd = link.number(), .events = POLLIN, .revents = 0};
        if (left <= 0 || ::poll(&waiting, 1, static_cast<int>(left)) <= 0) return std::nullopt;
        std::array<char, 4096> piece{};
        const auto count = ::recv(link.number(), piece.data(), piece.size(), 0);
        if (count <= 0) return std::nullopt;
        received.append(piece.data(), static_cast<std::size_t>(count));
        if (auto interfaces = waylandGlobalsFrom(received)) return interfaces;
    }
    return std::nullopt;
}

}  // namespace torv
