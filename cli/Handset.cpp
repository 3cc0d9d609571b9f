#include "Handset.h"

#include <algorithm>
#include <utility>

#include "Commands.h"
#include "JSON/SBJsonWriter.h"
#include "attributes/AVGearFormatter.h"
#include "connection/CaptureWriter.h"
#include "platform/Platform.h"
#include "support/Hexadecimal.h"
#include "support/TextNumbers.h"

namespace itorvctl {

using namespace torv;

namespace {

/// One is not enough: the module may still count a handset that has just gone.
constexpr int mostCloses = 2;

}  // namespace

Handset::Handset(const Arguments& arguments, Vehicle vehicle)
    : m_arguments(arguments),
      m_vehicle(std::move(vehicle)),
      m_start(Platform::current().runLoop().now()),
      m_feeder(std::make_shared<iTorvFeeder>(arguments.common.connection)) {}

bool Handset::capture(const std::filesystem::path& file, std::string& error) {
    const auto writer = CaptureWriter::begin(file, &complain, error);
    if (!writer) return false;
    writer->setNames(attributeNames(m_vehicle));
    m_feeder->driver().addMonitor(writer);
    return true;
}

bool Handset::connect() {
    auto& loop = Platform::current().runLoop();
    bool timeIsOver = false;
    m_feeder->setFeeding(true);
    m_feeder->start();
    const auto timer =
        loop.scheduleTimer(m_arguments.timeout, false, [&timeIsOver](Timer&) { timeIsOver = true; });
    const auto& driver = m_feeder->driver();
    int closes = 0;
    std::shared_ptr<ByteStream> closed;
    while (!driver.connected() && !timeIsOver && closes < mostCloses && loop.runOnce()) {
        const auto stream = driver.readStream();
        const bool isClosed = stream && stream->reach() == ByteStream::Reach::closed;
        if (isClosed && std::exchange(closed, stream) != stream) ++closes;
    }
    timer->invalidate();
    return driver.connected();
}

std::string Handset::whyNotConnected() const {
    const auto& driver = m_feeder->driver();
    const auto place = textOfEndpoint(driver.endpoint());
    switch (driver.reach()) {
        case ByteStream::Reach::unreachable:
            return "there is no way to " + place + "; is the handset on the module's network?";
        case ByteStream::Reach::refused:
            return place + " refuses the connection; is it the module, and is it ready?";
        case ByteStream::Reach::open:
            return "the module at " + place + " answers, and sends no values";
        case ByteStream::Reach::closed:
            return "the module at " + place +
                   " answers and closes the connection; another handset may have it";
        case ByteStream::Reach::noAnswer:
            break;
    }
    return "no module answers at " + place + "; is the handset on the module's network?";
}

void Handset::run() {
    auto& loop = Platform::current().runLoop();
    if (m_arguments.duration)
        loop.scheduleTimer(*m_arguments.duration, false, [&loop](Timer&) { loop.quit(); });
    while (loop.runOnce()) {
    }
}

void Handset::interrupt() {
    m_interrupted = true;
    if (!m_held) Platform::current().runLoop().quit();
}

void Handset::holdInterrupt(bool hold) {
    m_held = hold;
    if (!hold && m_interrupted) Platform::current().runLoop().quit();
}

void Handset::limitTime() {
    auto& loop = Platform::current().runLoop();
    loop.scheduleTimer(m_arguments.timeout, false, [&loop](Timer&) { loop.quit(); });
}

std::int64_t Handset::elapsed() const {
    const auto time = Platform::current().runLoop().now() - m_start;
    return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

std::optional<TorvAttribute> Handset::attribute(AID aid) const {
    const auto all = m_vehicle.attributes();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const TorvAttribute& a) { return a.aid == aid; });
    if (found == all.end()) return std::nullopt;
    return *found;
}

Reading readingOf(const TorvAttribute& attribute, AV value, std::int64_t milliseconds) {
    Reading reading;
    reading.aid = attribute.aid;
    reading.name = attribute.name.value_or(std::string{});
    reading.raw = hexadecimalText(value.bytes());  // before the decoding, which may write into the bytes
    reading.unit = unitText(attribute.unit);
    reading.milliseconds = milliseconds;
    const auto data = attribute.dataFromAV(value);
    if (!data) return reading;
    reading.value = data->value;
    reading.flags = data->flags;
    reading.warning = attribute.isInWarning(static_cast<double>(floatValue(data->value)));
    reading.isCharacter = std::dynamic_pointer_cast<AVGearFormatter>(attribute.formatter) != nullptr;
    return reading;
}

std::string shownValue(const Reading& reading) {
    const auto code = intValue(reading.value);
    const bool character = reading.isCharacter && code > ' ' && code < 127;
    return printable(character ? std::string(1, static_cast<char>(code)) : reading.value);
}

std::string printable(std::string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
        // Those of Latin-1 are two bytes, C2 80 to C2 9F.
        const bool wide = byte(i) == 0xC2 && i + 1 < text.size() && byte(i + 1) < 0xA0;
        if (wide) text[i + 1] = ' ';
        if (wide || byte(i) < ' ' || byte(i) == 0x7F) text[i] = ' ';
    }
    return text;
}

std::string jsonLine(const Reading& reading) {
    const Dictionary line{{"aid", Number::fromInteger(reading.aid)},
                          {"name", reading.name},
                          {"raw", reading.raw},
                          {"value", reading.value},
                          {"unit", reading.unit},
                          {"warning", reading.warning},
                          {"ms", Number::fromInteger(reading.milliseconds)}};
    return SBJsonWriter{}.stringWithObject(line).value_or("{}");
}

std::string plainText(const Reading& reading) {
    return printable(reading.name) + ": " + shownValue(reading) +
           (reading.unit.empty() ? "" : " " + printable(reading.unit)) + (reading.warning ? "  WARNING" : "");
}

}  // namespace itorvctl
