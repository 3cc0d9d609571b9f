#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "session/iTorvFeeder.h"

namespace torv {

/// A read-out of one AID that can look old. Main thread.
class AgingReadOut {
public:
    AgingReadOut() = default;
    AgingReadOut(const AgingReadOut&) = delete;
    AgingReadOut& operator=(const AgingReadOut&) = delete;
    virtual ~AgingReadOut() = default;

    [[nodiscard]] virtual AID shownAID() const = 0;
    /// When the value that is shown came; nothing before the first one.
    [[nodiscard]] virtual std::optional<RunLoop::Clock::time_point> shownSince() const = 0;
    /// Only the next value that is shown ends that.
    virtual void dim() = 0;
};

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
