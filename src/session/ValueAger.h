#pragma once

#include <memory>
#include <vector>

#include "session/AgingReadOut.h"
#include "session/iTorvFeeder.h"

namespace torv {

/// Dims every read-out whose value is too old to be taken for live: four times a second, by one timer for
/// all. Main thread.
///
/// What counts is the age of the value that is shown and not that of the last one in the store, because an
/// open strip and a drag hold values back. A value is old by `iTorvFeeder::isOldForAID`.
class ValueAger final {
public:
    explicit ValueAger(std::shared_ptr<iTorvFeeder> feeder);
    ~ValueAger();
    ValueAger(const ValueAger&) = delete;
    ValueAger& operator=(const ValueAger&) = delete;

    /// Until it goes.
    void watch(std::weak_ptr<AgingReadOut> readOut);

private:
    void look();

    const std::shared_ptr<iTorvFeeder> m_feeder;
    std::vector<std::weak_ptr<AgingReadOut>> m_readOuts;
    std::shared_ptr<Timer> m_timer;
};

}  // namespace torv
