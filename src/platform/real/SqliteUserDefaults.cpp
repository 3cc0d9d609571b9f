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
constexpr auto moveStatement =
    "UPDATE defaults SET key = ? WHERE key = ?";  // fails where the new key is taken
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

bool bindKey(sqlite3_stmt* statement, int index, const std::string& key) {
    // A null pointer would bind NULL; the empty key is a key like any other.
    const char* bytes = key.empty() ? "" : key.data();
    return sqlite3_bind_blob64(statement, index, bytes, key.size(), SQLITE_STATIC) == SQLITE_OK;
}

bool isKeyOfUnreadable(const std::string& key) {
    const auto number = key.find_last_not_of("0123456789") + 1;
    return number < key.size() && key.substr(0, number).ends_with(" unreadable ");
}

}  // namespace

void SqliteUserDefaults::Close::operator()(sqlite3* database) const {
    sqlite3_close_v2(database);
}

struct SqliteUserDefaults::Access {
    int flags;
    const char* parameters;
    const char* statements;
};

namespace {

/// As SQLite takes it with parameters behind it.
std::string uriOf(const std::filesystem::path& file) {
    std::string uri = "file:";
    for (const char sign : file.string()) {
        switch (sign) {
            case '%':
                uri += "%25";
                break;
            case '?':
                uri += "%3f";
                break;
            case '#':
                uri += "%23";
                break;
            default:
                uri += sign;
        }
    }
    return uri;
}

}  // namespace

SqliteUserDefaults::SqliteUserDefaults(std::filesystem::path file) : m_file(std::move(file)) {
    constexpr Access whole{SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, "", openStatements};
    // How a store that can't be kept up can still be read.
    constexpr std::array others{
        Access{SQLITE_OPEN_READWRITE, "",
               "PRAGMA locking_mode = EXCLUSIVE"},  // on a full disk: makes no file
        Access{SQLITE_OPEN_READONLY, "", ""},
        Access{SQLITE_OPEN_READONLY, "?immutable=1", ""},  // in a folder that can't be written
    };
    std::error_code error;
    std::filesystem::create_directories(m_file.parent_path(), error);
    if (read(whole)) return;
    // SQLITE_ERROR: a database, but with tables that are none of ours.
    constexpr std::array strange{SQLITE_NOTADB, SQLITE_CORRUPT, SQLITE_ERROR};
    const int result = m_database ? sqlite3_errcode(m_database.get()) : SQLITE_NOMEM;
    if (std::find(strange.begin(), strange.end(), result) != strange.end()) {
        setAside();
        if (read(whole)) return;
    }
    const std::string why = m_database ? sqlite3_errmsg(m_database.get()) : "out of memory";
    const bool known = std::any_of(others.begin(), others.end(), [&](const Access& a) { return read(a); });
    m_database.reset();
    logLine("choices will not be remembered" + std::string{known ? "" : ", and none are known"} + ": " +
            m_file.string() + ": " + why);
}

SqliteUserDefaults::~SqliteUserDefaults() {
    synchronize();
}

bool SqliteUserDefaults::read(const Access& access) {
    m_entries.clear();
    return open(access) && load();
}

bool SqliteUserDefaults::open(const Access& access) {
    m_database.reset();
    sqlite3* database = nullptr;
    const int result = sqlite3_open_v2((uriOf(m_file) + access.parameters).c_str(), &database,
                                       access.flags | SQLITE_OPEN_URI, nullptr);
    m_database.reset(database);
    if (result != SQLITE_OK) return false;
    sqlite3_busy_timeout(database, busyMilliseconds);
    return run(database, access.statements);
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
    if (error) return;  // it stays, with its log, and that it can't be read is said
    logLine("the store of choices could not be read; it is kept as " + aside.string());
    for (const auto* suffix : {"-wal", "-shm"})
        std::filesystem::remove(m_file.string() + suffix, error);
}

void SqliteUserDefaults::setAside(const std::string& key, const std::string& why) {
    const auto statement = prepare(m_database.get(), moveStatement);
    std::string aside;
    bool moved = false;
    for (int number = 1; statement && !moved && number < 1000; ++number) {
        aside = keyOfUnreadable(key, number);
        sqlite3_reset(statement.get());
        moved = bindKey(statement.get(), 1, aside) && bindKey(statement.get(), 2, key) &&
                sqlite3_step(statement.get()) == SQLITE_DONE;
    }
    std::string line = "the stored entry \"";
    line.append(key).append("\" can't be read");
    if (moved) line.append(" and is kept as \"").append(aside).append("\"");
    logLine(line.append(": ").append(why));
}

bool SqliteUserDefaults::load() {
    auto statement = prepare(m_database.get(), readStatement);
    if (!statement) return false;
    std::vector<std::pair<std::string, std::string>> unreadable;  // keys, and why
    int step = SQLITE_DONE;
    while ((step = sqlite3_step(statement.get())) == SQLITE_ROW) {
        auto key = column(statement.get(), 0);
        std::string error;
        auto value = valueOf(column(statement.get(), 1), column(statement.get(), 2), error);
        if (value) {
            m_entries.insert_or_assign(std::move(key), std::move(*value));
        } else if (!isKeyOfUnreadable(key)) {
            unreadable.emplace_back(std::move(key), std::move(error));
        }
    }
    statement.reset();
    for (const auto& [key, why] : unreadable)
        setAside(key, why);
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
    if (!statement || !bindKey(statement.get(), 1, key)) return false;
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
        if (!m_failing) logLine("choices could not be kept: " + std::string{sqlite3_errmsg(database)});
        run(database, "ROLLBACK");
    }
    m_failing = !kept;
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
