#pragma once

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

namespace torv {

/// A file that bears its name only once all of it is on the disk; until then it has ".part" behind it. What
/// is there and is no file, a pipe or a device, is written to as it stands. Any thread.
class WholeFile final {
public:
    explicit WholeFile(std::filesystem::path file)
        : m_file(std::move(file)),
          m_written(placeFor(m_file)),
          m_stream(std::fopen(m_written.c_str(), "wbe")) {}
    ~WholeFile() {
        std::error_code ignored;
        if (m_written != m_file) std::filesystem::remove(m_written, ignored);
    }
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// False when it could not be kept.
    [[nodiscard]] bool write(std::string_view piece) {
        return m_stream && std::fwrite(piece.data(), 1, piece.size(), m_stream.get()) == piece.size();
    }
    /// False when it is not there. The last call.
    [[nodiscard]] bool finish() {
        if (!m_stream) return false;
        const bool isFile = m_written != m_file;
        bool kept = std::ferror(m_stream.get()) == 0 && std::fflush(m_stream.get()) == 0;
        // Before the name, so that after a power cut there is no empty file under it.
        kept = kept && (!isFile || ::fdatasync(::fileno(m_stream.get())) == 0);
        kept = std::fclose(m_stream.release()) == 0 && kept;
        std::error_code error;
        if (kept && isFile) std::filesystem::rename(m_written, m_file, error);
        return kept && !error;
    }

private:
    struct Close {
        void operator()(std::FILE* stream) const { static_cast<void>(std::fclose(stream)); }
    };

    [[nodiscard]] static std::filesystem::path placeFor(const std::filesystem::path& file) {
        std::error_code none;
        const auto type = std::filesystem::status(file, none).type();
        const bool isFile =
            type == std::filesystem::file_type::regular || type == std::filesystem::file_type::not_found;
        return isFile ? std::filesystem::path{file.string() + ".part"} : file;
    }

    const std::filesystem::path m_file;
    const std::filesystem::path m_written;
    std::unique_ptr<std::FILE, Close> m_stream;
};

}  // namespace torv
