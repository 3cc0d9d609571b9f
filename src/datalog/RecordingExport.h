#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "datalog/DataLogCsv.h"
#include "datalog/RecordingReader.h"

namespace torv {

/// What a recording can be turned into.
struct RecordingFormat {
    enum class Kind {
        oneTimeAxis,  ///< CSV (RFC 4180): a time (ISO 8601, UTC) and a column for each sensor
        dataLog,      ///< CSV as the data log has it
        jsonLines,    ///< an object for each value and each event of the link
    };
    Kind kind;
    std::string_view name;   ///< on the command line
    std::string_view title;  ///< on the screen
    std::string_view suffix;
    std::string_view mimeType;
};
inline constexpr std::array<RecordingFormat, 3> recordingFormats{{
    {.kind = RecordingFormat::Kind::oneTimeAxis,
     .name = "csv",
     .title = "CSV with one time axis",
     .suffix = ".csv",
     .mimeType = "text/csv"},
    {.kind = RecordingFormat::Kind::dataLog,
     .name = "log",
     .title = "CSV like the data log's",
     .suffix = "-log.csv",
     .mimeType = "text/csv"},
    {.kind = RecordingFormat::Kind::jsonLines,
     .name = "jsonl",
     .title = "JSON lines",
     .suffix = ".jsonl",
     .mimeType = "application/jsonl"},
}};

/// Empty when the sink took all of it, else why not, in a sentence. Uses the same amount of memory for any
/// length. Any thread, with a reader of its own.
[[nodiscard]] std::string exportRecording(const RecordingReader& recording, RecordingFormat::Kind kind,
                                          const TextSink& write);

}  // namespace torv
