#include "diagnostics/TroubleCodeDatabase.h"

#include "platform/Platform.h"
#include "sqlite/Sqlite.h"

namespace torv {
namespace {

constexpr auto statement = "SELECT * FROM dtc";

}  // namespace

std::optional<TroubleCodeDatabase::Texts> TroubleCodeDatabase::load(std::string& error) {
    const auto file = Platform::current().resources().pathForResourceOfType("DTCDB", "sqlite");
    if (file) return load(*file, error);
    error = "Failed to open database (DTCDB.sqlite)";
    return std::nullopt;
}

std::optional<TroubleCodeDatabase::Texts> TroubleCodeDatabase::load(const std::filesystem::path& file,
                                                                    std::string& error) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const sqlite::Database database{opened};
    if (result != SQLITE_OK) {
        error = "Failed to open database (" + file.string() + ")";
        return std::nullopt;
    }
    const auto refuse = [&]() -> std::optional<Texts> {
        error = std::string{"Error while creating add statement. '"} + sqlite3_errmsg(opened) + "' (" +
                file.string() + ")";
        return std::nullopt;
    };
    const auto rows = sqlite::prepare(opened, statement);
    if (!rows) return refuse();
    Texts texts;
    int step = SQLITE_DONE;
    while ((step = sqlite3_step(rows.get())) == SQLITE_ROW)
        texts.insert_or_assign(sqlite::column(rows.get(), 0), sqlite::column(rows.get(), 1));
    if (step != SQLITE_DONE) return refuse();
    return texts;
}

}  // namespace torv
