#pragma once

#include <optional>
#include <string>

namespace torv {

/// Tells newer profile versions, through one merge. One thread at a time.
///
/// A version is two whole numbers around its first point. Newer is what has the larger number on either
/// side of the point, each for itself: 1.1 is newer than 2.0; kept as it is. A version with no point, or one
/// at the front, compares by the numbers that the version before it on its side has left; at first both sides
/// are equal.
class VersionComparison final {
public:
    [[nodiscard]] bool isNewer(const std::optional<std::string>& stored,
                               const std::optional<std::string>& remote);

private:
    struct Numbers {
        int major = 0;
        int minor = 0;

        void read(const std::optional<std::string>& version);
    };

    Numbers m_stored;
    Numbers m_remote;
};

}  // namespace torv
