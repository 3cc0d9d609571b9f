#include "attributes/AVTimeFormatter.h"

#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr int highByteOfHours = 255;

}  // namespace

std::optional<AVFormatterData> AVTimeFormatter::dataFromAV(std::uint8_t* bytes) {
    if (!bytes) return std::nullopt;
    m_hrs = bytes[0] + highByteOfHours * bytes[1];
    m_mins = bytes[2];
    m_secs = bytes[3];
    AVFormatterData data;
    data.value =
        paddedText(m_hrs, 4, ' ') + ':' + paddedText(m_mins, 2, '0') + ':' + paddedText(m_secs, 2, '0');
    return data;
}

AVBuffer AVTimeFormatter::allocAVFromFormatterData(const AVFormatterData&) {
    auto buffer = allocBuffer();
    if (!buffer) return buffer;
    const auto hours = static_cast<std::uint64_t>(m_hrs.load());
    buffer[0] = static_cast<std::uint8_t>(hours);
    buffer[1] = static_cast<std::uint8_t>(hours >> 8U);
    buffer[2] = static_cast<std::uint8_t>(m_mins.load());
    buffer[3] = static_cast<std::uint8_t>(m_secs.load());
    return buffer;
}

}  // namespace torv
