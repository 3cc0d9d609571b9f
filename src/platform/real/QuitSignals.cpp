#include "platform/real/QuitSignals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <utility>

namespace torv {
namespace {

int signalled = -1;

void handle(int) {
    const std::uint64_t one = 1;
    static_cast<void>(!::write(signalled, &one, sizeof one));
}

}  // namespace

QuitSignals::QuitSignals(std::function<void()> quit) {
    signalled = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    m_notifier = std::make_unique<QSocketNotifier>(signalled, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this, quit = std::move(quit)] {
        m_notifier->setEnabled(false);
        quit();
    });
    std::signal(SIGINT, &handle);
    std::signal(SIGTERM, &handle);
}

QuitSignals::~QuitSignals() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    m_notifier.reset();
    ::close(std::exchange(signalled, -1));
}

}  // namespace torv
