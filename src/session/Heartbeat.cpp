#include "session/Heartbeat.h"

#include <utility>

namespace torv {

Heartbeat::Heartbeat(RunLoop& loop, std::function<void()> question)
    : m_loop(loop), m_question(std::move(question)) {}

Heartbeat::~Heartbeat() {
    if (m_timer) m_timer->invalidate();
}

void Heartbeat::arm(std::chrono::milliseconds interval) {
    if (m_timer) m_timer->invalidate();
    m_timer = m_loop.scheduleTimer(interval, false, [this](Timer&) {
        m_question();
        arm(afterQuestion);
    });
}

}  // namespace torv
