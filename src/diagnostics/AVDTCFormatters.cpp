#include <algorithm>
#include <array>
#include <string_view>

#include "diagnostics/AVDTCData224.h"
#include "diagnostics/AVDTCFormatter224.h"
#include "diagnostics/AVDTCFormatter225.h"

namespace torv {
namespace {

constexpr std::size_t mostCodes224 = 5;
constexpr std::size_t mostCodes225 = 6;

/// Letter, one digit of two bits, three of four bits. A digit above 9 is written as two, so that 4A BC reads
/// C0101112: the keys of the database are spelt the same way.
std::string codeText(std::string_view letters, std::uint8_t a, std::uint8_t b) {
    std::string text{letters[a >> 6U]};
    for (const int field : {a >> 4 & 3, a & 15, b >> 4, b & 15})
        text += std::to_string(field);
    return text;
}

/// As many codes of two bytes, one behind the other. `letters` is by the two highest bits.
std::vector<std::string> codeTexts(std::string_view letters, const std::uint8_t* bytes, std::size_t count) {
    std::vector<std::string> texts;
    texts.reserve(count);
    for (; texts.size() < count; bytes += 2)
        texts.push_back(codeText(letters, bytes[0], bytes[1]));
    return texts;
}

}  // namespace

std::optional<AVFormatterData> AVDTCFormatter224::dataFromAV(std::uint8_t* bytes) {
    static constexpr std::array<std::uint8_t, 13> nothing{};
    const auto* const report = bytes ? bytes : nothing.data();
    AVDTCData224 codes;
    codes.numberOfDTCReported = std::to_string(report[2]);
    codes.DTCData = codeTexts("PCBU", report + 3, std::min<std::size_t>(report[2], mostCodes224));
    AVFormatterData data;
    data.value = std::to_string(report[1]);
    data.additionalData = std::move(codes);
    return data;
}

std::optional<AVFormatterData> AVDTCFormatter225::dataFromAV(std::uint8_t* bytes) {
    const std::size_t length = bytes ? bytes[0] : 0;
    const auto count = length < 3 ? 0 : std::min((length - 1) / 2, mostCodes225);
    AVFormatterData data;
    data.additionalData = count == 0 ? std::vector<std::string>{} : codeTexts("PPPP", bytes + 1, count);
    return data;
}

}  // namespace torv
