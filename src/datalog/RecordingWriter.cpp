#include "datalog/RecordingWriter.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace torv {
namespace {

// FULL: a commit waits until the disk has it.
constexpr auto settings = "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;";
constexpr auto tables =
    "BEGIN;"
    "CREATE TABLE drive (key TEXT PRIMARY KEY, value) WITHOUT ROWID;"
    "CREATE TABLE sensors (place INTEGER PRIMARY KEY, aid INTEGER UNIQUE, name TEXT, unit TEXT, digits "
    "INTEGER, minmax TEXT,"
    " warning_rule INTEGER, warning_value INTEGER);"
    "CREATE TABLE samples (aid INTEGER, time INTEGER, wall INTEGER, value REAL, bytes BLOB,"
    " PRIMARY KEY (aid, time)) WITHOUT ROWID;"
    "CREATE TABLE events (time INTEGER, wall INTEGER, text TEXT);";

void bind(sqlite3_stmt* row, int place, std::int64_t number) {
    sqlite3_bind_int64(row, place, number);
}
void bind(sqlite3_stmt* row, int place, const std::string& text) {
    sqlite3_bind_text(row, place, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}
void bind(sqlite3_stmt* row, int place, std::optional<double> number) {
    if (number) {
        sqlite3_bind_double(row, place, *number);
    } else {
        sqlite3_bind_null(row, place);
    }
}
void bind(sqlite3_stmt* row, int place, std::span<const std::uint8_t> bytes) {
    sqlite3_bind_blob(row, place, bytes.data(), static_cast<int>(bytes.size()), SQLITE_TRANSIENT);
}

template <class... Fields>
bool put(const sqlite::Statement& row, const Fields&... fields) {
    if (!row) return false;
    int place = 0;
    (bind(row.get(), ++place, fields), ...);
    return sqlite3_step(row.get()) == SQLITE_DONE && sqlite3_reset(row.get()) == SQLITE_OK;
}

std::int64_t countOf(WallTime time) {
    return time.time_since_epoch().count();
}

constexpr auto putFact = "INSERT OR REPLACE INTO drive VALUES (?, ?)";

}  // namespace

std::optional<RecordingWriter> RecordingWriter::begin(const std::filesystem::path& file,
                                                      const RecordedDrive& drive, std::string& error) {
    std::error_code failed;
    if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), failed);
    if (std::filesystem::exists(file, failed)) {
        error = file.string() + " is there already.";
        return std::nullopt;
    }
    // Under another name until there is something in it, so that each file of this name can be opened.
    const std::filesystem::path fresh = file.string() + unfinished;
    const auto marks = "PRAGMA application_id = " + std::to_string(recordingMark) +
                       "; PRAGMA user_version = " + std::to_string(recordingForm) + "; COMMIT;";
    std::filesystem::remove(fresh, failed);
    auto writer = open(fresh);
    const bool made = sqlite::run(writer.m_database.get(), tables) && writer.insert(drive) &&
                      sqlite::run(writer.m_database.get(), marks);
    error = made ? "" : file.string() + ": " + writer.why() + ".";
    writer.m_database.reset();
    if (made) std::filesystem::rename(fresh, file, failed);
    if (made && failed) error = file.string() + ": " + failed.message() + ".";
    if (error.empty()) {
        writer = open(file);
        if (sqlite::run(writer.m_database.get(), settings)) return writer;
        error = file.string() + ": " + writer.why() + ".";
    }
    std::filesystem::remove(fresh, failed);
    return std::nullopt;
}

RecordingWriter RecordingWriter::open(const std::filesystem::path& file) {
    sqlite3* opened = nullptr;
    sqlite3_open(file.c_str(), &opened);
    if (opened) sqlite3_busy_timeout(opened, sqlite::busyMilliseconds);
    return RecordingWriter{sqlite::Database{opened}};
}

bool RecordingWriter::insert(const RecordedDrive& drive) {
    const auto fact = sqlite::prepare(m_database.get(), putFact);
    const auto sensor =
        sqlite::prepare(m_database.get(), "INSERT INTO sensors VALUES (NULL, ?, ?, ?, ?, ?, ?, ?)");
    return put(fact, std::string{"name"}, drive.name) && put(fact, std::string{"vehicle"}, drive.vehicle) &&
           put(fact, std::string{"begun"}, countOf(drive.begun)) &&
           std::ranges::all_of(drive.sensors, [&](const RecordedSensor& each) {
               return put(sensor, each.aid, each.name, each.unit, each.decimaldigits, each.minmax,
                          std::int64_t{each.warningRule}, each.warningValue);
           });
}

bool RecordingWriter::insert(std::span<const RecordedValue> values, std::map<AID, DriveTime>& last) {
    const auto row = sqlite::prepare(m_database.get(), "INSERT INTO samples VALUES (?, ?, ?, ?, ?)");
    return std::ranges::all_of(values, [&](const RecordedValue& value) {
        const auto before = last.find(value.aid);
        const auto time =
            before == last.end() ? value.time : std::max(value.time, before->second + DriveTime{1});
        last.insert_or_assign(value.aid, time);
        return put(row, value.aid, std::int64_t{time.count()}, countOf(value.wall), value.value,
                   value.bytes.bytes());
    });
}

bool RecordingWriter::insert(std::span<const RecordedEvent> events) {
    const auto row = sqlite::prepare(m_database.get(), "INSERT INTO events VALUES (?, ?, ?)");
    return std::ranges::all_of(events, [&](const RecordedEvent& event) {
        return put(row, std::int64_t{event.time.count()}, countOf(event.wall), event.text);
    });
}

std::optional<std::string> RecordingWriter::append(std::span<const RecordedValue> values,
                                                   std::span<const RecordedEvent> events) {
    if (values.empty() && events.empty()) return std::nullopt;
    auto last = m_last;
    if (sqlite::run(m_database.get(), "BEGIN IMMEDIATE") && insert(values, last) && insert(events) &&
        sqlite::run(m_database.get(), "COMMIT")) {
        m_last = std::move(last);
        return std::nullopt;
    }
    auto reason = why();
    sqlite::run(m_database.get(), "ROLLBACK");
    return reason;
}

void RecordingWriter::end() {
    const auto fact = sqlite::prepare(m_database.get(), putFact);
    static_cast<void>(put(fact, std::string{"ended"}, countOf(wallNow())));
    sqlite::run(m_database.get(), "PRAGMA journal_mode = DELETE");
}

std::string RecordingWriter::why() const {
    if (!m_database) return "There is not enough memory";
    // A quota that is used up has no error code of its own.
    if (sqlite3_errcode(m_database.get()) == SQLITE_FULL || sqlite3_system_errno(m_database.get()) == EDQUOT)
        return "The disk is full";
    return std::string{"The file can't be written ("} + sqlite3_errmsg(m_database.get()) + ")";
}

}  // namespace torv
