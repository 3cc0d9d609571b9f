#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "sqlite/Sqlite.h"

namespace torv {

/// The names of the tuning profiles, oldest first: the table FIELDS of "data.sqlite3" in the user's documents
/// folder. Main thread.
///
/// Nothing here keeps a name from standing there twice: callers ask `count` before `add`. A list that can't
/// be opened, read or written ends the process with the reason; the file stays as it is, and the next start
/// is told where it is (`damagedFile`).
class ProfileList final {
public:
    /// Opens the file, and makes it and its table where they are missing.
    ProfileList();

    [[nodiscard]] static std::filesystem::path dataFilePath();

    [[nodiscard]] std::vector<std::string> names() const;
    /// How many rows bear exactly this name.
    [[nodiscard]] int count(const std::string& name) const;
    void add(const std::string& name);
    void remove(const std::string& name);

    /// Whether it can be opened and read, without ending the process; false also for one that ended an
    /// earlier process.
    [[nodiscard]] static bool isUsable();
    /// Where the list stands that ended an earlier process; empty when there is none.
    [[nodiscard]] static std::filesystem::path damagedFile();
    /// Whether it can be used by now, and is then forgotten as damaged.
    static bool tryAgain();
    /// Puts that file aside under another name, and begins a new list of what the user defaults hold.
    /// False when the file can't be moved.
    static bool beginAnew();

private:
    [[nodiscard]] static bool canBeRead();
    /// With what went wrong in `error`, which is empty when all is well.
    [[nodiscard]] static sqlite::Database open(std::string& error);
    [[noreturn]] void fail(const std::string& text) const;

    sqlite::Database m_database;
};

}  // namespace torv
