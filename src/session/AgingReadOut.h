#pragma once

#include <optional>

#include "platform/Platform.h"
#include "support/AV.h"

namespace torv {

/// A read-out of one AID that can look old: until its first value, and once that is too long ago to be taken
/// for live. Main thread.
class AgingReadOut {
public:
    AgingReadOut() = default;
    AgingReadOut(const AgingReadOut&) = delete;
    AgingReadOut& operator=(const AgingReadOut&) = delete;
    virtual ~AgingReadOut() = default;

    [[nodiscard]] virtual AID shownAID() const = 0;
    /// When the value that is shown came; nothing before the first one.
    [[nodiscard]] std::optional<RunLoop::Clock::time_point> shownSince() const { return m_since; }
    [[nodiscard]] bool isOld() const { return m_old; }
    /// Only the next value that is shown ends that.
    void dim() { setOld(true); }

protected:
    void showsValue() {
        m_since = Platform::current().runLoop().now();
        setOld(false);
    }
    void showsNone() {
        m_since.reset();
        setOld(true);
    }
    /// `isOld` is another now.
    virtual void tellOld() = 0;

private:
    void setOld(bool old) {
        if (m_old == old) return;
        m_old = old;
        tellOld();
    }

    bool m_old = true;
    std::optional<RunLoop::Clock::time_point> m_since;
};

}  // namespace torv
