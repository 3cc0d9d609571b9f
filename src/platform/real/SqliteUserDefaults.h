#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "platform/UserDefaults.h"

struct sqlite3;

namespace torv {

/// User defaults in one SQLite file with a write-ahead log: a commit per `synchronize`, on disk when it
/// returns.
///
/// Entries are read once, at the start, and answered from memory. A file that is no database is set aside
/// under another name and a new one begun; an entry that can't be read is set aside under another key. Where
/// the file can't be written, what it holds is read all the same, changes live in memory only, and one line
/// in the log says so. Any thread, one call at a time.
class SqliteUserDefaults final : public UserDefaults {
public:
    explicit SqliteUserDefaults(std::filesystem::path file);
    /// Keeps what has been set since the last `synchronize`.
    ~SqliteUserDefaults() override;

    [[nodiscard]] Value objectForKey(std::string_view key) const override;
    void setObjectForKey(Value object, std::string_view key) override;
    void removeObjectForKey(std::string_view key) override;
    bool synchronize() override;
    [[nodiscard]] std::vector<std::string> keys() const override;

private:
    struct Close {
        void operator()(sqlite3* database) const;
    };

    struct Access;

    [[nodiscard]] bool read(const Access& access);
    [[nodiscard]] bool open(const Access& access);
    [[nodiscard]] bool load();
    void setAside();
    void setAside(const std::string& key, const std::string& why);
    [[nodiscard]] bool write(const std::string& key, const Value* value);

    const std::filesystem::path m_file;
    std::unique_ptr<sqlite3, Close> m_database;  // null: in memory only
    bool m_failing = false;                      // the last commit could not be kept, which has been said

    mutable std::mutex m_mutex;
    std::map<std::string, Value, std::less<>> m_entries;
    std::set<std::string, std::less<>> m_changed;  // keys, since the last commit
};

}  // namespace torv
