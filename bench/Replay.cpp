#include "Replay.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>

namespace bench {
namespace {

struct Close {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

constexpr int mark = 0x69547276;  // "iTrv"
constexpr int form = 1;

int numberOf(sqlite3* database, const char* question) {
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(database, question, -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, Close> row{prepared};
    return row && sqlite3_step(prepared) == SQLITE_ROW ? sqlite3_column_int(prepared, 0) : 0;
}

/// The slot's bytes as they stand on the wire; from AID 220 up the first one is the length.
Bytes wireBytes(std::uint8_t aid, ByteView slot) {
    const auto told = slot.empty() ? std::size_t{1} : std::size_t{slot[0]};
    Bytes bytes(slot.begin(), slot.end());
    bytes.resize(aid < firstLongAid ? valueWidth(aid) : std::clamp<std::size_t>(told, 1, maxPayload - 1), 0);
    if (aid >= firstLongAid) bytes[0] = static_cast<std::uint8_t>(bytes.size());
    return bytes;
}

}  // namespace

std::optional<Replay> Replay::load(const std::filesystem::path& file, double speed, std::string& error) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    const std::unique_ptr<sqlite3, Close> database{opened};
    sqlite3_stmt* prepared = nullptr;
    if (result == SQLITE_OK && numberOf(opened, "PRAGMA user_version") > form) {
        error = file.string() + " was made by a newer version of iTorv";
        return std::nullopt;
    }
    const bool isRecording = result == SQLITE_OK && numberOf(opened, "PRAGMA application_id") == mark;
    const bool isDamaged = isRecording || sqlite3_errcode(opened) == SQLITE_CORRUPT;
    if (isRecording) {
        sqlite3_prepare_v2(opened, "SELECT aid, time, bytes FROM samples ORDER BY time", -1, &prepared,
                           nullptr);
    }
    const std::unique_ptr<sqlite3_stmt, Close> rows{prepared};
    int step = SQLITE_ERROR;
    Replay replay;
    replay.m_speed = speed;
    while (rows && (step = sqlite3_step(prepared)) == SQLITE_ROW) {
        const auto aid = sqlite3_column_int64(prepared, 0);
        if (aid < 0 || aid >= aidCount) continue;
        const auto* bytes = static_cast<const std::uint8_t*>(sqlite3_column_blob(prepared, 2));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(prepared, 2));
        const auto known = static_cast<std::uint8_t>(aid);
        replay.m_aids.insert(known);
        replay.m_samples.push_back(
            {std::chrono::nanoseconds{std::max<sqlite3_int64>(sqlite3_column_int64(prepared, 1), 0)},
             {known, wireBytes(known, {bytes, bytes ? size : 0})}});
    }
    if (step == SQLITE_DONE && !replay.m_samples.empty()) return replay;
    if (step == SQLITE_DONE) {
        error = file.string() + " has no values";
    } else {
        error = file.string() +
                (isDamaged ? " can't be read: " + std::string{sqlite3_errmsg(opened)} : " is no recording");
    }
    return std::nullopt;
}

void Replay::beginAt(Clock::time_point now) {
    if (!m_begun) m_begun = now;
}

std::optional<Replay::Clock::time_point> Replay::due() const {
    if (!m_begun || m_next == m_samples.size()) return std::nullopt;
    const std::chrono::duration<double, std::nano> since{static_cast<double>(m_samples[m_next].time.count()) /
                                                         m_speed};
    return *m_begun + std::chrono::duration_cast<Clock::duration>(since);
}

std::vector<Item> Replay::take() {
    std::vector<Item> items;
    std::size_t room = maxPayload;
    const auto time = m_samples[m_next].time;
    while (m_next < m_samples.size() && m_samples[m_next].time == time) {
        const auto& item = m_samples[m_next].item;
        if (item.value.size() + 1 > room) break;
        room -= item.value.size() + 1;
        items.push_back(item);
        ++m_next;
    }
    return items;
}

}  // namespace bench
