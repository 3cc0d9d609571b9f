#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "connection/Capture.h"
#include "connection/FrameText.h"
#include "session/LinkMonitor.h"

namespace torv {

/// Keeps every chunk and frame of the link in a capture. Each one is handed to the system at once, so that a
/// process that is killed loses nothing of it. Once something can't be written the capture ends: what is
/// there stays whole.
class CaptureWriter final : public LinkMonitor {
public:
    /// Called once, on the main thread.
    using Failed = std::function<void(const std::string& sentence)>;

    /// Makes the file; one that is there already is left alone. Null, with a sentence in `error`, when it
    /// can't be made. Main thread.
    [[nodiscard]] static std::shared_ptr<CaptureWriter> begin(const std::filesystem::path& file,
                                                              Failed failed, std::string& error);
    ~CaptureWriter() override;

    /// For whoever reads it: what the AIDs are called from here on. Main thread.
    void setNames(const AttributeNames& names);

    void attempted(const Endpoint& endpoint) override;
    void sessionCameUp() override;
    void connectionEnded(const Endpoint& endpoint, ByteStream::Reach how, bool hadSession) override;
    void frameSent(std::span<const std::uint8_t> frame, x2comTxResult) override;
    void chunkReceived(std::span<const std::uint8_t> chunk, x2comResult) override;

private:
    CaptureWriter(int file, std::filesystem::path name, Failed failed);

    void note(std::string_view text);
    void write(CapturedKind kind, std::span<const std::uint8_t> bytes);
    [[nodiscard]] std::uint64_t now() const;  ///< microseconds since 1970

    const std::filesystem::path m_name;
    const Failed m_failed;
    const std::chrono::system_clock::time_point m_wallStart = std::chrono::system_clock::now();
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    std::mutex m_mutex;  // one block at a time, and none behind one that is cut
    int m_file;          // less than 0 once the capture has ended
};

}  // namespace torv
