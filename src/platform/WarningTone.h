#pragma once

namespace torv {

/// A short tone of the desktop's sound theme. Main thread; nothing waits, and where there is no sound there
/// is none.
class WarningTone {
public:
    WarningTone() = default;
    WarningTone(const WarningTone&) = delete;
    WarningTone& operator=(const WarningTone&) = delete;
    virtual ~WarningTone() = default;

    virtual void play() = 0;
};

}  // namespace torv
