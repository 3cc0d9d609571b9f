#include "connection/FrameText.h"

#include <algorithm>
#include <array>

#include "link/x2comCodec.h"
#include "support/Hexadecimal.h"
#include "support/TextNumbers.h"

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

std::string textOfNames(const AttributeNames& names) {
    std::string lines;
    for (const auto& [aid, name] : names) {
        lines += std::to_string(aid) + '\t';
        for (const char c : name)
            lines += c == '\n' || c == '\t' ? ' ' : c;
        lines += '\n';
    }
    return lines;
}

AttributeNames namesFromText(std::string_view text) {
    AttributeNames names;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto tab = line.find('\t');
        const auto aid = tab == std::string_view::npos ? -1 : intValue(std::string{line});
        if (aid >= 0 && aid <= highestAID)
            names.insert_or_assign(static_cast<std::uint8_t>(aid), std::string{line.substr(tab + 1)});
    }
    return names;
}

bool beginsWithFrame(std::span<const std::uint8_t> bytes) {
    if (bytes.empty()) return false;
    const auto length = x2comFrameLength(bytes.data());
    return length > 0 && bytes.size() > length && x2comCheckFrame(bytes.data(), length) == x2comFrameGood;
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
