#include "connection/ConnectionReport.h"

#include <algorithm>
#include <cmath>

#include "session/ConnectionOptions.h"

namespace torv {
namespace {

using Verdict = ConnectionLine::Verdict;
using Reach = ByteStream::Reach;

constexpr std::chrono::seconds silence{3};      // after which a value is old
constexpr double mostDamaged = 0.01;            // of all frames
constexpr double mostUnanswered = 0.1;          // of all exchanges
constexpr std::chrono::milliseconds late{100};  // for an answer

std::optional<std::string> addressOf(const std::vector<NetworkInterfaces::Address>& all,
                                     const std::string& interface) {
    const auto found = std::ranges::find(all, interface, &NetworkInterfaces::Address::interface);
    return found == all.end() ? std::nullopt : std::optional{found->ipv4};
}

std::string counted(std::uint64_t number, const char* one, const char* many) {
    return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

std::string tenths(double seconds) {
    const auto number = std::lround(seconds * 10);
    return std::to_string(number / 10) + '.' + std::to_string(number % 10);
}

ConnectionLine interfaceLine(const ConnectionFacts& facts) {
    ConnectionLine line{.subject = "Interface", .state = "none leads to the module", .verdict = Verdict::bad};
    line.advice = "Switch on this device's Wi-Fi and join the module's network.";
    // The system may keep routes where nobody looks.
    if (!facts.route && facts.connected) return {.subject = "Interface", .state = "not told by the system"};
    if (!facts.route) return line;
    line = {.subject = "Interface", .state = facts.route->interface, .verdict = Verdict::good};
    if (facts.route->interface == "lo") line.state += ", this device itself";
    if (!facts.wireless) return line;
    line.state += ", in the Wi-Fi \"" + facts.wireless->name + "\", signal " +
                  std::to_string(facts.wireless->strength) + " %";
    constexpr int weak = 30;
    if (facts.wireless->strength < weak) {
        line.verdict = Verdict::bad;
        line.advice = "The signal is weak: bring this device nearer to the module.";
    }
    return line;
}

ConnectionLine addressLine(const ConnectionFacts& facts) {
    if (!facts.route) return {.subject = "Own address", .state = "unknown"};
    if (facts.routeAddress)
        return {.subject = "Own address", .state = *facts.routeAddress, .verdict = Verdict::good};
    return {.subject = "Own address",
            .state = "none on " + facts.route->interface,
            .verdict = Verdict::bad,
            .advice = "Leave the module's network and join it again."};
}

ConnectionLine moduleLine(const ConnectionFacts& facts) {
    ConnectionLine line{
        .subject = "Module", .state = placeOfEndpoint(facts.module), .verdict = Verdict::good};
    if (facts.moduleChosen) {
        line.state += ", as chosen at the start";
    } else if (!facts.ownAddress) {
        line.state += ", because there is no address on " + facts.decidingInterface;
    } else {
        line.state += ", because " + facts.decidingInterface + " has " + *facts.ownAddress;
    }
    return line;
}

ConnectionLine routeLine(const ConnectionFacts& facts) {
    if (!facts.route && facts.connected) return {.subject = "Route", .state = "not told by the system"};
    if (!facts.route)
        return {.subject = "Route",
                .state = "none",
                .verdict = Verdict::bad,
                .advice = "Join the module's network."};
    ConnectionLine line{
        .subject = "Route", .state = "direct, by " + facts.route->interface, .verdict = Verdict::good};
    if (!facts.route->gateway.empty()) {
        line.state = "by " + facts.route->interface + ", through " + facts.route->gateway;
        if (!facts.connected) {
            line.verdict = Verdict::bad;
            line.advice = "That way leads into another network. Join the module's own.";
        }
    } else if (facts.defaultRoute && facts.defaultRoute->interface != facts.route->interface) {
        line.advice =
            "The internet is reached by " + facts.defaultRoute->interface + ", and that is as it should be.";
    }
    return line;
}

ConnectionLine tcpLine(const ConnectionFacts& facts) {
    const auto bad = [](const char* state, const char* advice) {
        return ConnectionLine{
            .subject = "Connection", .state = state, .verdict = Verdict::bad, .advice = advice};
    };
    switch (facts.reach) {
        case Reach::open:
            return {.subject = "Connection", .state = "open", .verdict = Verdict::good};
        case Reach::refused:
            return bad("refused", "Something is there, and it is no module or not ready yet. Wait a little.");
        case Reach::unreachable:
            return bad("no way there", "Join the module's network.");
        case Reach::closed:
            return bad("ended by the other end",
                       "It is tried again every 3 seconds. Another handset may have the module.");
        case Reach::noAnswer:
            break;
    }
    return bad("no answer", "Is the ignition on, and this device in the module's network?");
}

ConnectionLine sessionLine(const ConnectionFacts& facts) {
    if (facts.connected) {
        const auto since = facts.figures.upSince.value_or(facts.now);
        const auto length = std::chrono::floor<std::chrono::seconds>(facts.now - since);
        return {.subject = "Session", .state = "up for " + lengthText(length), .verdict = Verdict::good};
    }
    if (facts.reach != Reach::open) return {.subject = "Session", .state = "none"};
    if (facts.figures.framesPerSecond > 0)
        return {.subject = "Session",
                .state = "none: frames come, and none is whole",
                .verdict = Verdict::bad,
                .advice = "Bring this device nearer to the module. Does its profile fit the module?"};
    return {.subject = "Session",
            .state = "the module is silent",
            .verdict = Verdict::bad,
            .advice = "Switch the ignition off and on. Another handset may have the module."};
}

ConnectionLine framesLine(const ConnectionFacts& facts) {
    const auto& figures = facts.figures;
    if (!figures.lastFrame) return {.subject = "Frames", .state = "none yet"};
    const auto age = std::chrono::duration<double>(facts.now - *figures.lastFrame).count();
    ConnectionLine line{.subject = "Frames",
                        .state = std::to_string(std::lround(figures.framesPerSecond)) +
                                 " a second, the last one " + tenths(age) + " s ago",
                        .verdict = Verdict::good};
    if (!facts.connected) {
        line.verdict = Verdict::open;
        line.state = counted(figures.frames, "frame", "frames") + " so far";
    }
    if (!facts.connected || facts.now - *figures.lastFrame <= silence) return line;
    line.verdict = Verdict::bad;
    line.advice = "The module has fallen silent. Is the ignition on?";
    return line;
}

ConnectionLine checksumLine(const ConnectionFacts& facts) {
    const auto& figures = facts.figures;
    if (figures.frames == 0) return {.subject = "Checksums", .state = "none yet"};
    ConnectionLine line{
        .subject = "Checksums",
        .state = std::to_string(figures.damaged) + " wrong of " + counted(figures.frames, "frame", "frames"),
        .verdict = Verdict::good};
    if (static_cast<double>(figures.damaged) <= mostDamaged * static_cast<double>(figures.frames))
        return line;
    line.verdict = Verdict::bad;
    line.advice = "Frames come joined or cut: the signal is weak, or this device has too much to do.";
    return line;
}

ConnectionLine answersLine(const ConnectionFacts& facts) {
    const auto& figures = facts.figures;
    const auto asked = figures.answered + figures.unanswered;
    if (asked == 0) return {.subject = "Answers", .state = "nothing has been asked yet"};
    ConnectionLine line{.subject = "Answers", .state = {}, .verdict = Verdict::good};
    if (figures.median)
        line.state = "usually after " + std::to_string(figures.median->count()) + " ms, at worst " +
                     std::to_string(figures.worst.value_or(*figures.median).count()) + " ms; ";
    line.state += std::to_string(figures.unanswered) + " of " + std::to_string(asked) + " did not come";
    const bool lost = static_cast<double>(figures.unanswered) > mostUnanswered * static_cast<double>(asked);
    const bool slow = figures.median.value_or(late) >= late;
    if (!lost && !slow) return line;
    line.verdict = Verdict::bad;
    line.advice = "The module answers late or not at all: keep other handsets off it, and come nearer.";
    return line;
}

ConnectionLine attemptsLine(const ConnectionFacts& facts) {
    const auto& figures = facts.figures;
    const auto again = figures.attempts > 0 ? figures.attempts - 1 : 0;
    ConnectionLine line{.subject = "Reconnects",
                        .state = counted(again, "attempt", "attempts") + " since the start, " +
                                 counted(figures.sessionsLately, "session", "sessions") + " in the last hour",
                        .verdict = facts.connected ? Verdict::good : Verdict::open};
    constexpr std::uint64_t many = 3;
    if (figures.sessionsLately > many) {
        line.verdict = Verdict::bad;
        line.advice = "The connection breaks often: bring this device nearer to the module.";
    }
    return line;
}

}  // namespace

ConnectionFacts connectionFacts(const ZephrelaneDriver& driver, const LinkStatistics& statistics,
                                const NetworkInterfaces& interfaces, RunLoop::Clock::time_point now) {
    const auto addresses = interfaces.addresses().value_or(std::vector<NetworkInterfaces::Address>{});
    ConnectionFacts facts{.decidingInterface = driver.options().interface,
                          .moduleChosen = driver.options().module.has_value(),
                          .module = driver.endpoint(),
                          .route = interfaces.routeTo(driver.endpoint().host),
                          .defaultRoute = interfaces.routeTo("0.0.0.0"),
                          .reach = driver.reach(),
                          .connected = driver.connected(),
                          .figures = statistics.figures(),
                          .now = now};
    if (driver.decidingAddress() != "error") facts.ownAddress = driver.decidingAddress();
    if (facts.route) facts.routeAddress = addressOf(addresses, facts.route->interface);
    return facts;
}

std::vector<ConnectionLine> connectionReport(const ConnectionFacts& facts) {
    return {interfaceLine(facts), addressLine(facts), moduleLine(facts), routeLine(facts),
            tcpLine(facts),       sessionLine(facts), framesLine(facts), checksumLine(facts),
            answersLine(facts),   attemptsLine(facts)};
}

}  // namespace torv
