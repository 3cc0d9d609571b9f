#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"
#include "session/iTorvFeeder.h"
#include "vehicles/Vehicle.h"

namespace itorvctl {

/// What all commands work on: the profile, and the link to the module. Main thread.
class Handset final {
public:
    Handset(const Arguments& arguments, torv::Vehicle vehicle);

    [[nodiscard]] const torv::Vehicle& vehicle() const { return m_vehicle; }
    [[nodiscard]] torv::iTorvFeeder& feeder() { return *m_feeder; }
    [[nodiscard]] const std::shared_ptr<torv::iTorvFeeder>& sharedFeeder() const { return m_feeder; }
    /// Why `connect` gave up, in one sentence.
    [[nodiscard]] std::string whyNotConnected() const;

    /// Before `connect`: keeps what goes over the link. False, with a sentence, when the file can't be made.
    [[nodiscard]] bool capture(const std::filesystem::path& file, std::string& error);
    /// Starts the link and waits for a session. False when the time is over, the program is to end, or the
    /// module has closed the connection twice: each further attempt would take it from another handset.
    [[nodiscard]] bool connect();
    /// Turns the loop until the command's time is over or the program is to end.
    void run();
    /// Somebody wants the program to end: at once, or after what must not be left half done.
    void interrupt();
    void holdInterrupt(bool hold);
    [[nodiscard]] bool interrupted() const { return m_interrupted; }
    /// Ends what waits for the module when the time is over; without it, a command whose link is lost could
    /// wait until the module is back.
    void limitTime();
    /// Milliseconds since this handset was made. Any thread.
    [[nodiscard]] std::int64_t elapsed() const;

    [[nodiscard]] std::optional<torv::TorvAttribute> attribute(torv::AID aid) const;

private:
    const Arguments m_arguments;
    const torv::Vehicle m_vehicle;
    const torv::RunLoop::Clock::time_point m_start;
    std::shared_ptr<torv::iTorvFeeder> m_feeder;
    bool m_held = false;
    bool m_interrupted = false;
};

/// One decoded value of one attribute, as the commands print it.
struct Reading {
    torv::AID aid = 0;
    std::string name;
    std::string raw;  ///< hexadecimal, the slot's 4 or 13 bytes
    std::string value;
    std::string unit;
    std::int32_t flags = 0;
    bool warning = false;
    bool isCharacter = false;  ///< the value is the code of a character, as of a gear
    std::int64_t milliseconds = 0;
};

[[nodiscard]] Reading readingOf(const torv::TorvAttribute& attribute, torv::AV value,
                                std::int64_t milliseconds);
[[nodiscard]] std::string jsonLine(const Reading& reading);
[[nodiscard]] std::string plainText(const Reading& reading);
/// The value as a person reads it.
[[nodiscard]] std::string shownValue(const Reading& reading);
/// Without control characters: names come from documents, and terminals obey.
[[nodiscard]] std::string printable(std::string text);

}  // namespace itorvctl
