#include "platform/real/SqliteUserDefaults.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include "JSON/ValueArchive.h"
#include "platform/Log.h"

namespace torv {

struct SqliteUserDefaults::Access {
    int flags;
    const char* parameters;
    const char* statements;
};

namespace {

using sqlite::column, sqlite::prepare, sqlite::run;

constexpr auto tableStatement =
    "CREATE TABLE IF NOT EXISTS defaults (key BLOB PRIMARY KEY, kind TEXT NOT NULL, value NOT NULL)";
// What is deleted leaves nothing behind that a rescue could take for an entry.
constexpr auto openStatements =
    "PRAGMA journal_mode = WAL;"
    "PRAGMA synchronous = FULL;"
    "PRAGMA secure_delete = ON;"
    "CREATE TABLE IF NOT EXISTS defaults (key BLOB PRIMARY KEY, kind TEXT NOT NULL, value NOT NULL);";
constexpr auto readStatement = "SELECT key, kind, value FROM defaults";
constexpr auto setStatement = "INSERT OR REPLACE INTO defaults (key, kind, value) VALUES (?, ?, ?)";
constexpr auto moveStatement =
    "UPDATE defaults SET key = ? WHERE key = ?";  // fails where the new key is taken
constexpr auto removeStatement = "DELETE FROM defaults WHERE key = ?";
// 0, or 1 in a store that was begun with less than a damaged one held.
constexpr auto lossStatement = "PRAGMA user_version";
constexpr auto keepLossStatement = "PRAGMA user_version = 1";

std::optional<int> numberFrom(sqlite3* database, const char* text) {
    const auto statement = prepare(database, text);
    if (!statement || sqlite3_step(statement.get()) != SQLITE_ROW) return std::nullopt;
    return sqlite3_column_int(statement.get(), 0);
}

// Texts stand as they are, however long; all else as archived text.
constexpr auto textKind = "text";
constexpr auto archiveKind = "archive";

/// With an error beside a value, a part of it can't be read.
std::optional<Value> valueOf(const std::string& kind, std::string content, std::string& error) {
    if (kind == textKind) return content;
    if (kind == archiveKind) return valueFromArchivedText(content, error);
    error = "unknown kind \"" + kind + "\"";
    return std::nullopt;
}

/// Nothing of a value that nests too deep to be kept.
std::optional<StoredRow> rowOf(const std::string& key, const Value& value) {
    if (value.text()) return StoredRow{key, textKind, *value.text()};
    auto content = archivedText(value);
    if (!content) return std::nullopt;
    return StoredRow{key, archiveKind, std::move(*content)};
}

bool bindBytes(sqlite3_stmt* statement, int index, const std::string& bytes) {
    // A null pointer would bind NULL; the empty key is a key like any other.
    return sqlite3_bind_blob64(statement, index, bytes.empty() ? "" : bytes.data(), bytes.size(),
                               SQLITE_STATIC) == SQLITE_OK;
}

bool write(sqlite3* database, const StoredRow& row) {
    const auto statement = prepare(database, setStatement);
    return statement && bindBytes(statement.get(), 1, row.key) &&
           sqlite3_bind_text(statement.get(), 2, row.kind.c_str(), -1, SQLITE_STATIC) == SQLITE_OK &&
           bindBytes(statement.get(), 3, row.content) && sqlite3_step(statement.get()) == SQLITE_DONE;
}

bool remove(sqlite3* database, const std::string& key) {
    const auto statement = prepare(database, removeStatement);
    return statement && bindBytes(statement.get(), 1, key) && sqlite3_step(statement.get()) == SQLITE_DONE;
}

bool writeAll(sqlite3* database, const std::vector<StoredRow>& rows, bool whole) {
    return run(database, tableStatement) && run(database, "BEGIN") &&
           std::all_of(rows.begin(), rows.end(),
                       [&](const StoredRow& row) { return write(database, row); }) &&
           (whole || run(database, keepLossStatement)) && run(database, "COMMIT");
}

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

std::filesystem::path withSuffix(const std::filesystem::path& file, const std::string& suffix) {
    return file.string() + suffix;
}

std::filesystem::path freeNameBeside(const std::filesystem::path& file) {
    std::error_code error;
    int number = 1;
    while (number < 1000 &&
           std::filesystem::exists(withSuffix(file, ".damaged-" + std::to_string(number)), error))
        ++number;
    return withSuffix(file, ".damaged-" + std::to_string(number));
}

/// In an order in which a start in between finds the damaged file or the new one, and never none; and never
/// the new one with the old one's log.
bool exchangeFiles(const std::filesystem::path& file, const std::filesystem::path& fresh,
                   const std::filesystem::path& aside) {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::create_hard_link(file, aside, error);
    if (error) fs::copy_file(file, aside, error);  // not every file system has links
    if (error) return false;
    fs::rename(withSuffix(file, "-wal"), withSuffix(aside, "-wal"), error);
    fs::remove(withSuffix(file, "-shm"), error);
    if (fs::exists(withSuffix(file, "-wal"), error)) return false;
    fs::rename(fresh, file, error);
    return !error;
}

bool isDamage(int code) {
    // SQLITE_ERROR: a database, but with tables that are none of ours.
    constexpr std::array strange{SQLITE_NOTADB, SQLITE_CORRUPT, SQLITE_ERROR};
    return std::find(strange.begin(), strange.end(), code) != strange.end();
}

/// One program at a time in this folder, as far as its file system knows of locks.
class FolderLock final {
public:
    explicit FolderLock(const std::filesystem::path& folder)
        : m_folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        if (m_folder >= 0) ::flock(m_folder, LOCK_EX);
    }
    ~FolderLock() {
        if (m_folder >= 0) ::close(m_folder);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    const int m_folder;
};

}  // namespace

SqliteUserDefaults::SqliteUserDefaults(std::filesystem::path file, std::function<void()> keptChanged)
    : m_file(std::move(file)), m_keptChanged(std::move(keptChanged)) {
    constexpr Access whole{SQLITE_OPEN_READWRITE, "", openStatements};
    // How a store that can't be written can still be read.
    constexpr std::array others{
        Access{SQLITE_OPEN_READWRITE, "",
               "PRAGMA locking_mode = EXCLUSIVE"},  // on a full disk: makes no file
        Access{SQLITE_OPEN_READONLY, "", ""},
        Access{SQLITE_OPEN_READONLY, "?immutable=1", ""},  // in a folder that can't be written
    };
    if (begin() && isEmptied()) {
        m_error = "it is empty";
        if (rescue(false)) return;
    } else if (read(whole) || (isDamage(m_code) && rescue(false))) {
        return;
    }
    const auto why = m_error;
    const bool known = !m_contents.entries.empty() ||
                       std::any_of(others.begin(), others.end(), [&](const Access& a) { return read(a); });
    m_database.reset();
    m_failing = true;
    logLine("choices will not be remembered" + std::string{known ? "" : ", and none are known"} + ": " +
            m_file.string() + ": " + why);
}

SqliteUserDefaults::~SqliteUserDefaults() {
    synchronize();
}

bool SqliteUserDefaults::read(const Access& access) {
    m_contents = {};
    m_database.reset();
    m_database = open(m_file, access, m_error, m_code);
    if (!m_database) return false;
    if (load()) return true;
    m_code = sqlite3_errcode(m_database.get());
    m_error = sqlite3_errmsg(m_database.get());
    m_database.reset();
    return false;
}

sqlite::Database SqliteUserDefaults::open(const std::filesystem::path& file, const Access& access,
                                          std::string& error, int& code) {
    sqlite3* made = nullptr;
    code = sqlite3_open_v2((uriOf(file) + access.parameters).c_str(), &made, access.flags | SQLITE_OPEN_URI,
                           nullptr);
    sqlite::Database database{made};
    if (database) sqlite3_busy_timeout(database.get(), sqlite::busyMilliseconds);
    if (code == SQLITE_OK && run(database.get(), access.statements)) return database;
    code = database ? sqlite3_errcode(database.get()) : SQLITE_NOMEM;
    error = database ? sqlite3_errmsg(database.get()) : "out of memory";
    return nullptr;
}

bool SqliteUserDefaults::makeFile(const std::filesystem::path& file, const std::vector<StoredRow>& rows,
                                  bool whole) {
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    const auto database = open(file, {SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, "", ""}, m_error, m_code);
    if (!database) return false;
    if (writeAll(database.get(), rows, whole)) return true;
    m_code = sqlite3_errcode(database.get());
    m_error = sqlite3_errmsg(database.get());
    return false;
}

bool SqliteUserDefaults::begin() {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::create_directories(m_file.parent_path(), error);
    const FolderLock lock{m_file.parent_path()};
    if (fs::exists(m_file, error)) return true;
    const auto fresh = withSuffix(m_file, ".new");
    if (makeFile(fresh, {}, true)) {
        for (const auto* rest : {"-wal", "-shm"})  // of a file that was taken away
            fs::remove(withSuffix(m_file, rest), error);
        fs::rename(fresh, m_file, error);
        if (!error) return true;
    }
    fs::remove(fresh, error);
    return false;
}

bool SqliteUserDefaults::isEmptied() const {
    std::error_code error;
    return std::filesystem::file_size(m_file, error) == 0;
}

bool SqliteUserDefaults::rescue(bool whole) {
    m_database.reset();
    const auto why = m_error;
    const auto rows = rowsOfDamagedStore(m_file);
    const auto fresh = withSuffix(m_file, ".new");
    const auto aside = freeNameBeside(m_file);
    if (makeFile(fresh, rows, whole) && exchangeFiles(m_file, fresh, aside)) {
        logLine("the store of choices was damaged: " + why + "; " + std::to_string(rows.size()) +
                " entries came over into a new one, and the old one is kept as " + aside.string());
        return read({SQLITE_OPEN_READWRITE, "", openStatements});
    }
    m_error = why;
    std::error_code ignored;
    std::string error;
    std::filesystem::remove(fresh, ignored);  // the damaged one stays, and what it tells is known
    for (const auto& row : rows) {
        if (auto value = valueOf(row.kind, row.content, error))
            m_contents.entries.insert_or_assign(row.key, std::move(*value));
    }
    return false;
}

void SqliteUserDefaults::setAside(const std::string& key, const std::string& why, const Value* rest,
                                  Contents& fresh) const {
    const auto statement = prepare(m_database.get(), moveStatement);
    std::string aside;
    bool moved = false;
    for (int number = 1; statement && !moved && number < 1000; ++number) {
        aside = keyOfUnreadable(key, number);
        sqlite3_reset(statement.get());
        moved = bindBytes(statement.get(), 1, aside) && bindBytes(statement.get(), 2, key) &&
                sqlite3_step(statement.get()) == SQLITE_DONE;
    }
    fresh.unreadable.insert(moved ? aside : keyOfUnreadable(key, 1));
    if (const auto row = rest && moved ? rowOf(key, *rest) : std::nullopt)
        static_cast<void>(write(m_database.get(), *row));
    std::string line = rest ? "a part of the stored entry \"" : "the stored entry \"";
    line.append(key).append("\" can't be read");
    if (moved) line.append(rest ? ", all of it" : "").append(" and is kept as \"").append(aside).append("\"");
    logLine(line.append(": ").append(why));
}

bool SqliteUserDefaults::load() const {
    auto* const database = m_database.get();
    Contents fresh;
    fresh.version = numberFrom(database, "PRAGMA data_version");  // first, so that no commit is missed
    fresh.whole = numberFrom(database, lossStatement) == 0;
    auto statement = prepare(database, readStatement);
    if (!statement) return false;
    std::vector<std::pair<std::string, std::string>> unreadable;  // keys, and why
    int step = SQLITE_DONE;
    while ((step = sqlite3_step(statement.get())) == SQLITE_ROW) {
        auto key = column(statement.get(), 0);
        std::string error;
        auto value = valueOf(column(statement.get(), 1), column(statement.get(), 2), error);
        const bool standsAside = !originOfUnreadable(key).empty();
        if (!error.empty() && standsAside) {
            fresh.unreadable.insert(key);
        } else {
            if (!error.empty()) unreadable.emplace_back(key, std::move(error));
            if (value) fresh.entries.insert_or_assign(std::move(key), std::move(*value));
        }
    }
    statement.reset();
    if (step != SQLITE_DONE) return false;
    for (const auto& [key, why] : unreadable) {
        const auto rest = fresh.entries.find(key);
        setAside(key, why, rest == fresh.entries.end() ? nullptr : &rest->second, fresh);
    }
    for (const auto& key : m_changed) {
        fresh.entries.erase(key);
        const auto own = m_contents.entries.find(key);
        if (own != m_contents.entries.end()) fresh.entries.insert(*own);
    }
    m_contents = std::move(fresh);
    return true;
}

void SqliteUserDefaults::follow() const {
    if (!m_database) return;
    const auto version = numberFrom(m_database.get(), "PRAGMA data_version");
    // What can't be read now stays as it was known.
    if (version && version != m_contents.version && !load()) m_contents.version = version;
}

Value SqliteUserDefaults::objectForKey(std::string_view key) const {
    const std::scoped_lock lock{m_mutex};
    follow();
    const auto found = m_contents.entries.find(key);
    return found == m_contents.entries.end() ? Value{} : found->second;
}

void SqliteUserDefaults::setObjectForKey(Value object, std::string_view key) {
    const std::scoped_lock lock{m_mutex};
    m_contents.entries.insert_or_assign(std::string{key}, std::move(object));
    m_changed.emplace(key);
}

void SqliteUserDefaults::removeObjectForKey(std::string_view key) {
    const std::scoped_lock lock{m_mutex};
    const auto found = m_contents.entries.find(key);
    if (found != m_contents.entries.end()) m_contents.entries.erase(found);
    m_changed.emplace(key);
}

bool SqliteUserDefaults::isMoved() const {
    int moved = 0;
    sqlite3_file_control(m_database.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

void SqliteUserDefaults::reopen() {
    std::error_code error;
    const bool another = std::filesystem::exists(m_file, error);
    m_database.reset();
    if (!begin()) return;
    m_database = open(m_file, {SQLITE_OPEN_READWRITE, "", openStatements}, m_error, m_code);
    if (!m_database) return;
    m_contents.version.reset();
    if (another) return;  // what stands there stays, except for keys set here
    for (const auto& [key, value] : m_contents.entries)
        m_changed.insert(key);
    if (!m_contents.whole) run(m_database.get(), keepLossStatement);
}

bool SqliteUserDefaults::commit() {
    auto* const database = m_database.get();
    std::set<std::string, std::less<>> left;
    bool kept = run(database, "BEGIN IMMEDIATE");
    for (auto key = m_changed.begin(); kept && key != m_changed.end(); ++key) {
        const auto entry = m_contents.entries.find(*key);
        if (entry == m_contents.entries.end()) {
            kept = remove(database, *key);
        } else if (const auto row = rowOf(*key, entry->second)) {
            kept = write(database, *row);
        } else {
            left.insert(*key);
        }
    }
    kept = kept && run(database, "COMMIT");
    if (kept) {
        m_changed = std::move(left);
        if (!m_changed.empty()) m_error = "the entry \"" + *m_changed.begin() + "\" nests too deep";
        m_code = SQLITE_OK;
    } else {
        m_code = sqlite3_errcode(database);
        m_error = sqlite3_errmsg(database);
        run(database, "ROLLBACK");
    }
    return m_changed.empty();
}

bool SqliteUserDefaults::synchronize() {
    bool kept = false;
    bool changed = false;
    {
        const std::scoped_lock lock{m_mutex};
        const bool before = m_database && !m_failing;
        kept = keep();
        changed = before != (m_database && !m_failing);
    }
    if (changed && m_keptChanged) m_keptChanged();
    return kept;
}

bool SqliteUserDefaults::keep() {
    if (m_changed.empty()) return true;
    if (m_database && isMoved()) {
        logLine("the store of choices was taken away; " + m_file.string() + " is made anew");
        reopen();
    } else if (!m_database) {
        reopen();  // a disk that was full may have room by now
    }
    bool kept = m_database && commit();
    if (!kept && m_database && (m_code == SQLITE_CORRUPT || m_code == SQLITE_NOTADB)) {
        // Damage that only the write has met: all entries are in memory, and go into a new file.
        const auto all = m_contents;
        const bool made = rescue(all.whole);
        for (const auto& [key, value] : all.entries)
            m_changed.insert(key);
        const auto unreadable = m_contents.unreadable;
        m_contents = all;
        m_contents.unreadable.insert(unreadable.begin(), unreadable.end());
        kept = made && commit();
    }
    if (!kept && !m_failing) logLine("choices could not be kept: " + m_error);
    if (kept && m_failing) logLine("choices are kept again in " + m_file.string());
    m_failing = !kept;
    return kept;
}

std::vector<std::string> SqliteUserDefaults::keys() const {
    const std::scoped_lock lock{m_mutex};
    follow();
    std::vector<std::string> result{m_contents.unreadable.begin(), m_contents.unreadable.end()};
    for (const auto& [key, value] : m_contents.entries)
        result.push_back(key);
    std::sort(result.begin(), result.end());
    return result;
}

bool SqliteUserDefaults::isWhole() const {
    const std::scoped_lock lock{m_mutex};
    return m_contents.whole;
}

bool SqliteUserDefaults::isKept() const {
    const std::scoped_lock lock{m_mutex};
    return m_database && !m_failing;
}

}  // namespace torv
