#include <array>
#include <cstdio>
#include <fstream>
#include <string>

#include "Commands.h"
#include "connection/CaptureReader.h"
#include "connection/FrameText.h"
#include "link/x2comCodec.h"
#include "platform/Platform.h"
#include "support/Hexadecimal.h"
#include "support/TimeTexts.h"
#include "support/Utf8.h"

namespace itorvctl {

using namespace torv;

namespace {

constexpr std::array<const char*, 8> resultNames{
    "0 idle", "1 complete", "2 partial", "3 good", "4 bad CRC", "5 empty", "6 response taken", "7 ack taken"};

struct Line {
    std::string time;
    const char* direction = "";  ///< "sent" or "received"
    std::span<const std::uint8_t> bytes;
    std::string result;
};

void print(const Line& line, const AttributeNames& names, bool json) {
    const auto hex = hexadecimalText(line.bytes);
    const auto frame = frameText(line.bytes, names);
    if (json) {
        printObject({{"ms", Number{line.time}},
                     {"direction", line.direction},
                     {"bytes", hex},
                     {"frame", frame},
                     {"result", line.result}});
    } else {
        std::printf("%8s  %s  %-32s  %-14s  %s\n", line.time.c_str(), *line.direction == 's' ? "->" : "<-",
                    hex.c_str(), line.result.c_str(), printable(frame).c_str());
    }
}

/// Prints on the main thread. A received frame is printed once its result is known, which is with the chunk
/// after it.
class FramePrinter final : public LinkMonitor {
public:
    FramePrinter(const Handset& handset, bool json)
        : m_handset(handset), m_names(attributeNames(handset.vehicle())), m_json(json) {}

    void frameSent(std::span<const std::uint8_t> frame, x2comTxResult result) override {
        post("sent", {frame.begin(), frame.end()}, std::to_string(result) + " sent");
    }

    void chunkReceived(std::span<const std::uint8_t> chunk, x2comResult resultOfTheOneBefore) override {
        if (!m_before.empty()) post("received", m_before, resultNames[resultOfTheOneBefore]);
        m_before.assign(chunk.begin(), chunk.end());
    }

private:
    void post(const char* direction, std::vector<std::uint8_t> bytes, std::string result) {
        Platform::current().runLoop().performOnMainThread([this, direction, time = m_handset.elapsed(),
                                                           bytes = std::move(bytes),
                                                           result = std::move(result)] {
            print({std::to_string(time), direction, bytes, result}, m_names, m_json);
            std::fflush(stdout);
        });
    }

    const Handset& m_handset;
    const AttributeNames m_names;
    const bool m_json;
    std::vector<std::uint8_t> m_before;  // reading thread
};

const char* checked(std::span<const std::uint8_t> frame) {
    if (frame.empty() || x2comFrameLength(frame.data()) == 0) return resultNames[x2comFrameEmpty];
    return resultNames[beginsWithFrame(frame) ? x2comFrameGood : x2comFrameBadCrc];
}

}  // namespace

int frames(Handset& handset, const Arguments& arguments) {
    handset.feeder().driver().addMonitor(std::make_shared<FramePrinter>(handset, arguments.json));
    if (!handset.connect()) return notConnected(handset);
    handset.run();
    return success;
}

int capturedFrames(const Arguments& arguments) {
    const auto& file = arguments.words[0];
    auto stream = std::make_unique<std::ifstream>(file, std::ios::binary);
    if (!*stream) {
        complain(file + " can't be read");
        return badArguments;
    }
    CaptureReader reader{std::move(stream)};
    AttributeNames names;
    std::optional<std::chrono::sys_time<std::chrono::microseconds>> begin;
    std::string error;
    while (const auto packet = reader.next(error)) {
        const auto since = packet->time - begin.value_or(packet->time);
        if (!begin) begin = packet->time;
        const auto time = std::to_string(std::chrono::floor<std::chrono::milliseconds>(since).count());
        std::string text{packet->bytes.begin(), packet->bytes.end()};
        if (!isUtf8(text)) text = hexadecimalText(packet->bytes);
        if (packet->kind == CapturedKind::names) {
            names = namesFromText(text);
        } else if (packet->kind == CapturedKind::note) {
            if (arguments.json) {
                printObject({{"ms", Number{time}},
                             {"time", isoText(std::chrono::floor<std::chrono::milliseconds>(packet->time))},
                             {"note", text}});
            } else {
                std::printf("%8s  --  %s\n", time.c_str(), printable(text).c_str());
            }
        } else {
            print({time, packet->kind == CapturedKind::toModule ? "sent" : "received", packet->bytes,
                   checked(packet->bytes)},
                  names, arguments.json);
        }
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        complain("the output could not be written");
        return noAnswer;
    }
    if (error.empty()) return success;
    complain(file + ": " + error);
    return begin ? noAnswer : badArguments;
}

}  // namespace itorvctl
