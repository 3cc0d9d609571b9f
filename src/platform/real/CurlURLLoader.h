#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>

#include "platform/URLLoader.h"

namespace torv {

/// HTTP and HTTPS by libcurl. At most 60 s and 16 MiB a document unless other limits are given, at most 5
/// redirects, and no other protocol, redirects included: a manifest must not make the handset read its own
/// files.
class CurlURLLoader final : public URLLoader {
public:
    struct Limits {
        std::chrono::milliseconds time{60000};  ///< for all of a request, redirects included
        std::size_t bytes = 16U << 20U;         ///< of a body, unpacked
    };

    CurlURLLoader() : CurlURLLoader(Limits{}) {}
    explicit CurlURLLoader(Limits limits) : m_limits(limits) {}

    /// As libcurl's own parser reads it. Without the library false, and a line in the log.
    [[nodiscard]] bool accepts(const std::string& url) const override;
    [[nodiscard]] Reply load(const std::string& url) override;
    void cancel() override { m_cancelled = true; }

private:
    const Limits m_limits;
    std::atomic<bool> m_cancelled{false};
};

}  // namespace torv
