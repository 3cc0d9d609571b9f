#pragma once

#include "platform/NetworkInterfaces.h"

namespace torv {

/// The interfaces by getifaddrs, the way to the internet by the default route in /proc/net/route. IPv4 only.
class SystemNetworkInterfaces final : public NetworkInterfaces {
public:
    [[nodiscard]] std::optional<std::vector<Address>> addresses() const override;
    [[nodiscard]] std::optional<std::uint32_t> reachabilityFlags() const override;
    [[nodiscard]] std::optional<Route> routeTo(const std::string& ipv4) const override;
};

}  // namespace torv
