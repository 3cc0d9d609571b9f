#include "platform/real/MemoryPressure.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace torv {
namespace {

constexpr char trigger[] = "some 300000 2000000";  // microseconds

}  // namespace

MemoryPressure::MemoryPressure(std::function<void()> warn) {
    m_file = ::open("/proc/pressure/memory", O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (m_file < 0 || ::write(m_file, trigger, sizeof trigger) < 0) return;
    m_notifier = std::make_unique<QSocketNotifier>(m_file, QSocketNotifier::Exception);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [warn = std::move(warn)] { warn(); });
}

MemoryPressure::~MemoryPressure() {
    m_notifier.reset();
    if (m_file >= 0) ::close(m_file);
}

}  // namespace torv
