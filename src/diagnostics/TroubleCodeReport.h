#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "session/iTorvFeeder.h"
#include "support/TimeTexts.h"

namespace torv {

/// The trouble codes as the store holds them after a read: a row for each code that the module has reported,
/// which may be more than have come, or than its first report is long. Made on the main thread; then a plain
/// value.
struct TroubleCodeReport {
    using WallClock = std::chrono::system_clock;
    using Texts = std::map<std::string, std::string>;  ///< by code

    struct Row {
        std::string code;                        ///< empty: the module counts it, and has not sent it
        bool old = false;                        ///< of an answer before this read
        std::optional<std::string> description;  ///< nothing where the database has none

        /// "CODE - description", as all lists show it.
        [[nodiscard]] std::string text() const;
    };

    std::vector<Row> rows;  ///< those of this read first
    /// The module has answered in this read how many codes there are. Otherwise the rows are old, if any.
    bool answered = false;
    /// When the oldest part of what is old came; nothing when nothing is old, or nothing ever came.
    std::optional<WallTime> lastAnswer;

    /// `begun` is when the read began.
    [[nodiscard]] static TroubleCodeReport fromStore(const iTorvFeeder& feeder,
                                                     RunLoop::Clock::time_point begun, const Texts& texts);

    [[nodiscard]] bool hasOldRows() const { return !rows.empty() && rows.back().old; }
    /// "Last answer from 2026-11-23 12:40".
    [[nodiscard]] std::string lastAnswerText() const;
    /// What stands in place of a list without rows.
    [[nodiscard]] std::string emptyText() const;
    /// The whole as lines of text, to be handed on. `recording` is the name of the one that runs, or empty.
    [[nodiscard]] std::string document(const std::string& vehicle, const std::string& recording,
                                       WallClock::time_point now) const;
};

}  // namespace torv
