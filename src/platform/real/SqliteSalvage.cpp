#include "platform/real/SqliteSalvage.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <span>
#include <system_error>
#include <utility>

#include "sqlite/Sqlite.h"

namespace torv {
namespace {

using sqlite::column, sqlite::prepare, sqlite::run;

using Bytes = std::vector<std::uint8_t>;

constexpr std::uintmax_t mostBytes = 1U << 30U;
constexpr std::size_t usualPageSize = 4096;
constexpr std::uint8_t tableLeaf = 0x0D;  // first byte of such a page
constexpr std::size_t pageCountPlace = 28;

sqlite::Database inMemory() {
    sqlite3* database = nullptr;
    sqlite3_open(":memory:", &database);
    return sqlite::Database{database};
}

Bytes contentsOf(const std::filesystem::path& file) {
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    if (error || size > mostBytes) return {};
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

std::size_t bigEndian(std::span<const std::uint8_t> bytes, std::size_t place) {
    std::size_t number = 0;
    for (const auto byte : bytes.subspan(place, 4))
        number = number << 8U | byte;
    return number;
}

/// As the file's header says, where that is plausible; every store of ours has the usual one.
std::size_t pageSizeOf(const Bytes& image) {
    if (image.size() < usualPageSize || std::memcmp(image.data(), "SQLite format 3", 16) != 0)
        return usualPageSize;
    const std::size_t size = image[16] * 256U + image[17];
    return size >= 512 && size <= 32768 && (size & (size - 1)) == 0 ? size : usualPageSize;
}

/// Puts the pages of the log into the image, up to the last commit. A frame of an older log has other salts.
void takeLog(Bytes& image, const Bytes& log, std::size_t pageSize) {
    constexpr std::size_t heading = 32;
    constexpr std::size_t frameHeading = 24;
    const auto frameSize = frameHeading + pageSize;
    std::vector<std::pair<std::size_t, std::size_t>> pending;  // page, and place in the log
    for (auto at = heading; at + frameSize <= log.size(); at += frameSize) {
        if (!std::equal(&log[16], &log[24], &log[at + 8])) break;
        pending.emplace_back(bigEndian(log, at), at + frameHeading);
        const auto pages = bigEndian(log, at + 4);  // of the whole file, in the last frame of a commit
        if (pages == 0) continue;
        if (pages > mostBytes / pageSize) break;
        image.resize(pages * pageSize);
        for (const auto& [page, place] : pending) {
            if (page < 1 || page > pages) continue;
            std::copy_n(&log[place], pageSize, &image[(page - 1) * pageSize]);
        }
        pending.clear();
    }
}

/// The first page of a sound store of this page size, whose table begins on page 2.
Bytes soundFirstPage(std::size_t pageSize) {
    const auto sound = inMemory();
    run(sound.get(),
        "PRAGMA page_size = " + std::to_string(pageSize) + "; CREATE TABLE defaults (key, kind, value)");
    sqlite3_int64 size = 0;
    const std::unique_ptr<std::uint8_t, decltype(&sqlite3_free)> bytes{
        sqlite3_serialize(sound.get(), "main", &size, 0), &sqlite3_free};
    if (!bytes || size < static_cast<sqlite3_int64>(pageSize)) return {};
    return {bytes.get(), bytes.get() + pageSize};
}

using Newest = std::map<std::string, std::pair<sqlite3_int64, StoredRow>, std::less<>>;

/// The rows on one leaf page, which SQLite meanwhile takes for the whole table. One by one, so that a row
/// whose overflow pages are damaged does not end the others.
void takeLeaf(sqlite3* database, std::size_t page, Newest& rows) {
    const auto turn = "UPDATE sqlite_schema SET rootpage = " + std::to_string(page);
    if (!run(database, turn) || !run(database, "PRAGMA writable_schema = RESET") ||
        !run(database, "PRAGMA writable_schema = ON"))
        return;
    const auto numbers = prepare(database, "SELECT rowid FROM defaults");
    const auto row = prepare(database,
                             "SELECT key, kind, value FROM defaults WHERE rowid = ? AND typeof(key) = 'blob' "
                             "AND kind IN ('text', 'archive')");
    while (numbers && row && sqlite3_step(numbers.get()) == SQLITE_ROW) {
        const auto number = sqlite3_column_int64(numbers.get(), 0);
        sqlite3_reset(row.get());
        sqlite3_bind_int64(row.get(), 1, number);
        if (sqlite3_step(row.get()) != SQLITE_ROW) continue;
        auto key = column(row.get(), 0);
        auto& newest = rows[key];
        if (!newest.second.kind.empty() && newest.first > number) continue;
        newest = {number, {std::move(key), column(row.get(), 1), column(row.get(), 2)}};
    }
}

}  // namespace

std::vector<StoredRow> rowsOfDamagedStore(const std::filesystem::path& file) {
    auto image = contentsOf(file);
    const auto pageSize = pageSizeOf(image);
    takeLog(image, contentsOf(file.string() + "-wal"), pageSize);
    const auto pages = image.size() / pageSize;
    image.resize(pages * pageSize);
    const auto first = soundFirstPage(pageSize);
    if (pages < 2 || first.empty()) return {};
    std::vector<std::size_t> leaves;
    for (std::size_t page = 2; page <= pages; ++page) {
        if (image[(page - 1) * pageSize] == tableLeaf) leaves.push_back(page);
    }
    std::copy(first.begin(), first.end(), image.begin());
    for (std::size_t i = 0; i < 4; ++i)
        image[pageCountPlace + i] = static_cast<std::uint8_t>(pages >> (24 - 8 * i));

    const auto database = inMemory();
    const auto size = static_cast<sqlite3_int64>(image.size());
    if (sqlite3_deserialize(database.get(), "main", image.data(), size, size, 0) != SQLITE_OK) return {};
    run(database.get(), "PRAGMA cell_size_check = ON; PRAGMA writable_schema = ON");
    Newest newest;
    for (const auto page : leaves)
        takeLeaf(database.get(), page, newest);
    std::vector<StoredRow> rows;
    for (auto& [key, row] : newest)
        rows.push_back(std::move(row.second));
    return rows;
}

}  // namespace torv
