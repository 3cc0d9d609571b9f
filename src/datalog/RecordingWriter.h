#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <string>

#include "datalog/RecordedDrive.h"
#include "sqlite/Sqlite.h"

namespace torv {

// A recording is an SQLite file with "iTrv" as its application_id and its form in user_version:
//
//   drive    key, value    "name", "vehicle"; "begun" and "ended" in milliseconds since 1970, UTC
//   sensors  place, aid, name, unit, digits, minmax, warning_rule, warning_value
//   samples  aid, time (nanoseconds since it began), wall (milliseconds since 1970, UTC), value, bytes
//   events   time, wall, text
//
// Times of one AID rise. While it is being written its newest part stands in the "-wal" file beside it, and
// SQLite needs both.
inline constexpr int recordingMark = 0x69547276;
inline constexpr int recordingForm = 1;

/// Writes one recording. What `append` has taken is on the disk, also after a power cut. One thread at a
/// time.
class RecordingWriter final {
public:
    /// Behind the name of a file until there is something in it.
    static constexpr auto unfinished = ".new";

    /// Makes the file, and its folder; one that is there already is left alone. Nothing, with a sentence in
    /// `error`, when it can't be made.
    [[nodiscard]] static std::optional<RecordingWriter> begin(const std::filesystem::path& file,
                                                              const RecordedDrive& drive, std::string& error);

    /// All or none of it. Nothing when it is kept, else why not, as the beginning of a sentence. A value's
    /// time may be moved on by as little as it takes to rise.
    [[nodiscard]] std::optional<std::string> append(std::span<const RecordedValue> values,
                                                    std::span<const RecordedEvent> events);
    /// Notes the end and makes one file of it.
    void end();

private:
    explicit RecordingWriter(sqlite::Database database) : m_database(std::move(database)) {}
    [[nodiscard]] static RecordingWriter open(const std::filesystem::path& file);
    [[nodiscard]] bool insert(const RecordedDrive& drive);
    [[nodiscard]] bool insert(std::span<const RecordedValue> values, std::map<AID, DriveTime>& last);
    [[nodiscard]] bool insert(std::span<const RecordedEvent> events);
    [[nodiscard]] std::string why() const;

    sqlite::Database m_database;
    std::map<AID, DriveTime> m_last;
};

}  // namespace torv
