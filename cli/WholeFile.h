#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace itorvctl {

/// A file that bears its name only once it is whole; until then it has ".part" behind it.
class WholeFile final {
public:
    explicit WholeFile(std::filesystem::path file)
        : m_file(std::move(file)), m_stream(half(), std::ios::binary) {}
    ~WholeFile() {
        std::error_code ignored;
        std::filesystem::remove(half(), ignored);
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
        if (m_stream) std::filesystem::rename(half(), m_file, error);
        return m_stream && !error;
    }

private:
    [[nodiscard]] std::filesystem::path half() const { return m_file.string() + ".part"; }

    const std::filesystem::path m_file;
    std::ofstream m_stream;
};

}  // namespace itorvctl
