#include "attributes/AVDriveTrainInfoFormatter.h"

#include "attributes/AVDriveTrainInfoData.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::uint8_t recordLength = 6;
constexpr float tenths = 10.0F;

}  // namespace

std::optional<AVFormatterData> AVDriveTrainInfoFormatter::dataFromAV(std::uint8_t* bytes) {
    AVDriveTrainInfoData codes;
    float size = 0.0F;
    if (bytes) {
        codes = {.numberOfCharacters = bytes[0],
                 .transmissionID = bytes[1],
                 .rearEndRatio = bytes[2],
                 .vehicleSelection = bytes[5]};
        size = static_cast<float>(bytes[3] + 256 * bytes[4]) / tenths;
    }
    AVFormatterData data;
    data.value = fixedText(static_cast<double>(size), 1);
    data.additionalData = codes;
    return data;
}

AVBuffer AVDriveTrainInfoFormatter::allocAVFromFormatterData(const AVFormatterData& data) {
    const auto* given = std::any_cast<AVDriveTrainInfoData>(&data.additionalData);
    const auto codes = given ? *given : AVDriveTrainInfoData{};
    const auto size = intFromFloat(static_cast<double>(floatValue(data.value) * tenths));
    auto buffer = allocBuffer();
    if (!buffer) return buffer;
    buffer[0] = recordLength;
    buffer[1] = static_cast<std::uint8_t>(codes.transmissionID);
    buffer[2] = static_cast<std::uint8_t>(codes.rearEndRatio);
    buffer[3] = static_cast<std::uint8_t>(size);
    buffer[4] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(size) >> 8U);
    buffer[5] = static_cast<std::uint8_t>(codes.vehicleSelection);
    return buffer;
}

}  // namespace torv
