#include "connection/CaptureWriter.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/Platform.h"
#include "session/ConnectionOptions.h"

namespace torv {
namespace {

/// A block of pcapng, little-endian.
class Block final {
public:
    explicit Block(std::uint32_t type) {
        add32(type);
        add32(0);  // its length
    }

    void add16(std::uint16_t number) {
        m_bytes.push_back(static_cast<std::uint8_t>(number));
        m_bytes.push_back(static_cast<std::uint8_t>(number >> 8U));
    }
    void add32(std::uint32_t number) {
        add16(static_cast<std::uint16_t>(number));
        add16(static_cast<std::uint16_t>(number >> 16U));
    }
    void add(std::span<const std::uint8_t> bytes) {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        while (m_bytes.size() % 4 != 0)
            m_bytes.push_back(0);
    }
    void addOption(std::uint16_t code, std::span<const std::uint8_t> value) {
        add16(code);
        add16(static_cast<std::uint16_t>(value.size()));
        add(value);
    }
    void addOption(std::uint16_t code, std::string_view text) {
        addOption(code, std::span{reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }
    [[nodiscard]] std::vector<std::uint8_t> whole() {
        add32(0);  // no further option
        const auto length = static_cast<std::uint32_t>(m_bytes.size() + 4);
        add32(length);
        std::copy(m_bytes.end() - 4, m_bytes.end(), m_bytes.begin() + 4);
        return std::move(m_bytes);
    }

private:
    std::vector<std::uint8_t> m_bytes;
};

std::vector<std::uint8_t> head() {
    Block section{pcapng::sectionHeader};
    section.add32(pcapng::byteOrderMark);
    section.add16(1);  // version 1.0
    section.add16(0);
    section.add32(0xFFFFFFFF);  // a section of unknown length
    section.add32(0xFFFFFFFF);
    section.addOption(pcapng::optionApplication, "iTorv");
    Block link{pcapng::interfaceDescription};
    link.add16(pcapng::ownLinkType);
    link.add16(0);
    link.add32(0);  // packets are never cut
    link.addOption(pcapng::optionInterfaceName, "x2com");
    auto bytes = section.whole();
    const auto more = link.whole();
    bytes.insert(bytes.end(), more.begin(), more.end());
    return bytes;
}

std::string whyNot(const std::filesystem::path& file) {
    if (errno == 0) return file.string() + ": no room is left";
    return file.string() + ": " + std::error_code{errno, std::generic_category()}.message();
}

std::vector<std::uint8_t> packetOf(CapturedKind kind, std::span<const std::uint8_t> bytes,
                                   std::uint64_t time) {
    std::vector<std::uint8_t> data{static_cast<std::uint8_t>(kind)};
    data.insert(data.end(), bytes.begin(), bytes.end());
    Block packet{pcapng::enhancedPacket};
    packet.add32(0);  // the one interface
    packet.add32(static_cast<std::uint32_t>(time >> 32U));
    packet.add32(static_cast<std::uint32_t>(time));
    packet.add32(static_cast<std::uint32_t>(data.size()));
    packet.add32(static_cast<std::uint32_t>(data.size()));
    packet.add(data);
    if (kind == CapturedKind::fromModule || kind == CapturedKind::toModule) {
        const std::array<std::uint8_t, 4> flags{
            static_cast<std::uint8_t>(kind == CapturedKind::toModule ? 2 : 1)};
        packet.addOption(pcapng::optionPacketFlags, flags);
    }
    return packet.whole();
}

}  // namespace

std::shared_ptr<CaptureWriter> CaptureWriter::begin(const std::filesystem::path& file, Failed failed,
                                                    std::string& error) {
    const int opened = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (opened < 0) {
        error = whyNot(file);
        return nullptr;
    }
    const auto bytes = head();
    errno = 0;
    if (::write(opened, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
        error = whyNot(file);
        ::close(opened);
        ::unlink(file.c_str());
        return nullptr;
    }
    return std::shared_ptr<CaptureWriter>(new CaptureWriter{opened, file, std::move(failed)});
}

CaptureWriter::CaptureWriter(int file, std::filesystem::path name, Failed failed)
    : m_name(std::move(name)), m_failed(std::move(failed)), m_file(file) {}

CaptureWriter::~CaptureWriter() {
    if (m_file >= 0) ::close(m_file);
}

void CaptureWriter::setNames(const AttributeNames& names) {
    const auto lines = textOfNames(names);
    write(CapturedKind::names, {reinterpret_cast<const std::uint8_t*>(lines.data()), lines.size()});
}

void CaptureWriter::attempted(const Endpoint& endpoint) {
    note("connecting to " + textOfEndpoint(endpoint));
}

void CaptureWriter::sessionCameUp() {
    note("session up");
}

void CaptureWriter::connectionEnded(const Endpoint& endpoint, ByteStream::Reach, bool hadSession) {
    note((hadSession ? "session over with " : "no session with ") + textOfEndpoint(endpoint));
}

void CaptureWriter::frameSent(std::span<const std::uint8_t> frame, x2comTxResult) {
    write(CapturedKind::toModule, frame);
}

void CaptureWriter::chunkReceived(std::span<const std::uint8_t> chunk, x2comResult) {
    write(CapturedKind::fromModule, chunk);
}

void CaptureWriter::note(std::string_view text) {
    write(CapturedKind::note, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void CaptureWriter::write(CapturedKind kind, std::span<const std::uint8_t> bytes) {
    std::string why;
    {
        const std::scoped_lock lock{m_mutex};
        if (m_file < 0) return;
        const auto block = packetOf(kind, bytes, now());
        errno = 0;  // a write that the disk has room for half of sets none
        const auto begin = ::lseek(m_file, 0, SEEK_CUR);
        if (::write(m_file, block.data(), block.size()) == static_cast<ssize_t>(block.size())) return;
        why = whyNot(m_name);
        // A block that is cut would make readers doubt the rest.
        static_cast<void>(begin >= 0 && ::ftruncate(m_file, begin) == 0);
        ::close(std::exchange(m_file, -1));
    }
    Platform::current().runLoop().performOnMainThread(
        [failed = m_failed, why] { failed("The capture has ended: " + why + "."); });
}

std::uint64_t CaptureWriter::now() const {
    // By the steady clock from the start on: packets stay in order when somebody sets the time.
    const auto wall = m_wallStart + std::chrono::duration_cast<std::chrono::system_clock::duration>(
                                        std::chrono::steady_clock::now() - m_start);
    return static_cast<std::uint64_t>(
        std::chrono::floor<std::chrono::microseconds>(wall).time_since_epoch().count());
}

}  // namespace torv
