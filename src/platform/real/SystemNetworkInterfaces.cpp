#include "platform/real/SystemNetworkInterfaces.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/route.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace torv {
namespace {

constexpr std::uint32_t reachable = 2;  // the flag of `Reachability`

/// A route that is up. Addresses in network order.
struct Row {
    std::string interface;
    in_addr_t destination = 0;
    in_addr_t gateway = 0;
    in_addr_t mask = 0;
    unsigned metric = 0;
};

std::optional<std::vector<Row>> routes() {
    std::ifstream file{"/proc/net/route"};
    if (!file) return std::nullopt;
    std::vector<Row> rows;
    std::string line;
    std::getline(file, line);  // headings
    while (std::getline(file, line)) {
        std::istringstream fields{line};
        fields.imbue(std::locale::classic());
        Row row;
        std::string skipped;
        unsigned flags = 0;
        fields >> row.interface >> std::hex >> row.destination >> row.gateway >> flags >> skipped >>
            skipped >> std::dec >> row.metric >> std::hex >> row.mask;
        if (fields && (flags & RTF_UP) != 0 && (flags & RTF_REJECT) == 0) rows.push_back(std::move(row));
    }
    return rows;
}

std::string dotted(in_addr_t address) {
    std::array<char, INET_ADDRSTRLEN> text{};
    const in_addr bytes{address};
    return ::inet_ntop(AF_INET, &bytes, text.data(), text.size()) ? text.data() : std::string{};
}

}  // namespace

std::optional<std::vector<NetworkInterfaces::Address>> SystemNetworkInterfaces::addresses() const {
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) return std::nullopt;
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> list{first, &::freeifaddrs};
    std::vector<Address> found;
    for (const auto* entry = first; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_INET) continue;
        const auto& address = reinterpret_cast<const sockaddr_in*>(entry->ifa_addr)->sin_addr;
        found.push_back({entry->ifa_name, dotted(address.s_addr)});
    }
    return found;
}

std::optional<std::uint32_t> SystemNetworkInterfaces::reachabilityFlags() const {
    const auto table = routes();
    if (!table) return std::nullopt;
    const bool any = std::ranges::any_of(*table, [](const Row& row) { return row.mask == 0; });
    return any ? reachable : 0;
}

std::optional<NetworkInterfaces::Route> SystemNetworkInterfaces::routeTo(const std::string& ipv4) const {
    in_addr wanted{};
    if (::inet_pton(AF_INET, ipv4.c_str(), &wanted) != 1) return std::nullopt;
    if ((ntohl(wanted.s_addr) >> 24U) == IN_LOOPBACKNET) return Route{.interface = "lo", .gateway = {}};
    const auto table = routes();
    if (!table) return std::nullopt;
    const Row* best = nullptr;
    for (const auto& row : *table) {
        if ((wanted.s_addr & row.mask) != row.destination) continue;
        const bool narrower = !best || ntohl(row.mask) > ntohl(best->mask);
        if (narrower || (row.mask == best->mask && row.metric < best->metric)) best = &row;
    }
    if (!best) return std::nullopt;
    return Route{.interface = best->interface,
                 .gateway = best->gateway ? dotted(best->gateway) : std::string{}};
}

}  // namespace torv
