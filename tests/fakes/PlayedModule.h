#pragma once

#include <functional>
#include <vector>

#include "FakePlatform.h"
#include "Frames.h"

namespace fakes {

/// Brings the session up with three chunks; from then on every write is recorded and, if the module is kind,
/// acknowledged.
inline void connectModule(FakePlatform& platform, std::vector<Bytes>& writes, bool acknowledges = true,
                          const std::function<void()>& onWrite = {}) {
    auto& stream = platform.stream();
    stream.onWrite = [&platform, &writes, acknowledges, onWrite](const Bytes& sent) {
        writes.push_back(sent);
        if (onWrite) onWrite();
        if (!acknowledges) return;
        platform.stream().feed(frame({0x22, sent[1]}));
        platform.stream().feed(frame({0x13, 10, 1}));
    };
    for (int i = 0; i < 3; ++i) {
        stream.feed(frame({0x13, 10, 1}));
        platform.loop.runWork();
    }
}

}  // namespace fakes
