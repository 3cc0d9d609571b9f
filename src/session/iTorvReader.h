#pragma once

#include <cstdint>
#include <span>

#include "support/AV.h"

namespace torv {

/// Consumes the AVs of the AIDs that it is registered for.
class iTorvReader {
public:
    iTorvReader() = default;
    iTorvReader(const iTorvReader&) = delete;
    iTorvReader& operator=(const iTorvReader&) = delete;
    virtual ~iTorvReader() = default;

    /// Reading thread; never wait for the main thread. The bytes, 4 or 13, hold for the length of the call.
    virtual void readAid(std::span<std::uint8_t> bytes, AID aid) = 0;
    /// 0 or 1; a reader of any other priority is passed over. Any thread.
    [[nodiscard]] virtual std::int32_t priority() const = 0;
    /// Main thread.
    virtual void setPriority(std::int32_t) {}
};

}  // namespace torv
