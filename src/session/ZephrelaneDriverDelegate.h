#pragma once

#include <string>
#include <vector>

#include "support/AV.h"

namespace torv {

class ZephrelaneDriver;

/// The AVs of one frame: the AID as a decimal text, and a copy of its whole slot, however many bytes the
/// frame carried. Each AID stands once.
struct MessageEntry {
    std::string key;
    AV value;
};
using Message = std::vector<MessageEntry>;

/// What the driver tells of: messages, and how its connection fares.
class ZephrelaneDriverDelegate {
public:
    ZephrelaneDriverDelegate() = default;
    ZephrelaneDriverDelegate(const ZephrelaneDriverDelegate&) = delete;
    ZephrelaneDriverDelegate& operator=(const ZephrelaneDriverDelegate&) = delete;
    virtual ~ZephrelaneDriverDelegate() = default;

    /// Reading thread, with the driver's lock held: never wait for the main thread here. The values may be
    /// written to; they are this message's own.
    virtual void zephrelaneDriverDidReceiveMessage(ZephrelaneDriver&, Message&) {}
    /// These two: main thread, no lock held; blocking exchanges are allowed.
    virtual void zephrelaneDriverDidEstablishConnection(ZephrelaneDriver&) {}
    virtual void zephrelaneDriverDidFailToConnect(ZephrelaneDriver&) {}
};

}  // namespace torv
