#pragma once

namespace torv {

class iTorvFeeder;

/// Hears of the session's state, on the main thread; blocking exchanges are allowed.
class iTorvConnectionListener {
public:
    iTorvConnectionListener() = default;
    iTorvConnectionListener(const iTorvConnectionListener&) = delete;
    iTorvConnectionListener& operator=(const iTorvConnectionListener&) = delete;
    virtual ~iTorvConnectionListener() = default;

    virtual void iTorvFeederDidEstablishConnection(iTorvFeeder&) {}
    virtual void iTorvFeederDidFailToConnect(iTorvFeeder&) {}
};

}  // namespace torv
