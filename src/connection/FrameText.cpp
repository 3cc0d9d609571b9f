#include "connection/FrameText.h"

#include <algorithm>
#include <array>

#include "link/x2comCodec.h"
#include "support/Hexadecimal.h"

namespace torv {
namespace {

constexpr AID highestAID = 254;
constexpr std::array<const char*, 6> typeNames{"write", "push A", "ack", "push B", "request", "response"};

std::string itemsText(std::span<const std::uint8_t> payload, bool isList, const AttributeNames& names) {
    std::string text;
    for (std::size_t i = 0; i < payload.size();) {
        const auto aid = payload[i++];
        text += (text.empty() ? "" : ", ") + std::to_string(aid);
        if (!isList) {
            const auto first = i < payload.size() ? payload[i] : std::uint8_t{0};
            const auto length = std::min<std::size_t>(x2comValueLength(aid, first), payload.size() - i);
            text += '=' + hexadecimalText(payload.subspan(i, length));
            i += length;
        }
        if (const auto name = names.find(aid); name != names.end()) text += ' ' + name->second;
    }
    return text;
}

}  // namespace

AttributeNames attributeNames(const Vehicle& vehicle) {
    AttributeNames names;
    for (const auto& attribute : vehicle.attributes()) {
        if (attribute.aid < 0 || attribute.aid > highestAID || !attribute.name) continue;
        names.emplace(static_cast<std::uint8_t>(attribute.aid), *attribute.name);
    }
    return names;
}

std::string frameTypeText(std::uint8_t type) {
    return type < typeNames.size() ? typeNames[type] : "type " + std::to_string(type);
}

std::string frameText(std::span<const std::uint8_t> frame, const AttributeNames& names) {
    if (frame.empty()) return {};
    const auto type = x2comFrameType(frame.data());
    const std::size_t length = x2comFrameLength(frame.data());
    auto text = frameTypeText(type);
    if (length == 0 || length > frame.size()) return text;
    const bool isList = type == x2comFrameAck || type == x2comFrameRequest;
    const auto items = itemsText(frame.subspan(1, length - 1), isList, names);
    return items.empty() ? text : text + "  " + items;
}

}  // namespace torv
