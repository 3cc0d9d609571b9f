#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <set>

#include "Statistics.h"
#include "WriteFault.h"

namespace bench {

struct Options {
    std::string host = "127.0.0.1";
    std::uint16_t port = 0;  ///< 0 for any free one
    int rate = 100;          ///< frames per second, 1 to 400
    std::uint64_t seed = 1;
    std::filesystem::path profile;
    Milliseconds firstDelay{};  ///< silence between accept and the first frame
    Milliseconds jitter{};      ///< each frame is up to this much late
    /// The drive stands still at this second of it, so that two handsets see the same.
    std::optional<int> standsAt{};
    /// A recording in place of the drive, from the first handset on, once; and how much faster.
    std::filesystem::path replay{};
    double speed = 1;
    std::vector<std::pair<Fault, Trigger>> faults{};
    std::vector<std::pair<std::uint8_t, WriteFault>> writeFaults{};
    std::vector<std::string> troubleCodes{};
    /// Asked on the bench's thread before each segment; while it says no, nothing is sent. For a handset
    /// whose receive queue can be seen, so that no two segments arrive as one. It must not call the bench.
    std::function<bool()> hasReadAll{};
    /// A line per event, called on the bench's thread; it must not call the bench.
    std::function<void(const std::string&)> log{};
};

/// A module on the bench: listens on a thread of its own and speaks to one handset at a time; a new
/// connection takes the place of the old.
///
/// Every call may come from any thread, `start` and `stop` from one at a time. The drive goes on with each
/// push frame and not with the clock, so that a run with the same seed sends the same values.
class Bench final {
public:
    explicit Bench(Options options);
    ~Bench();
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;

    /// Returns once it listens, or with a line that says why it does not.
    [[nodiscard]] std::optional<std::string> start();
    /// Closes everything; `start` then listens on the same port again, with all values as they were.
    void stop();
    [[nodiscard]] std::uint16_t port() const;

    void setFault(Fault fault, const Trigger& trigger);
    void clearFaults();
    void setWriteFault(std::uint8_t aid, WriteFault fault);
    void dropConnections();

    [[nodiscard]] Bytes value(std::uint8_t aid) const;
    /// Holds an AID at this value, against the model and against writes.
    void setValue(std::uint8_t aid, const Bytes& value);
    void setTroubleCodes(std::vector<std::string> codes);

    [[nodiscard]] Statistics statistics() const;
    /// Every value that was ever meant for this AID in a frame that left, as wire bytes.
    [[nodiscard]] std::set<Bytes> sent(std::uint8_t aid) const;

private:
    struct Runner;
    std::unique_ptr<Runner> m_runner;
};

}  // namespace bench
