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
/// under another name and a new one begun. Where the file can't be opened or written, the entries live in
/// memory only, and one line in the log says so. Any thread, one call at a time.
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

    [[nodiscard]] bool open();
    [[nodiscard]] bool load();
    void setAside();
    [[nodiscard]] bool write(const std::string& key, const Value* value);

    const std::filesystem::path m_file;
    std::unique_ptr<sqlite3, Close> m_database;  // null: in memory only

    mutable std::mutex m_mutex;
    std::map<std::string, Value, std::less<>> m_entries;
    std::set<std::string, std::less<>> m_changed;  // keys, since the last commit
};

}  // namespace torv
