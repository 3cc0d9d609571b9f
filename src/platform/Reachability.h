#pragma once

#include <cstdint>

#include "platform/NetworkInterfaces.h"

namespace torv {

/// Whether the internet can be tried: a route exists, and no more. It does not mean that a server answers.
/// Any thread.
class Reachability final {
public:
    /// Bit values in the platform's flags.
    enum Flag : std::uint32_t {
        transientConnection = 1,
        reachable = 2,
        connectionRequired = 4,
        connectionOnTraffic = 8,
        interventionRequired = 16,
        connectionOnDemand = 32,
        isLocalAddress = 0x10000,
        isDirect = 0x20000,
        isMobile = 0x40000,
    };

    explicit Reachability(const NetworkInterfaces& interfaces, bool localWiFi = false)
        : m_interfaces(interfaces), m_localWiFiRef(localWiFi) {}

    [[nodiscard]] static Reachability reachabilityForInternetConnection();
    [[nodiscard]] static bool isInternetAvailable();

    /// 1 when it can be tried, else 0.
    [[nodiscard]] std::int32_t currentReachabilityStatus() const;
    [[nodiscard]] static std::int32_t networkStatusForFlags(std::uint32_t flags);
    [[nodiscard]] static std::int32_t localWiFiStatusForFlags(std::uint32_t flags);

private:
    const NetworkInterfaces& m_interfaces;
    bool m_localWiFiRef;
};

}  // namespace torv
