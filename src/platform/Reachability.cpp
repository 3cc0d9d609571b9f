#include "platform/Reachability.h"

#include <array>
#include <string>

#include "platform/Log.h"
#include "platform/Platform.h"

namespace torv {
namespace {

struct Letter {
    std::uint32_t flag;
    char letter;
    bool blankBehind;
};
constexpr std::array<Letter, 9> letters{{
    {Reachability::isMobile, 'W', false},
    {Reachability::reachable, 'R', true},
    {Reachability::transientConnection, 't', false},
    {Reachability::connectionRequired, 'c', false},
    {Reachability::connectionOnTraffic, 'C', false},
    {Reachability::interventionRequired, 'i', false},
    {Reachability::connectionOnDemand, 'D', false},
    {Reachability::isLocalAddress, 'l', false},
    {Reachability::isDirect, 'd', true},
}};

void logFlags(std::uint32_t flags, const char* comment) {
    std::string line = "Reachability Flag Status: ";
    for (const auto& [flag, letter, blankBehind] : letters) {
        line += (flags & flag) != 0 ? letter : '-';
        if (blankBehind) line += ' ';
    }
    logLine(line + comment + '\n');
}

}  // namespace

Reachability Reachability::reachabilityForInternetConnection() {
    return Reachability{Platform::current().networkInterfaces()};
}

bool Reachability::isInternetAvailable() {
    return reachabilityForInternetConnection().currentReachabilityStatus() != 0;
}

std::int32_t Reachability::currentReachabilityStatus() const {
    const auto flags = m_interfaces.reachabilityFlags();
    if (!flags) return 0;
    return m_localWiFiRef ? localWiFiStatusForFlags(*flags) : networkStatusForFlags(*flags);
}

std::int32_t Reachability::networkStatusForFlags(std::uint32_t flags) {
    logFlags(flags, "networkStatusForFlags");
    if ((flags & reachable) == 0) return 0;
    bool usable = (flags & connectionRequired) == 0;
    const bool comesUpByItself = (flags & (connectionOnTraffic | connectionOnDemand)) != 0;
    if (comesUpByItself && (flags & interventionRequired) == 0) usable = true;
    return usable || (flags & isMobile) != 0 ? 1 : 0;
}

std::int32_t Reachability::localWiFiStatusForFlags(std::uint32_t flags) {
    logFlags(flags, "localWiFiStatusForFlags");
    return (flags & reachable) != 0 && (flags & isDirect) != 0 ? 1 : 0;
}

}  // namespace torv
