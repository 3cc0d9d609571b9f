#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "platform/UserDefaults.h"
#include "platform/real/SqliteSalvage.h"
#include "sqlite/Sqlite.h"

namespace torv {

/// User defaults in one SQLite file with a write-ahead log: a commit per `synchronize`, on disk when it
/// returns.
///
/// Entries are answered from memory, which follows what another program commits to the same file; a commit
/// writes the keys that this one has set and no other. An entry that can't be read is set aside under another
/// key, with what can be read of it in its place. A damaged file is kept under another name, and a new one
/// begun with the entries that can still be read, and a mark that others were lost. A file that is taken away
/// while the program runs is made anew. A new file comes under its name once it is whole, so that an empty
/// one is a damaged one. Where the file can't be written, what it holds is read all the same,
/// changes live in memory only, and one line in the log says so. Any thread.
class SqliteUserDefaults final : public UserDefaults {
public:
    /// `keptChanged` hears when `isKept` has changed, on the thread of the `synchronize` that changed it.
    explicit SqliteUserDefaults(std::filesystem::path file, std::function<void()> keptChanged = {});
    /// Keeps what has been set since the last `synchronize`.
    ~SqliteUserDefaults() override;

    [[nodiscard]] Value objectForKey(std::string_view key) const override;
    void setObjectForKey(Value object, std::string_view key) override;
    void removeObjectForKey(std::string_view key) override;
    bool synchronize() override;
    [[nodiscard]] std::vector<std::string> keys() const override;
    [[nodiscard]] bool isWhole() const override;
    [[nodiscard]] bool isKept() const override;

private:
    struct Access;
    /// The store as it was last read, with what has been set since.
    struct Contents {
        std::map<std::string, Value, std::less<>> entries;
        std::set<std::string, std::less<>> unreadable;  ///< keys of entries that stand aside
        bool whole = false;                             ///< nothing of it was ever lost
        std::optional<int> version;                     ///< moves with the commits of others
    };

    [[nodiscard]] static sqlite::Database open(const std::filesystem::path& file, const Access& access,
                                               std::string& error, int& code);
    [[nodiscard]] bool read(const Access& access);
    [[nodiscard]] bool load() const;
    void follow() const;
    void setAside(const std::string& key, const std::string& why, const Value* rest, Contents& fresh) const;
    [[nodiscard]] bool makeFile(const std::filesystem::path& file, const std::vector<StoredRow>& rows,
                                bool whole);
    /// Sees to it that there is a file.
    [[nodiscard]] bool begin();
    [[nodiscard]] bool isEmptied() const;
    [[nodiscard]] bool rescue(bool whole);
    [[nodiscard]] bool isMoved() const;
    /// The file as it is, or a new one with all that is known.
    void reopen();
    [[nodiscard]] bool commit();
    [[nodiscard]] bool keep();

    const std::filesystem::path m_file;
    const std::function<void()> m_keptChanged;
    sqlite::Database m_database;  // null: in memory only
    std::string m_error;          // of the last access that failed
    int m_code = 0;
    bool m_failing = false;  // the last commit could not be kept, which has been said

    mutable std::mutex m_mutex;
    mutable Contents m_contents;                   // mutable: reading follows the file
    std::set<std::string, std::less<>> m_changed;  // keys that are not on disk yet
};

}  // namespace torv
