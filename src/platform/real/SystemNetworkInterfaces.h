#pragma once

#include "platform/NetworkInterfaces.h"

namespace torv {

/// The interfaces by getifaddrs, the way to the internet from the kernel's routing table
/// (IPv4 alone: it stands for the address 0.0.0.0).
class SystemNetworkInterfaces final : public NetworkInterfaces {
public:
    [[nodiscard]] std::optional<std::vector<Address>> addresses() const override;
    [[nodiscard]] std::optional<std::uint32_t> reachabilityFlags() const override;
};

}  // namespace torv
