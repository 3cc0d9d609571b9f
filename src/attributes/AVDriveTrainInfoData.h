#pragma once

#include <cstdint>

namespace torv {

/// The codes of a drive train record; the tire size is the record's `value`.
struct AVDriveTrainInfoData {
    std::int64_t numberOfCharacters = 0;  ///< length byte of the record
    std::int64_t transmissionID = 0;      ///< a value of the setting's `optionValues`
    std::int64_t rearEndRatio = 0;        ///< a value of the setting's `optionValues1`
    std::int64_t vehicleSelection = 0;    ///< kept and written back as it was read
};

}  // namespace torv
