#include "connection/CaptureReader.h"

#include <algorithm>
#include <array>
#include <span>

namespace torv {
namespace {

constexpr std::uint32_t smallestBlock = 12;
constexpr std::uint32_t largestBlock = 1U << 20U;
constexpr std::size_t mostInterfaces = 64;
constexpr std::size_t packetHead = 20;
constexpr std::size_t interfaceHead = 8;

}  // namespace

struct CaptureReader::Block {
    std::uint32_t type = 0;
    std::vector<std::uint8_t> body;
};

std::uint16_t CaptureReader::read16(std::span<const std::uint8_t> bytes, std::size_t at) const {
    const unsigned first = bytes[at];
    const unsigned second = bytes[at + 1];
    return static_cast<std::uint16_t>(m_bigEndian ? first << 8U | second : second << 8U | first);
}

std::uint32_t CaptureReader::read32(std::span<const std::uint8_t> bytes, std::size_t at) const {
    const std::uint32_t first = read16(bytes, at);
    const std::uint32_t second = read16(bytes, at + 2);
    return m_bigEndian ? first << 16U | second : second << 16U | first;
}

std::optional<CaptureReader::Block> CaptureReader::nextBlock(std::string& error) {
    const auto refuse = [&](const char* why) -> std::optional<Block> {
        error = why;
        return std::nullopt;
    };
    const auto read = [&](std::span<std::uint8_t> room) {
        m_stream->read(reinterpret_cast<char*>(room.data()), static_cast<std::streamsize>(room.size()));
        return m_stream->gcount() == static_cast<std::streamsize>(room.size());
    };
    std::array<std::uint8_t, 12> head{};
    const bool whole = read(std::span{head}.first(8));
    if (m_stream->bad()) return refuse("the capture can't be read further");
    if (!whole && m_stream->gcount() == 0 && m_begun) return std::nullopt;
    if (!whole) return refuse(m_begun ? "the capture is cut" : "this is no capture");
    Block block{.type = read32(head, 0), .body = {}};
    const bool isSection = block.type == pcapng::sectionHeader;  // alike in both byte orders
    if (!m_begun && !isSection) return refuse("this is no capture");
    std::uint32_t taken = 8;
    if (isSection) {
        if (!read(std::span{head}.subspan(8))) return refuse("the capture is cut");
        taken = 12;
        m_bigEndian = false;
        if (read32(head, 8) != pcapng::byteOrderMark) m_bigEndian = true;
        if (read32(head, 8) != pcapng::byteOrderMark) return refuse("this is no capture");
        m_begun = true;
        m_interfaces.clear();
    }
    const auto length = read32(head, 4);
    if (length < std::max(smallestBlock, taken + 4) || length % 4 != 0)
        return refuse("the capture is damaged");
    if (length > largestBlock) {  // none of ours
        m_stream->ignore(length - taken);
        if (m_stream->gcount() != static_cast<std::streamsize>(length - taken))
            return refuse("the capture is cut");
        return block;
    }
    block.body.resize(length - taken);
    if (!read(block.body)) return refuse("the capture is cut");
    if (read32(block.body, block.body.size() - 4) != length) return refuse("the capture is damaged");
    block.body.resize(block.body.size() - 4);
    return block;
}

void CaptureReader::beginInterface(const Block& block) {
    Interface added;
    const std::span body{block.body};
    if (body.size() >= interfaceHead) added.isLink = read16(body, 0) == pcapng::ownLinkType;
    for (std::size_t at = interfaceHead; at + 4 <= body.size();) {
        const auto code = read16(body, at);
        const std::size_t length = read16(body, at + 2);
        if (code == pcapng::optionEnd || at + 4 + length > body.size()) break;
        if (code == pcapng::optionTimeResolution && length > 0) {
            constexpr unsigned finest = 9;
            const unsigned power = body[at + 4];  // of ten; with the highest bit of two, which nobody writes
            added.isLink = added.isLink && power <= finest;
            added.ticksPerSecond = 1;
            for (unsigned i = 0; i < std::min(power, finest); ++i)
                added.ticksPerSecond *= 10;
        }
        at += 4 + (length + 3) / 4 * 4;
    }
    m_interfaces.push_back(added);
}

std::optional<CapturedPacket> CaptureReader::packetOf(const Block& block) const {
    const std::span body{block.body};
    const auto interface = read32(body, 0);
    const std::size_t length = read32(body, 12);
    if (interface >= m_interfaces.size() || !m_interfaces[interface].isLink) return std::nullopt;
    if (length == 0) return std::nullopt;
    const auto data = body.subspan(packetHead, length);
    if (data[0] > static_cast<std::uint8_t>(CapturedKind::names)) return std::nullopt;
    const auto ticks = std::uint64_t{read32(body, 4)} << 32U | read32(body, 8);
    const auto rate = m_interfaces[interface].ticksPerSecond;
    constexpr std::uint64_t latest = 253'402'300'799'999'999;  // the end of the year 9999
    const auto seconds = std::min(ticks / rate, latest / 1'000'000);
    const auto microseconds = std::min(seconds * 1'000'000 + ticks % rate * 1'000'000 / rate, latest);
    return CapturedPacket{.kind = static_cast<CapturedKind>(data[0]),
                          .time = std::chrono::sys_time<std::chrono::microseconds>{std::chrono::microseconds{
                              static_cast<std::int64_t>(microseconds)}},
                          .bytes = {data.begin() + 1, data.end()}};
}

std::optional<CapturedPacket> CaptureReader::next(std::string& error) {
    error.clear();
    while (const auto block = nextBlock(error)) {
        if (block->type == pcapng::interfaceDescription) {
            if (m_interfaces.size() == mostInterfaces) {
                error = "the capture is damaged";
                return std::nullopt;
            }
            beginInterface(*block);
        }
        if (block->type != pcapng::enhancedPacket) continue;
        if (block->body.size() < packetHead || read32(block->body, 12) > block->body.size() - packetHead) {
            error = "the capture is damaged";
            return std::nullopt;
        }
        if (auto packet = packetOf(*block)) return packet;
    }
    return std::nullopt;
}

}  // namespace torv
