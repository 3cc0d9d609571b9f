#include "diagnostics/TroubleCodeDatabase.h"

#include <sqlite3.h>

#include <memory>

#include "platform/Platform.h"

namespace torv {
namespace {

constexpr auto statement = "SELECT * FROM dtc";

struct Close {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt* rows) const { sqlite3_finalize(rows); }
};

std::string column(sqlite3_stmt* row, int index) {
    const auto* text = sqlite3_column_text(row, index);
    return text ? reinterpret_cast<const char*>(text) : std::string{};
}

}  // namespace

std::optional<TroubleCodeDatabase::Texts> TroubleCodeDatabase::load(std::string& error) {
    const auto file = Platform::current().resources().pathForResourceOfType("DTCDB", "sqlite");
    return load(file.value_or("DTCDB.sqlite"), error);
}

std::optional<TroubleCodeDatabase::Texts> TroubleCodeDatabase::load(const std::filesystem::path& file,
                                                                    std::string& error) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const std::unique_ptr<sqlite3, Close> database{opened};
    if (result != SQLITE_OK) {
        error = "Failed to open database (" + file.string() + ")";
        return std::nullopt;
    }
    const auto refuse = [&]() -> std::optional<Texts> {
        error = std::string{"Error while creating add statement. '"} + sqlite3_errmsg(opened) + "' (" +
                file.string() + ")";
        return std::nullopt;
    };
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(opened, statement, -1, &prepared, nullptr) != SQLITE_OK) return refuse();
    const std::unique_ptr<sqlite3_stmt, Close> rows{prepared};
    Texts texts;
    int step = SQLITE_DONE;
    while ((step = sqlite3_step(prepared)) == SQLITE_ROW)
        texts.insert_or_assign(column(prepared, 0), column(prepared, 1));
    if (step != SQLITE_DONE) return refuse();
    return texts;
}

}  // namespace torv
