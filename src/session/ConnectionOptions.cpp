#include "session/ConnectionOptions.h"

#include <charconv>

namespace torv {
namespace {

/// Four numbers from 0 to 255 with points between.
bool isDottedAddress(std::string_view text) {
    for (int part = 0; part < 4; ++part) {
        std::uint8_t number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc{}) return false;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        if (part == 3) break;
        if (!text.starts_with('.')) return false;
        text.remove_prefix(1);
    }
    return text.empty();
}

}  // namespace

std::optional<Endpoint> endpointFromText(std::string_view text) {
    const auto colon = text.rfind(':');
    if (colon == std::string_view::npos) return std::nullopt;
    const auto port = text.substr(colon + 1);
    auto host = text.substr(0, colon);
    if (host == "localhost") host = "127.0.0.1";
    Endpoint endpoint{std::string{host}, 0};
    const auto [end, error] = std::from_chars(port.data(), port.data() + port.size(), endpoint.port);
    const bool wholePort = error == std::errc{} && end == port.data() + port.size() && endpoint.port != 0;
    if (!wholePort || !isDottedAddress(host)) return std::nullopt;
    return endpoint;
}

std::string textOfEndpoint(const Endpoint& endpoint) {
    return endpoint.host + ':' + std::to_string(endpoint.port);
}

std::string placeOfEndpoint(const Endpoint& endpoint) {
    return endpoint.host + ", port " + std::to_string(endpoint.port);
}

}  // namespace torv
