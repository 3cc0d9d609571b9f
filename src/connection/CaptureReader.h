#pragma once

#include <istream>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "connection/Capture.h"

namespace torv {

/// Reads a capture packet by packet, in either byte order and with whatever another program has added to it.
/// Nothing in it is trusted; memory does not grow with the file. One thread at a time.
class CaptureReader final {
public:
    explicit CaptureReader(std::unique_ptr<std::istream> stream) : m_stream(std::move(stream)) {}

    /// Nothing at the end; then `error` is empty, or a sentence that says why it can't be read further.
    [[nodiscard]] std::optional<CapturedPacket> next(std::string& error);

private:
    struct Block;
    [[nodiscard]] std::optional<Block> nextBlock(std::string& error);
    [[nodiscard]] std::uint16_t read16(std::span<const std::uint8_t> bytes, std::size_t at) const;
    [[nodiscard]] std::uint32_t read32(std::span<const std::uint8_t> bytes, std::size_t at) const;
    void beginInterface(const Block& block);
    [[nodiscard]] std::optional<CapturedPacket> packetOf(const Block& block) const;

    struct Interface {
        bool isLink = false;
        std::uint64_t ticksPerSecond = 1'000'000;
    };

    const std::unique_ptr<std::istream> m_stream;
    bool m_begun = false;
    bool m_bigEndian = false;
    std::vector<Interface> m_interfaces;  // of the section
};

}  // namespace torv
