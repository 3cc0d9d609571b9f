#include "platform/real/SystemNetworkInterfaces.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/route.h>
#include <netinet/in.h>

#include <array>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace torv {
namespace {

constexpr std::uint32_t reachable = 2;  // the flag of `Reachability`

}  // namespace

std::optional<std::vector<NetworkInterfaces::Address>> SystemNetworkInterfaces::addresses() const {
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) return std::nullopt;
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> list{first, &::freeifaddrs};
    std::vector<Address> found;
    for (const auto* entry = first; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET) continue;
        const auto& address = reinterpret_cast<const sockaddr_in*>(entry->ifa_addr)->sin_addr;
        std::array<char, INET_ADDRSTRLEN> text{};
        if (::inet_ntop(AF_INET, &address, text.data(), text.size()))
            found.push_back({entry->ifa_name, text.data()});
    }
    return found;
}

std::optional<std::uint32_t> SystemNetworkInterfaces::reachabilityFlags() const {
    std::ifstream routes{"/proc/net/route"};
    if (!routes) return std::nullopt;
    std::string line;
    std::getline(routes, line);  // headings
    while (std::getline(routes, line)) {
        std::istringstream fields{line};
        fields.imbue(std::locale::classic());
        std::string interface, destination, gateway, mask, skipped;
        unsigned flags = 0;
        fields >> interface >> destination >> gateway >> std::hex >> flags;
        for (int i = 0; i < 3; ++i)
            fields >> skipped;
        fields >> mask;
        const bool defaultRoute = destination == "00000000" && mask == "00000000";
        if (fields && defaultRoute && (flags & RTF_UP) != 0 && (flags & RTF_REJECT) == 0) return reachable;
    }
    return 0;
}

}  // namespace torv
