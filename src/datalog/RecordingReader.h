#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "datalog/RecordedDrive.h"
#include "sqlite/Sqlite.h"

namespace torv {

/// Reads one recording, also while another program writes it: what was there when each reading began. One
/// thread at a time. Nothing in the file is trusted: what makes no sense is left out.
class RecordingReader final {
public:
    /// Nothing, with a sentence in `error`, for a file that is no recording, damaged, or of a newer version.
    [[nodiscard]] static std::optional<RecordingReader> open(const std::filesystem::path& file,
                                                             std::string& error);

    [[nodiscard]] const RecordedDrive& drive() const { return m_drive; }
    /// False for one that still runs, and for one whose program was killed.
    [[nodiscard]] bool hasEnded() const { return m_ended; }
    /// From the beginning to the last value.
    [[nodiscard]] DriveTime length() const;
    [[nodiscard]] std::vector<RecordedEvent> events() const;
    /// Whether any program has the file open as a database, to record it or to read it; what the file holds
    /// does not matter.
    [[nodiscard]] static bool isOpen(const std::filesystem::path& file);
    /// False when it can't be written.
    bool rename(const std::string& name);

    /// The values of one sensor in the order of their times; ends before the reader does.
    class Values final {
    public:
        /// Nothing at the end, and where the file can't be read any further: `error` then tells why.
        [[nodiscard]] std::optional<RecordedValue> next();
        [[nodiscard]] const std::string& error() const { return m_error; }

    private:
        friend class RecordingReader;
        Values(sqlite3* database, AID aid);

        sqlite3* m_database;
        AID m_aid;
        sqlite::Statement m_rows;
        std::int64_t m_last = 0;  // time; in a damaged file they may fall
        bool m_ended = false;     // SQLite would begin anew
        std::string m_error;
    };
    [[nodiscard]] Values valuesOf(AID aid) const { return {m_database.get(), aid}; }

private:
    explicit RecordingReader(sqlite::Database database) : m_database(std::move(database)) {}
    [[nodiscard]] std::string readDrive();

    sqlite::Database m_database;
    RecordedDrive m_drive;
    bool m_ended = false;
};

}  // namespace torv
