#include <array>
#include <cstdio>
#include <string>

#include "Commands.h"
#include "link/x2comCodec.h"
#include "platform/Platform.h"
#include "support/Hexadecimal.h"

namespace itorvctl {

using namespace torv;

namespace {

constexpr std::array<const char*, 6> typeNames{"write", "push A", "ack", "push B", "request", "response"};
constexpr std::array<const char*, 8> resultNames{
    "0 idle", "1 complete", "2 partial", "3 good", "4 bad CRC", "5 empty", "6 response taken", "7 ack taken"};

std::string itemsText(std::span<const std::uint8_t> payload, bool isList) {
    std::string text;
    for (std::size_t i = 0; i < payload.size();) {
        const auto aid = payload[i++];
        text += (text.empty() ? "" : ", ") + std::to_string(aid);
        if (isList) continue;
        const auto first = i < payload.size() ? payload[i] : std::uint8_t{0};
        const auto length = std::min<std::size_t>(x2comValueLength(aid, first), payload.size() - i);
        text += "=" + hexadecimalText(payload.subspan(i, length));
        i += length;
    }
    return text;
}

/// Type and contents, taken from the bytes themselves; the result code tells what the engine made of them.
std::string frameText(std::span<const std::uint8_t> frame) {
    const auto type = x2comFrameType(frame.data());
    const std::size_t length = x2comFrameLength(frame.data());
    std::string text = type < typeNames.size() ? typeNames[type] : "type " + std::to_string(type);
    if (length == 0 || length > frame.size()) return text;
    const bool isList = type == x2comFrameAck || type == x2comFrameRequest;
    const auto items = itemsText(frame.subspan(1, length - 1), isList);
    return items.empty() ? text : text + "  " + items;
}

/// Prints on the main thread. A received frame is printed once its result is known, which is with the chunk
/// after it.
class FramePrinter final : public ZephrelaneDriver::Monitor {
public:
    FramePrinter(const Handset& handset, bool json) : m_handset(handset), m_json(json) {}

    void frameSent(std::span<const std::uint8_t> frame, x2comTxResult result) override {
        print("sent", frame, (std::to_string(result) + " sent").c_str());
    }

    void chunkReceived(std::span<const std::uint8_t> chunk, x2comResult resultOfTheOneBefore) override {
        if (!m_before.empty()) print("received", m_before, resultNames[resultOfTheOneBefore]);
        m_before.assign(chunk.begin(), chunk.end());
    }

private:
    void print(const char* direction, std::span<const std::uint8_t> frame, const char* result) {
        const Dictionary fields{{"ms", Number::fromInteger(m_handset.elapsed())},
                                {"direction", direction},
                                {"bytes", hexadecimalText(frame)},
                                {"frame", frameText(frame)},
                                {"result", result}};
        Platform::current().runLoop().performOnMainThread([fields, json = m_json] {
            const auto field = [&](const char* key) {
                return fields[key].textValue().value_or(std::string{});
            };
            if (json) {
                printObject(fields);
            } else {
                std::printf("%8s  %s  %-32s  %-14s  %s\n", field("ms").c_str(),
                            field("direction") == "sent" ? "->" : "<-", field("bytes").c_str(),
                            field("result").c_str(), field("frame").c_str());
            }
            std::fflush(stdout);
        });
    }

    const Handset& m_handset;
    const bool m_json;
    std::vector<std::uint8_t> m_before;  // reading thread
};

}  // namespace

int frames(Handset& handset, const Arguments& arguments) {
    handset.feeder().driver().setMonitor(std::make_shared<FramePrinter>(handset, arguments.json));
    if (!handset.connect()) return notConnected(handset);
    handset.run();
    return success;
}

}  // namespace itorvctl
