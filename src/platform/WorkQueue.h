#pragma once

#include <functional>

namespace torv {

/// Work away from the main thread, one piece after the other in the order it was given.
class WorkQueue {
public:
    WorkQueue() = default;
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;
    /// Waits for the piece under way and drops the rest. Not on its own thread.
    virtual ~WorkQueue() = default;

    /// Any thread.
    virtual void post(std::function<void()> work) = 0;
};

}  // namespace torv
