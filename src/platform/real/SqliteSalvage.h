// What can still be read of a damaged store. Any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace torv {

/// A row as the store holds it.
struct StoredRow {
    std::string key;
    std::string kind;
    std::string content;
};

/// The rows of the store's table that stand on readable pages, in no order; each key once, its newest row.
///
/// The first page and the inner pages of the table are not needed: each leaf page is read by itself, with the
/// committed part of the write-ahead log in place. So a damaged page takes with it what stands on it, and no
/// more. The file is not changed. Nothing of a file that can't be read, or of more than 1 GiB.
[[nodiscard]] std::vector<StoredRow> rowsOfDamagedStore(const std::filesystem::path& file);

}  // namespace torv
