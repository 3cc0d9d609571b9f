#include "FrameCodec.h"

#include <algorithm>

namespace bench {
namespace {

constexpr std::uint8_t polynomial = 0x1D;

constexpr std::array<std::uint8_t, 256> makeTable() {
    std::array<std::uint8_t, 256> table{};
    for (unsigned index = 0; index < table.size(); ++index) {
        unsigned entry = index;
        for (int bit = 0; bit < 8; ++bit) {
            entry = (entry & 0x80U) != 0 ? (entry << 1U) ^ polynomial : entry << 1U;
        }
        table[index] = static_cast<std::uint8_t>(entry & 0xFFU);
    }
    return table;
}

constexpr auto table = makeTable();

struct WidthRow {
    std::uint8_t lastAid;
    std::size_t width;
};
constexpr std::array<WidthRow, 4> widths{{{74, 1}, {149, 2}, {184, 3}, {219, 4}}};

}  // namespace

std::uint8_t crc8(ByteView bytes) {
    std::uint8_t crc = 0xFF;
    for (const std::uint8_t byte : bytes)
        crc = table[static_cast<std::uint8_t>(crc ^ byte)];
    return static_cast<std::uint8_t>(crc ^ 0xFFU);
}

Bytes encode(const Frame& frame) {
    const std::size_t size = std::min(frame.payload.size(), maxPayload);
    Bytes wire{static_cast<std::uint8_t>((std::size_t{frame.type} << 4U) | (size + 1))};
    wire.insert(wire.end(), frame.payload.begin(), frame.payload.begin() + static_cast<std::ptrdiff_t>(size));
    wire.push_back(crc8(wire));
    return wire;
}

std::optional<Frame> decode(ByteView bytes) {
    if (bytes.empty()) return std::nullopt;
    const std::size_t covered = bytes[0] & 0x0FU;
    if (covered == 0 || bytes.size() <= covered) return std::nullopt;
    if (crc8(bytes.first(covered)) != bytes[covered]) return std::nullopt;
    const ByteView payload = bytes.subspan(1, covered - 1);
    return Frame{static_cast<std::uint8_t>(bytes[0] >> 4U), Bytes(payload.begin(), payload.end())};
}

std::size_t valueWidth(std::uint8_t aid) {
    for (const WidthRow& row : widths) {
        if (aid <= row.lastAid) return row.width;
    }
    return 0;
}

std::vector<Item> parseItems(ByteView payload) {
    std::vector<Item> items;
    while (payload.size() >= 2) {
        const std::uint8_t aid = payload[0];
        const std::size_t width = aid < firstLongAid ? valueWidth(aid) : payload[1];
        if (width == 0 || payload.size() < 1 + width) break;
        const ByteView value = payload.subspan(1, width);
        items.push_back({aid, Bytes(value.begin(), value.end())});
        payload = payload.subspan(1 + width);
    }
    return items;
}

void appendItem(Bytes& payload, const Item& item) {
    payload.push_back(item.aid);
    payload.insert(payload.end(), item.value.begin(), item.value.end());
}

std::vector<Frame> FrameStream::feed(ByteView bytes) {
    m_pending.insert(m_pending.end(), bytes.begin(), bytes.end());
    std::vector<Frame> frames;
    std::size_t at = 0;
    while (at < m_pending.size()) {
        const std::size_t covered = m_pending[at] & 0x0FU;
        const ByteView rest = ByteView(m_pending).subspan(at);
        if (covered != 0 && rest.size() <= covered) break;
        std::optional<Frame> frame = decode(rest);
        if (!frame) {
            ++m_badFrames;
            at = m_pending.size();
            break;
        }
        frames.push_back(std::move(*frame));
        at += covered + 1;
    }
    m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<std::ptrdiff_t>(at));
    return frames;
}

}  // namespace bench
