#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "support/TimeTexts.h"

namespace torv {

/// One row of the list of recordings.
struct RecordingInfo {
    std::filesystem::path file;
    std::string name;
    std::string vehicle;
    WallTime begun;
    std::chrono::seconds length{};
    std::uintmax_t bytes = 0;  ///< on the disk, with what stands beside it
    std::string trouble;       ///< why it can't be read; empty when it can

    /// "2026-11-24 14:52   12:03   Truck   3.1 MB".
    [[nodiscard]] std::string details() const;
};

// The folder in which the program keeps its recordings, a file for each. Any thread.

[[nodiscard]] std::filesystem::path recordingsFolder();
/// For one that begins now. No such file is there.
[[nodiscard]] std::filesystem::path newRecordingFile();
/// The newest first. Removes what was begun long ago and never had a name.
[[nodiscard]] std::vector<RecordingInfo> recordings();
/// Empty when it is gone, else why it is not, in a sentence: one that somebody has open stays.
[[nodiscard]] std::string removeRecording(const std::filesystem::path& file);
[[nodiscard]] std::string renameRecording(const std::filesystem::path& file, const std::string& name);

}  // namespace torv
