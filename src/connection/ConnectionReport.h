#pragma once

#include <optional>
#include <string>
#include <vector>

#include "connection/LinkStatistics.h"
#include "platform/NetworkInterfaces.h"
#include "platform/WirelessNetworks.h"
#include "session/ZephrelaneDriver.h"

namespace torv {

/// What is known of the way to the module at one moment.
struct ConnectionFacts {
    std::string decidingInterface;            ///< whose address decides between the module's two
    std::optional<std::string> ownAddress{};  ///< of that interface
    bool moduleChosen = false;                ///< by the user, whatever that address is
    Endpoint module{};
    std::optional<NetworkInterfaces::Route> route{};         ///< to the module
    std::optional<NetworkInterfaces::Route> defaultRoute{};  ///< to the internet
    std::optional<std::string> routeAddress{};               ///< of the interface that the route takes
    std::optional<WirelessNetworks::Network> wireless{};     ///< that interface is in
    ByteStream::Reach reach = ByteStream::Reach::noAnswer;
    bool connected = false;
    LinkStatistics::Figures figures{};
    RunLoop::Clock::time_point now{};
};

/// All but the wireless network, which answers later. Main thread.
[[nodiscard]] ConnectionFacts connectionFacts(const ZephrelaneDriver& driver,
                                              const LinkStatistics& statistics,
                                              const NetworkInterfaces& interfaces,
                                              RunLoop::Clock::time_point now);

/// One line of the report: what is true now, whether that is as it should be, and what to do, or what not to
/// worry about.
struct ConnectionLine {
    enum class Verdict { good, bad, open };  ///< open: the lines above must be good first
    std::string subject;
    std::string state;
    Verdict verdict = Verdict::open;
    std::string advice{};
};

/// From this device to the module, and then what arrives. The lines and their order are always the same.
[[nodiscard]] std::vector<ConnectionLine> connectionReport(const ConnectionFacts& facts);

}  // namespace torv
