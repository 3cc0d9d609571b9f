#pragma once

#include <initializer_list>

#include "ScriptedStream.h"
#include "link/x2comCodec.h"

namespace fakes {

/// A frame with its CRC, spelt out byte by byte from header and payload.
inline Bytes frame(std::initializer_list<std::uint8_t> body) {
    Bytes bytes{body};
    bytes.push_back(x2comCrc8(bytes.data(), static_cast<std::uint8_t>(bytes.size())));
    return bytes;
}

}  // namespace fakes
