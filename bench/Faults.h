#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

enum class Fault : std::size_t {
    dropAck,
    delayAck,
    dropResponse,
    delayResponse,
    corrupt,       ///< one byte of a frame is damaged
    split,         ///< a frame leaves in two segments
    join,          ///< two frames leave in one segment
    silent,        ///< nothing is sent for a while
    close,         ///< the connection is closed
    refuse,        ///< connections are refused
    mute,          ///< connections are accepted, and nothing is ever said
    strayAck,      ///< an ack that nobody waits for
    reservedType,  ///< a frame of type 6 to 15
    badAid,        ///< an item for AID 255
    cutItem,       ///< an item that ends with the payload before it is whole
    ownRequest,
    ownWrite,
    count
};

inline constexpr std::size_t faultCount = static_cast<std::size_t>(Fault::count);

struct FaultName {
    std::string_view name;
    std::string_view meaning;
    Milliseconds lasts{};  ///< of a delay or a silence by chance
};
extern const std::array<FaultName, faultCount> faultNames;

/// When a fault strikes: at each occasion with a probability, or once at a moment counted from when it was
/// set.
///
/// `lasts` is how long a delay, a silence, a refusal or a mute phase goes on; 0 stands for the fault's own
/// time, or, with a moment, for ever.
struct Trigger {
    double probability = 0;
    std::optional<Milliseconds> at{};
    Milliseconds lasts{};
};

/// Reads "NAME=PROBABILITY" or "NAME@SECONDS", either with ":MILLISECONDS" behind it for how long.
[[nodiscard]] std::optional<std::pair<Fault, Trigger>> parseFault(const std::string& text);

/// Which faults are on and when each strikes. Every fault has a random stream of its own, so that switching
/// one on does not move the others. One thread at a time.
class Faults final {
public:
    explicit Faults(std::uint64_t seed);

    void set(Fault fault, const Trigger& trigger);
    void clear();

    /// Asks on an occasion for the fault.
    [[nodiscard]] bool strikes(Fault fault);
    /// Whether a lasting fault is on right now: certain, or within its time.
    [[nodiscard]] bool holds(Fault fault) const;
    /// For a lasting fault: by its time if it has a moment, else by chance.
    [[nodiscard]] bool holdsOrStrikes(Fault fault);
    /// How long until `holds` may change, if ever.
    [[nodiscard]] std::optional<Milliseconds> nextChange(Fault fault) const;
    [[nodiscard]] Milliseconds lasting(Fault fault) const;
    /// For ever, for a lasting fault with a moment and no time of its own.
    [[nodiscard]] bool isEndless(Fault fault) const;
    [[nodiscard]] std::uint64_t random(Fault fault, std::uint64_t below);

private:
    struct Entry {
        Trigger trigger;
        Clock::time_point setAt{};
        bool spent = false;
        std::mt19937_64 engine;
    };

    Entry& entry(Fault fault) { return m_entries[static_cast<std::size_t>(fault)]; }
    [[nodiscard]] const Entry& entry(Fault fault) const { return m_entries[static_cast<std::size_t>(fault)]; }

    std::array<Entry, faultCount> m_entries;
};

}  // namespace bench
