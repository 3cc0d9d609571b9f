// The AIDs by which the module clears and reports its trouble codes.
#pragma once

#include <array>
#include <cstdint>

#include "support/AV.h"

namespace torv {

inline constexpr AID clearCodesAID = 25;          ///< written with `doItByte`
inline constexpr AID clearResultAID = 26;         ///< first byte 1: cleared
inline constexpr AID reportCodesAID = 27;         ///< written with `doItByte`
inline constexpr AID engineSpeedAID = 78;         ///< above 0 while the engine turns
inline constexpr AID firstCodesReportAID = 224;   ///< codes 1 to 5, and how many there are
inline constexpr AID secondCodesReportAID = 225;  ///< codes 6 to 11
inline constexpr std::array<std::uint8_t, 1> doItByte{0x55};

}  // namespace torv
