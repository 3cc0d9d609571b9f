#include "platform/real/SqliteUserDefaults.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "JSON/ValueArchive.h"
#include "platform/Log.h"

namespace torv {
namespace {

constexpr auto openStatements =
    "PRAGMA journal_mode = WAL;"
    "PRAGMA synchronous = FULL;"
    "CREATE TABLE IF NOT EXISTS defaults (key BLOB PRIMARY KEY, kind TEXT NOT NULL, value NOT NULL);";
constexpr auto readStatement = "SELECT key, kind, value FROM defaults";
constexpr auto setStatement = "INSERT OR REPLACE INTO defaults (key, kind, value) VALUES (?, ?, ?)";
constexpr auto removeStatement = "DELETE FROM defaults WHERE key = ?";
constexpr int busyMilliseconds = 2000;

struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

Statement prepare(sqlite3* database, const char* text) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
    return Statement{statement};
}

bool run(sqlite3* database, const char* text) {
    return sqlite3_exec(database, text, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::string column(sqlite3_stmt* statement, int index) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, index));
    return bytes ? std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, index)))
                 : std::string{};
}

// Texts stand as they are, however long; all else as archived text.
constexpr auto textKind = "text";
constexpr auto archiveKind = "archive";

std::optional<Value> valueOf(const std::string& kind, std::string content, std::string& error) {
    if (kind == textKind) return content;
    if (kind == archiveKind) return valueFromArchivedText(content, error);
    error = "unknown kind \"" + kind + "\"";
    return std::nullopt;
}

bool bindKey(sqlite3_stmt* statement, const std::string& key) {
    // A null pointer would bind NULL; the empty key is a key like any other.
    const char* bytes = key.empty() ? "" : key.data();
    return sqlite3_bind_blob64(statement, 1, bytes, key.size(), SQLITE_STATIC) == SQLITE_OK;
}

}  // namespace

void SqliteUserDefaults::Close::operator()(sqlite3* database) const {
    sqlite3_close_v2(database);
}

SqliteUserDefaults::SqliteUserDefaults(std::filesystem::path file) : m_file(std::move(file)) {
    std::error_code error;
    std::filesystem::create_directories(m_file.parent_path(), error);
    if (open() && load()) return;
    // SQLITE_ERROR: a database, but with tables that are none of ours.
    constexpr std::array strange{SQLITE_NOTADB, SQLITE_CORRUPT, SQLITE_ERROR};
    const int result = m_database ? sqlite3_errcode(m_database.get()) : SQLITE_NOMEM;
    if (std::find(strange.begin(), strange.end(), result) != strange.end()) {
        setAside();
        if (open() && load()) return;
    }
    logLine("choices will not be remembered: " + m_file.string() + ": " +
            (m_database ? sqlite3_errmsg(m_database.get()) : "out of memory"));
    m_database.reset();
}

SqliteUserDefaults::~SqliteUserDefaults() {
    synchronize();
}

bool SqliteUserDefaults::open() {
    sqlite3* database = nullptr;
    const int result = sqlite3_open(m_file.c_str(), &database);
    m_database.reset(database);
    if (result != SQLITE_OK) return false;
    sqlite3_busy_timeout(database, busyMilliseconds);
    return run(database, openStatements);
}

void SqliteUserDefaults::setAside() {
    m_database.reset();
    std::error_code error;
    std::filesystem::path aside;
    for (int number = 1; number < 1000; ++number) {
        aside = m_file.string() + ".damaged-" + std::to_string(number);
        if (!std::filesystem::exists(aside, error)) break;
    }
    std::filesystem::rename(m_file, aside, error);
    logLine("the store of choices could not be read; it is kept as " + aside.string());
    for (const auto* suffix : {"-wal", "-shm"})
        std::filesystem::remove(m_file.string() + suffix, error);
    m_entries.clear();
}

bool SqliteUserDefaults::load() {
    const auto statement = prepare(m_database.get(), readStatement);
    if (!statement) return false;
    int step = SQLITE_DONE;
    while ((step = sqlite3_step(statement.get())) == SQLITE_ROW) {
        auto key = column(statement.get(), 0);
        std::string error;
        auto value = valueOf(column(statement.get(), 1), column(statement.get(), 2), error);
        if (value) {
            m_entries.insert_or_assign(std::move(key), std::move(*value));
        } else {
            std::string line = "the stored entry \"";
            line.append(key).append("\" can't be read and is left alone: ").append(error);
            logLine(line);
        }
    }
    return step == SQLITE_DONE;
}

Value SqliteUserDefaults::objectForKey(std::string_view key) const {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_entries.find(key);
    return found == m_entries.end() ? Value{} : found->second;
}

void SqliteUserDefaults::setObjectForKey(Value object, std::string_view key) {
    const std::scoped_lock lock{m_mutex};
    m_entries.insert_or_assign(std::string{key}, std::move(object));
    m_changed.emplace(key);
}

void SqliteUserDefaults::removeObjectForKey(std::string_view key) {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_entries.find(key);
    if (found != m_entries.end()) m_entries.erase(found);
    m_changed.emplace(key);
}

bool SqliteUserDefaults::write(const std::string& key, const Value* value) {
    const auto statement = prepare(m_database.get(), value ? setStatement : removeStatement);
    if (!statement || !bindKey(statement.get(), key)) return false;
    if (value) {
        const auto archived = value->text() ? std::nullopt : archivedText(*value);
        const auto* content = value->text() ? value->text() : archived ? &*archived : nullptr;
        if (!content) {
            logLine("the entry \"" + key + "\" nests too deep to be kept");
            return true;
        }
        sqlite3_bind_text(statement.get(), 2, value->text() ? textKind : archiveKind, -1, SQLITE_STATIC);
        sqlite3_bind_blob64(statement.get(), 3, content->empty() ? "" : content->data(), content->size(),
                            SQLITE_TRANSIENT);
    }
    return sqlite3_step(statement.get()) == SQLITE_DONE;
}

bool SqliteUserDefaults::synchronize() {
    const std::scoped_lock lock{m_mutex};
    if (m_changed.empty()) return true;
    if (!m_database) return false;
    auto* const database = m_database.get();
    bool kept = run(database, "BEGIN IMMEDIATE");
    for (auto change = m_changed.begin(); kept && change != m_changed.end(); ++change) {
        const auto entry = m_entries.find(*change);
        kept = write(*change, entry == m_entries.end() ? nullptr : &entry->second);
    }
    kept = kept && run(database, "COMMIT");
    if (kept) {
        m_changed.clear();
    } else {
        logLine("choices could not be kept: " + std::string{sqlite3_errmsg(database)});
        run(database, "ROLLBACK");
    }
    return kept;
}

std::vector<std::string> SqliteUserDefaults::keys() const {
    const std::scoped_lock lock{m_mutex};
    std::vector<std::string> result;
    for (const auto& [key, value] : m_entries)
        result.push_back(key);
    return result;
}

}  // namespace torv
