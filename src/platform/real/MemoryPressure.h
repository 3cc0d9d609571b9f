#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace torv {

/// Calls back on the main thread when the machine runs short of memory: tasks have waited for it for 0.3 s
/// within 2 s, as the kernel's pressure stall information tells. Where the kernel doesn't tell, it stays
/// silent.
class MemoryPressure final {
public:
    explicit MemoryPressure(std::function<void()> warn);
    ~MemoryPressure();
    MemoryPressure(const MemoryPressure&) = delete;
    MemoryPressure& operator=(const MemoryPressure&) = delete;

private:
    int m_file = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

}  // namespace torv
