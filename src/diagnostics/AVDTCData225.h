#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace torv {

/// What the second of the two reports of trouble codes holds. Nobody uses it: `AVDTCFormatter225` hands out
/// the bare list; kept as it is.
class AVDTCData225 final {
public:
    [[nodiscard]] const std::vector<std::string>& DTCData() const { return m_DTCData; }
    /// Keeps the first 6 code texts, or all where there are fewer.
    void setDTCData(const std::vector<std::string>& codes) {
        constexpr std::size_t kept = 6;
        const auto count = static_cast<std::ptrdiff_t>(std::min(codes.size(), kept));
        m_DTCData.assign(codes.begin(), codes.begin() + count);
    }

private:
    std::vector<std::string> m_DTCData;
};

}  // namespace torv
