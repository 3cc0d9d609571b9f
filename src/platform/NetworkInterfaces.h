#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace torv {

/// What the handset's network looks like. Any thread.
class NetworkInterfaces {
public:
    struct Address {
        std::string interface;
        std::string ipv4;  ///< dotted
    };

    /// The way that packets to an address take.
    struct Route {
        std::string interface;
        std::string gateway;  ///< dotted; empty where the address is in the interface's own network

        friend bool operator==(const Route&, const Route&) = default;
    };

    NetworkInterfaces() = default;
    NetworkInterfaces(const NetworkInterfaces&) = delete;
    NetworkInterfaces& operator=(const NetworkInterfaces&) = delete;
    virtual ~NetworkInterfaces() = default;

    /// In the system's order; nothing when the list can't be read.
    [[nodiscard]] virtual std::optional<std::vector<Address>> addresses() const = 0;
    /// The flags of the way to the internet (0.0.0.0), as `Reachability` reads them; nothing when the
    /// system doesn't tell. Sends nothing.
    [[nodiscard]] virtual std::optional<std::uint32_t> reachabilityFlags() const = 0;
    /// Nothing when there is none, or the system doesn't tell. "0.0.0.0" asks for the default route.
    [[nodiscard]] virtual std::optional<Route> routeTo(const std::string& ipv4) const = 0;
};

}  // namespace torv
