#pragma once

namespace torv {

class iTorvAppDelegate;

/// Hears of a change of vehicle or of its warnings. All readers have been removed by then: the observer adds
/// its own anew. Main thread.
class iTorvAppDelegateDelegate {
public:
    iTorvAppDelegateDelegate() = default;
    iTorvAppDelegateDelegate(const iTorvAppDelegateDelegate&) = delete;
    iTorvAppDelegateDelegate& operator=(const iTorvAppDelegateDelegate&) = delete;
    virtual ~iTorvAppDelegateDelegate() = default;

    virtual void iTorvAppDelegateDidChangeCurrentVehicle(iTorvAppDelegate& application) = 0;
    virtual void iTorvAppDelegateDidChangeWarningSensors(iTorvAppDelegate& application) = 0;
};

}  // namespace torv
