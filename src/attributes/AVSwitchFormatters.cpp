#include <array>

#include "attributes/AVBooleanFormatter.h"
#include "attributes/AVPowerLevelFormatter.h"
#include "attributes/AVThreeCharBooleanFormatter.h"
#include "attributes/AVThreeCharTurboFormatter.h"
#include "attributes/AVTwoCharBooleanFormatter.h"
#include "attributes/AVTwoCharGearFormatter.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

using Flag = AVFormatterData::Flag;

constexpr std::uint8_t firstBit = 0x80;
constexpr std::uint8_t secondBit = 0x40;

std::uint8_t byteAt(const std::uint8_t* bytes, std::size_t place) {
    return bytes ? bytes[place] : std::uint8_t{0};
}

float twoBytesAt(const std::uint8_t* bytes, std::size_t place) {
    return static_cast<float>(byteAt(bytes, place) + 256 * byteAt(bytes, place + 1));
}

std::string wholeText(float number) {
    return fixedText(static_cast<double>(number), 0);
}

AVFormatterData record(std::int32_t flags, std::string value) {
    return {.flags = flags, .value = std::move(value), .additionalData = {}};
}

void putLow(const AVBuffer& buffer, std::size_t place, std::size_t count, std::int32_t number) {
    for (std::size_t i = 0; i < count; ++i) {
        buffer[place + i] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(number) >> (8U * i));
    }
}

/// Byte 0 as it comes, and the low bytes of the number in the text behind it.
AVBuffer stateAndNumber(AVBuffer buffer, std::uint8_t state, std::size_t numberBytes,
                        const AVFormatterData& data) {
    if (!buffer) return buffer;
    buffer[0] = state;
    putLow(buffer, 1, numberBytes, intValue(data.value));
    return buffer;
}

/// What byte 0 becomes in the caller's buffer; any other byte stays.
struct Translation {
    std::uint8_t code, bits;
};
constexpr std::array<Translation, 3> turboCodes{{{1, firstBit}, {2, secondBit}, {3, firstBit | secondBit}}};

}  // namespace

std::optional<AVFormatterData> AVBooleanFormatter::dataFromAV(std::uint8_t* bytes) {
    if (!bytes) return std::nullopt;
    return record(bytes[0] != 0 ? Flag::firstOn : Flag::firstOff, "Refer to flags.");
}

std::optional<AVFormatterData> AVPowerLevelFormatter::dataFromAV(std::uint8_t* bytes) {
    if (!bytes) return std::nullopt;
    return record((bytes[0] & 1) != 0 ? Flag::firstOn : Flag::firstOff, std::to_string(bytes[0]));
}

std::optional<AVFormatterData> AVTwoCharBooleanFormatter::dataFromAV(std::uint8_t* bytes) {
    return record(byteAt(bytes, 0) != 0 ? Flag::firstOn : Flag::firstOff, wholeText(byteAt(bytes, 1)));
}

AVBuffer AVTwoCharBooleanFormatter::allocAVFromFormatterData(const AVFormatterData& data) {
    return stateAndNumber(allocBuffer(), data.flags == Flag::firstOn ? 1 : 0, 1, data);
}

std::optional<AVFormatterData> AVTwoCharGearFormatter::dataFromAV(std::uint8_t* bytes) {
    const auto state = byteAt(bytes, 0);
    const auto flags = state == 0 ? Flag::firstOff : state == 1 ? Flag::firstOn : Flag::third;
    return record(flags, wholeText(byteAt(bytes, 1)));
}

AVBuffer AVTwoCharGearFormatter::allocAVFromFormatterData(const AVFormatterData& data) {
    const std::uint8_t state = data.flags == Flag::firstOn ? 1 : data.flags == Flag::third ? 2 : 0;
    return stateAndNumber(allocBuffer(), state, 1, data);
}

std::optional<AVFormatterData> AVThreeCharBooleanFormatter::dataFromAV(std::uint8_t* bytes) {
    return record(byteAt(bytes, 0) != 0 ? Flag::firstOn : Flag::firstOff,
                  fixedText(static_cast<double>(twoBytesAt(bytes, 1)), m_decimalDigits));
}

AVBuffer AVThreeCharBooleanFormatter::allocAVFromFormatterData(const AVFormatterData& data) {
    return stateAndNumber(allocBuffer(), data.flags == Flag::firstOn ? 1 : 0, 2, data);
}

std::optional<AVFormatterData> AVThreeCharTurboFormatter::dataFromAV(std::uint8_t* bytes) {
    for (const auto& [code, bits] : turboCodes) {
        if (bytes && bytes[0] == code) {
            bytes[0] = bits;
            break;
        }
    }
    const auto mode = byteAt(bytes, 0);
    const auto first = (mode & firstBit) != 0 ? Flag::firstOn : Flag::firstOff;
    const auto second = (mode & secondBit) != 0 ? Flag::secondOn : Flag::secondOff;
    return record(first + second, wholeText(twoBytesAt(bytes, 1)));
}

AVBuffer AVThreeCharTurboFormatter::allocAVFromFormatterData(const AVFormatterData& data) {
    const int first = (data.flags & Flag::firstOn) != 0 ? 1 : 0;
    const int second = (data.flags & Flag::secondOn) != 0 ? 2 : 0;
    return stateAndNumber(allocBuffer(), static_cast<std::uint8_t>(first + second), 2, data);
}

}  // namespace torv
