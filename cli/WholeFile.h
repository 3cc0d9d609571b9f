#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace itorvctl {

/// A file that bears its name only once it is whole; until then it has ".part" behind it. A pipe or a device
/// that is already there is written to directly.
class WholeFile final {
public:
    explicit WholeFile(std::filesystem::path file)
        : m_file(std::move(file)), m_written(placeFor(m_file)), m_stream(m_written, std::ios::binary) {}
    ~WholeFile() {
        std::error_code ignored;
        if (m_written != m_file) std::filesystem::remove(m_written, ignored);
    }
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// False when it could not be kept.
    bool write(std::string_view piece) {
        return static_cast<bool>(m_stream.write(piece.data(), static_cast<std::streamsize>(piece.size())));
    }
    /// False when it is not there.
    [[nodiscard]] bool finish() {
        m_stream.close();
        std::error_code error;
        if (m_stream && m_written != m_file) std::filesystem::rename(m_written, m_file, error);
        return m_stream && !error;
    }

private:
    [[nodiscard]] static std::filesystem::path placeFor(const std::filesystem::path& file) {
        std::error_code none;
        const auto type = std::filesystem::status(file, none).type();
        const bool isFile =
            type == std::filesystem::file_type::regular || type == std::filesystem::file_type::not_found;
        return isFile ? std::filesystem::path{file.string() + ".part"} : file;
    }

    const std::filesystem::path m_file;
    const std::filesystem::path m_written;
    std::ofstream m_stream;
};

}  // namespace itorvctl
