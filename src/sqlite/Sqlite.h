#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>

namespace torv::sqlite {

/// What SQLite hands out, owned. One thread at a time, like the connection.
struct Close {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, Close>;
using Statement = std::unique_ptr<sqlite3_stmt, Close>;

/// How long a call waits for another program, or another part of this one, that is at the same file.
inline constexpr int busyMilliseconds = 2000;

/// Nothing when the text can't be prepared: the connection then tells why.
[[nodiscard]] inline Statement prepare(sqlite3* database, const char* text) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
    return Statement{statement};
}

inline bool run(sqlite3* database, const std::string& statements) {
    return sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

/// The bytes of a text or a blob of the row that was stepped to; empty for NULL.
[[nodiscard]] inline std::string column(sqlite3_stmt* statement, int index) {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, index));
    return bytes ? std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, index)))
                 : std::string{};
}

}  // namespace torv::sqlite
