#include "datalog/RecordingReader.h"

#include <algorithm>
#include <cmath>

#include "datalog/RecordingWriter.h"

namespace torv {
namespace {

constexpr AID lastAID = 254;
constexpr DriveTime longest = std::chrono::hours{24 * 365 * 10};

std::int64_t integerOf(sqlite3* database, const char* question) {
    const auto row = sqlite::prepare(database, question);
    return row && sqlite3_step(row.get()) == SQLITE_ROW ? sqlite3_column_int64(row.get(), 0) : 0;
}

WallTime wallOf(sqlite3_stmt* row, int column) {
    return WallTime{std::chrono::milliseconds{sqlite3_column_int64(row, column)}};
}

bool isTime(std::int64_t nanoseconds) {
    return nanoseconds >= 0 && nanoseconds <= longest.count();
}

}  // namespace

std::optional<RecordingReader> RecordingReader::open(const std::filesystem::path& file, std::string& error) {
    const auto refuse = [&](const std::string& why) {
        error = file.string() + " " + why;
        return std::nullopt;
    };
    std::error_code failed;
    if (!std::filesystem::is_regular_file(file, failed)) return refuse("is not there.");
    sqlite3* opened = nullptr;
    // Opened for writing, so that SQLite brings in what a killed program left beside the file.
    int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    RecordingReader reader{sqlite::Database{opened}};
    if (result != SQLITE_OK) return refuse("can't be opened.");
    sqlite3_busy_timeout(opened, sqlite::busyMilliseconds);
    result = sqlite3_exec(opened, "PRAGMA schema_version", nullptr, nullptr, nullptr);
    if (result == SQLITE_OK && integerOf(opened, "PRAGMA application_id") != recordingMark)
        result = SQLITE_NOTADB;
    if (result == SQLITE_NOTADB) return refuse("is no recording.");
    if (integerOf(opened, "PRAGMA user_version") > recordingForm)
        return refuse("was made by a newer version of iTorv.");
    const auto damage = result == SQLITE_OK ? reader.readDrive() : std::string{sqlite3_errmsg(opened)};
    if (!damage.empty()) return refuse("can't be read (" + damage + ").");
    return reader;
}

/// Empty when all is well.
std::string RecordingReader::readDrive() {
    const auto facts = sqlite::prepare(m_database.get(), "SELECT key, value FROM drive");
    int step = SQLITE_ERROR;
    while (facts && (step = sqlite3_step(facts.get())) == SQLITE_ROW) {
        const auto key = sqlite::column(facts.get(), 0);
        if (key == "name") m_drive.name = sqlite::column(facts.get(), 1);
        if (key == "vehicle") m_drive.vehicle = sqlite::column(facts.get(), 1);
        if (key == "begun") m_drive.begun = wallOf(facts.get(), 1);
        if (key == "ended") m_ended = true;
    }
    if (step != SQLITE_DONE) return sqlite3_errmsg(m_database.get());
    const auto sensors = sqlite::prepare(
        m_database.get(),
        "SELECT aid, name, unit, digits, minmax, warning_rule, warning_value FROM sensors ORDER BY place");
    while (sensors && (step = sqlite3_step(sensors.get())) == SQLITE_ROW) {
        auto* const row = sensors.get();
        const AID aid = sqlite3_column_int64(row, 0);
        if (aid < 0 || aid > lastAID) continue;
        m_drive.sensors.push_back({.aid = aid,
                                   .name = sqlite::column(row, 1),
                                   .unit = sqlite::column(row, 2),
                                   .decimaldigits = sqlite3_column_int64(row, 3),
                                   .minmax = sqlite::column(row, 4),
                                   .warningRule = sqlite3_column_int(row, 5),
                                   .warningValue = sqlite3_column_int64(row, 6)});
    }
    return sensors && step == SQLITE_DONE ? "" : sqlite3_errmsg(m_database.get());
}

DriveTime RecordingReader::length() const {
    // By sensor: the table is sorted by them, so that no row is read but the last.
    const auto last = sqlite::prepare(m_database.get(), "SELECT max(time) FROM samples WHERE aid = ?");
    std::int64_t length = 0;
    for (const auto& sensor : m_drive.sensors) {
        if (!last) break;
        sqlite3_bind_int64(last.get(), 1, sensor.aid);
        if (sqlite3_step(last.get()) == SQLITE_ROW)
            length = std::max<std::int64_t>(length, sqlite3_column_int64(last.get(), 0));
        sqlite3_reset(last.get());
    }
    return DriveTime{std::min<std::int64_t>(length, longest.count())};
}

std::vector<RecordedEvent> RecordingReader::events() const {
    const auto rows =
        sqlite::prepare(m_database.get(), "SELECT time, wall, text FROM events ORDER BY time, rowid");
    std::vector<RecordedEvent> events;
    while (rows && sqlite3_step(rows.get()) == SQLITE_ROW) {
        const auto time = sqlite3_column_int64(rows.get(), 0);
        if (isTime(time))
            events.push_back({DriveTime{time}, wallOf(rows.get(), 1), sqlite::column(rows.get(), 2)});
    }
    return events;
}

bool RecordingReader::isOpen(const std::filesystem::path& file) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    const sqlite::Database database{opened};
    if (result != SQLITE_OK) return false;
    // Works only when nobody else has the file open, and that is the question.
    const auto row = sqlite::prepare(opened, "PRAGMA journal_mode = DELETE");
    const int step = row ? sqlite3_step(row.get()) : sqlite3_errcode(opened);
    if (step == SQLITE_ROW) return sqlite::column(row.get(), 0) == std::string{"wal"};
    return step == SQLITE_BUSY || step == SQLITE_LOCKED;
}

bool RecordingReader::rename(const std::string& name) {
    const auto row = sqlite::prepare(m_database.get(), "INSERT OR REPLACE INTO drive VALUES ('name', ?)");
    if (!row) return false;
    sqlite3_bind_text(row.get(), 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
    if (sqlite3_step(row.get()) != SQLITE_DONE) return false;
    m_drive.name = name;
    return true;
}

RecordingReader::Values::Values(sqlite3* database, AID aid)
    : m_database(database),
      m_aid(aid),
      m_rows(sqlite::prepare(database,
                             "SELECT time, wall, value, bytes FROM samples WHERE aid = ? ORDER BY time")) {
    if (m_rows) sqlite3_bind_int64(m_rows.get(), 1, aid);
}

std::optional<RecordedValue> RecordingReader::Values::next() {
    while (!m_ended && m_error.empty()) {
        const int step = m_rows ? sqlite3_step(m_rows.get()) : SQLITE_ERROR;
        m_ended = step == SQLITE_DONE;
        if (m_ended) break;
        if (step != SQLITE_ROW) {
            m_error = sqlite3_errmsg(m_database);
            break;
        }
        auto* const row = m_rows.get();
        const auto time = sqlite3_column_int64(row, 0);
        if (!isTime(time) || time < m_last) continue;
        m_last = time;
        RecordedValue value{.aid = m_aid,
                            .time = DriveTime{time},
                            .wall = wallOf(row, 1),
                            .value = std::nullopt,
                            .bytes = {}};
        if (sqlite3_column_type(row, 2) != SQLITE_NULL) value.value = sqlite3_column_double(row, 2);
        if (value.value && !std::isfinite(*value.value)) value.value.reset();
        const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(row, 3));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, 3));
        if (bytes) value.bytes = AV::forAID(m_aid, {bytes, size});
        return value;
    }
    return std::nullopt;
}

}  // namespace torv
