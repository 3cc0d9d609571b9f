#include "attributes/AVFormatterFactory.h"

#include <array>

#include "attributes/AVBooleanFormatter.h"
#include "attributes/AVDriveTrainInfoFormatter.h"
#include "attributes/AVGearFormatter.h"
#include "attributes/AVNumberFormatter.h"
#include "attributes/AVPowerLevelFormatter.h"
#include "attributes/AVThreeCharBooleanFormatter.h"
#include "attributes/AVThreeCharTurboFormatter.h"
#include "attributes/AVTimeFormatter.h"
#include "attributes/AVTwoCharBooleanFormatter.h"
#include "attributes/AVTwoCharGearFormatter.h"
#include "attributes/AVVehicleSpeedFormatter.h"

namespace torv {
namespace {

using Maker = std::shared_ptr<AVFormatter> (*)(const AVFormatterParameter&);

template <class Formatter>
std::shared_ptr<AVFormatter> plain(const AVFormatterParameter&) {
    return std::make_shared<Formatter>();
}

template <class Formatter>
std::shared_ptr<AVFormatter> number(const AVFormatterParameter& p) {
    return std::make_shared<Formatter>(static_cast<float>(p.offset), p.multiplyFactor, p.decimalDigits);
}

std::shared_ptr<AVFormatter> digitsOnly(const AVFormatterParameter& p) {
    return std::make_shared<AVThreeCharBooleanFormatter>(p.decimalDigits);
}

std::shared_ptr<AVFormatter> time(const AVFormatterParameter&) {
    return std::make_shared<AVTimeFormatter>(0, 0, 0);
}

constexpr std::array<Maker, 11> makers{{
    /* 0 */ number<AVNumberFormatter>,
    /* 1 */ plain<AVBooleanFormatter>,
    /* 2 */ plain<AVGearFormatter>,
    /* 3 */ plain<AVPowerLevelFormatter>,
    /* 4 */ plain<AVTwoCharBooleanFormatter>,
    /* 5 */ plain<AVTwoCharGearFormatter>,
    /* 6 */ digitsOnly,
    /* 7 */ plain<AVThreeCharTurboFormatter>,
    /* 8 */ plain<AVDriveTrainInfoFormatter>,
    /* 9 */ number<AVVehicleSpeedFormatter>,
    /* 10 */ time,
}};

}  // namespace

std::shared_ptr<AVFormatter> AVFormatterFactory::formatterWithParameter(
    const AVFormatterParameter& parameter) {
    const auto row = static_cast<std::uint32_t>(parameter.type);
    return row < makers.size() ? makers[row](parameter) : nullptr;
}

}  // namespace torv
