#pragma once

#include <chrono>
#include <functional>

#include "platform/RunLoop.h"

namespace fakes {

/// Turns a real loop until the condition holds; false when it does not within the limit, or the loop quits.
inline bool waitUntil(torv::RunLoop& loop, const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = std::chrono::seconds{20}) {
    bool timeIsOver = false;
    const auto timer = loop.scheduleTimer(limit, false, [&](torv::Timer&) { timeIsOver = true; });
    const auto ticks = loop.scheduleTimer(std::chrono::milliseconds{5}, true, [](torv::Timer&) {});
    while (!condition() && !timeIsOver && loop.runOnce()) {
    }
    timer->invalidate();
    ticks->invalidate();
    return condition();
}

}  // namespace fakes
