#include "session/ReconnectChain.h"

#include <utility>

namespace torv {

ReconnectChain::ReconnectChain(RunLoop& loop, std::function<bool()> hasSession, std::function<void()> attempt)
    : m_loop(loop), m_hasSession(std::move(hasSession)), m_attempt(std::move(attempt)) {}

ReconnectChain::~ReconnectChain() {
    if (m_timer) m_timer->invalidate();
}

void ReconnectChain::start() {
    m_credit = firstCredit;
    arm();
}

void ReconnectChain::attemptNow() {
    if (m_hasSession()) return;
    --m_credit;
    m_attempt();
    arm();
}

void ReconnectChain::arm() {
    // A chain that is still under way is replaced: two of them would only reopen what the other has opened.
    if (m_timer) m_timer->invalidate();
    m_timer = m_loop.scheduleTimer(interval, false, [this](Timer&) { attemptNow(); });
}

}  // namespace torv
