#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/RunLoop.h"

namespace torv {

/// Asks a silent module for a sign of life: 0.6 seconds after its last bytes, then 1.0 second after each
/// question has ended.
///
///   State   entered by                          leaves by
///   Off     construction                        `bytesCame`: Armed, 0.6 s
///   Armed   `bytesCame`, the end of a question  its time: Asking; `bytesCame`: Armed anew, 0.6 s
///   Asking  the timer                           the end of the question: Armed, 1.0 s
///
/// Main thread. Nothing follows from a question without an answer: the request keeps a silent module talking,
/// and gives a connection whose peer has vanished something to fail on. The question blocks, and bytes that
/// come meanwhile count from its end on.
class Heartbeat final {
public:
    Heartbeat(RunLoop& loop, std::function<void()> question);
    ~Heartbeat();
    Heartbeat(const Heartbeat&) = delete;
    Heartbeat& operator=(const Heartbeat&) = delete;

    void bytesCame() { arm(afterBytes); }

private:
    static constexpr std::chrono::milliseconds afterBytes{600};
    static constexpr std::chrono::milliseconds afterQuestion{1000};

    void arm(std::chrono::milliseconds interval);

    RunLoop& m_loop;
    const std::function<void()> m_question;
    std::shared_ptr<Timer> m_timer;
};

}  // namespace torv
