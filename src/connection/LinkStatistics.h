#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/RunLoop.h"
#include "session/LinkMonitor.h"
#include "support/TimeTexts.h"

namespace torv {

/// What of the link can be counted: frames, damaged ones, answers and how long they took, attempts, and the
/// last ten things that happened to the connection. Figures may be asked for on any thread.
class LinkStatistics final : public LinkMonitor {
public:
    using Time = RunLoop::Clock::time_point;
    static constexpr std::size_t mostEvents = 10;

    struct Event {
        WallTime when{};  ///< the last time
        std::string text;
        int times = 1;  ///< in a row
    };
    struct Figures {
        double framesPerSecond = 0;  ///< over the last two seconds
        std::optional<Time> lastFrame{};
        std::uint64_t frames = 0;
        std::uint64_t damaged = 0;  ///< whose checksum was wrong
        // Of the last hundred exchanges within sessions.
        std::uint64_t answered = 0;
        std::uint64_t unanswered = 0;
        std::optional<std::chrono::milliseconds> median{};
        std::optional<std::chrono::milliseconds> worst{};
        std::uint64_t attempts = 0;
        std::uint64_t sessionsLately = 0;  ///< begun within the last hour
        std::optional<Time> upSince{};     ///< nothing while there is no session
        std::vector<Event> events{};       ///< the latest first
    };

    explicit LinkStatistics(const RunLoop& loop) : m_loop(loop) {}

    [[nodiscard]] Figures figures() const;

    void attempted(const Endpoint& endpoint) override;
    void sessionCameUp() override;
    void connectionEnded(const Endpoint& endpoint, ByteStream::Reach how, bool hadSession) override;
    void exchangeEnded(const Exchange& exchange) override;
    void chunkReceived(std::span<const std::uint8_t> chunk, x2comResult resultOfTheOneBefore) override;

private:
    static constexpr std::chrono::seconds window{2};
    static constexpr std::chrono::hours lately{1};
    static constexpr std::size_t keptExchanges = 101;

    void note(std::string text);

    const RunLoop& m_loop;
    mutable std::mutex m_mutex;
    Figures m_figures;
    std::deque<Time> m_arrivals;  // within the window
    std::deque<Time> m_sessions;  // lately begun
    std::deque<Exchange> m_exchanges;
};

}  // namespace torv
