#include "vehicles/VersionComparison.h"

#include "support/TextNumbers.h"

namespace torv {

void VersionComparison::Numbers::read(const std::optional<std::string>& version) {
    const auto point = version ? version->find('.') : std::string::npos;
    if (point == std::string::npos || point == 0) return;
    major = intValue(version->substr(0, point));
    minor = intValue(version->substr(point + 1));
}

bool VersionComparison::isNewer(const std::optional<std::string>& stored,
                                const std::optional<std::string>& remote) {
    m_stored.read(stored);
    m_remote.read(remote);
    return m_stored.minor < m_remote.minor || m_stored.major < m_remote.major;
}

}  // namespace torv
