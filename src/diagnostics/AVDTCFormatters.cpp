#include <algorithm>
#include <array>

#include "diagnostics/AVDTCData224.h"
#include "diagnostics/AVDTCFormatter224.h"
#include "diagnostics/AVDTCFormatter225.h"

namespace torv {
namespace {

constexpr std::array<char, 4> letters{'P', 'C', 'B', 'U'};
constexpr int mostCodes224 = 5;
constexpr int mostCodes225 = 6;

/// Letter, one digit of two bits, three of four bits. A digit above 9 is written as two, so that 4A BC reads
/// C0101112: the keys of the database are spelt the same way.
std::string codeText(char letter, const std::uint8_t* code) {
    std::string text{letter};
    for (const int field : {code[0] >> 4 & 3, code[0] & 15, code[1] >> 4, code[1] & 15})
        text += std::to_string(field);
    return text;
}

}  // namespace

std::optional<AVFormatterData> AVDTCFormatter224::dataFromAV(std::uint8_t* bytes) {
    static constexpr std::array<std::uint8_t, 13> nothing{};
    const auto* const report = bytes ? bytes : nothing.data();
    AVDTCData224 codes;
    codes.numberOfDTCReported = std::to_string(report[2]);
    for (int i = 0; i < std::min<int>(report[2], mostCodes224); ++i) {
        const auto* const code = report + 3 + 2 * i;
        codes.DTCData.push_back(codeText(letters[code[0] >> 6], code));
    }
    AVFormatterData data;
    data.value = std::to_string(report[1]);
    data.additionalData = std::move(codes);
    return data;
}

std::optional<AVFormatterData> AVDTCFormatter225::dataFromAV(std::uint8_t* bytes) {
    std::vector<std::string> codes;
    const int count = bytes ? std::min((bytes[0] - 1) / 2, mostCodes225) : 0;
    for (int i = 0; i < count; ++i)
        codes.push_back(codeText('P', bytes + 1 + 2 * i));
    AVFormatterData data;
    data.additionalData = std::move(codes);
    return data;
}

}  // namespace torv
