#include "datalog/Recordings.h"

#include <algorithm>
#include <array>
#include <system_error>

#include "datalog/RecordingReader.h"
#include "datalog/RecordingWriter.h"
#include "platform/Platform.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr auto extension = ".itorv-drive";
// Of an SQLite file: it, and what may stand beside it.
constexpr std::array<const char*, 4> parts{"", "-wal", "-shm", "-journal"};

std::string sizeText(std::uintmax_t bytes) {
    constexpr double kilo = 1000;
    const auto count = static_cast<double>(bytes);
    if (count < kilo * kilo) return fixedText(count / kilo, 0) + " kB";
    return fixedText(count / kilo / kilo, 1) + " MB";
}

/// What a program left that was killed before there was anything in it. One that is being made bears the name
/// for an instant only.
bool isLeftOver(const std::filesystem::path& file) {
    constexpr std::chrono::minutes instant{1};
    std::error_code none;
    const auto written = std::filesystem::last_write_time(file, none);
    return file.extension() == RecordingWriter::unfinished && file.stem().extension() == extension && !none &&
           std::filesystem::file_time_type::clock::now() - written > instant;
}

RecordingInfo infoOf(const std::filesystem::path& file) {
    RecordingInfo info;
    info.file = file;
    for (const auto* part : parts) {
        std::error_code none;
        const auto bytes = std::filesystem::file_size(file.string() + part, none);
        if (!none) info.bytes += bytes;
    }
    const auto reader = RecordingReader::open(file, info.trouble);
    info.name = reader ? reader->drive().name : file.filename().string();
    if (!reader) return info;
    info.vehicle = reader->drive().vehicle;
    info.begun = reader->drive().begun;
    info.length = std::chrono::floor<std::chrono::seconds>(reader->length());
    return info;
}

}  // namespace

std::string RecordingInfo::details() const {
    if (!trouble.empty()) return trouble;
    return dateText(begun) + "   " + lengthText(length) + "   " + vehicle + "   " + sizeText(bytes);
}

std::filesystem::path recordingsFolder() {
    return Platform::current().resources().documentsDirectory() / "recordings";
}

std::filesystem::path newRecordingFile() {
    auto stem = isoText(wallNow()).substr(0, std::string_view{"2026-11-24T02:52:43"}.size());
    std::erase(stem, ':');
    auto file = recordingsFolder() / (stem + extension);
    std::error_code none;
    for (int number = 2; std::filesystem::exists(file, none); ++number)
        file = recordingsFolder() / (stem + "-" + std::to_string(number) + extension);
    return file;
}

std::vector<RecordingInfo> recordings() {
    std::vector<RecordingInfo> all;
    std::vector<std::filesystem::path> unfinished;
    std::error_code none;
    for (std::filesystem::directory_iterator entry{recordingsFolder(), none}, end; !none && entry != end;
         entry.increment(none)) {
        const auto& file = entry->path();
        if (file.extension() == extension) all.push_back(infoOf(file));
        if (isLeftOver(file)) unfinished.push_back(file);
    }
    for (const auto& file : unfinished)
        static_cast<void>(removeRecording(file));
    std::ranges::sort(all, [](const RecordingInfo& a, const RecordingInfo& b) {
        return std::tie(a.begun, a.file) > std::tie(b.begun, b.file);
    });
    return all;
}

std::string removeRecording(const std::filesystem::path& file) {
    if (RecordingReader::isOpen(file)) return "It is being recorded, or read.";
    std::error_code error;
    for (const auto* part : parts) {
        std::filesystem::remove(file.string() + part, error);
        if (error) return "It can't be deleted (" + error.message() + ").";
    }
    return {};
}

std::string renameRecording(const std::filesystem::path& file, const std::string& name) {
    std::string error;
    auto reader = RecordingReader::open(file, error);
    if (!reader) return error;
    return reader->rename(name) ? "" : "It can't be written.";
}

}  // namespace torv
