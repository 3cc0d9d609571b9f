#include "ShadowReader.h"

#include <algorithm>

namespace bench {
namespace {

template <typename Visitor>
void eachRead(ByteView segment, Visitor visit) {
    for (std::size_t at = 0; at < segment.size(); at += maxFrame) {
        visit(segment.subspan(at, std::min(maxFrame, segment.size() - at)));
    }
}

}  // namespace

bool ShadowReader::misleads(ByteView segment, std::span<const Bytes> meant) const {
    bool found = false;
    eachRead(segment, [&](ByteView chunk) {
        for (Buffer buffer : {m_buffers[0], m_buffers[1], Buffer{}}) {
            std::copy(chunk.begin(), chunk.end(), buffer.begin());
            const std::optional<Frame> frame = decode(buffer);
            found = found || (frame && std::ranges::find(meant, encode(*frame)) == meant.end());
        }
    });
    return found;
}

void ShadowReader::take(ByteView segment) {
    eachRead(segment, [&](ByteView chunk) {
        std::copy(chunk.begin(), chunk.end(), m_buffers[m_next].begin());
        m_next = 1 - m_next;
    });
}

}  // namespace bench
