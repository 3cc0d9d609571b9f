#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ByteStream.h"

namespace torv {

/// How the module is found.
struct ConnectionOptions {
    std::string interface = "en0";   ///< whose address decides between the module's two
    std::optional<Endpoint> module;  ///< in place of that choice and of the fixed port
};

/// "HOST:PORT" with a dotted address or "localhost", and a port from 1 to 65535; nothing otherwise.
[[nodiscard]] std::optional<Endpoint> endpointFromText(std::string_view text);
/// "HOST:PORT", and for people "HOST, port PORT".
[[nodiscard]] std::string textOfEndpoint(const Endpoint& endpoint);
[[nodiscard]] std::string placeOfEndpoint(const Endpoint& endpoint);

}  // namespace torv
