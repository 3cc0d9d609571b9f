#include "session/ValueAger.h"

#include <chrono>
#include <utility>

namespace torv {
namespace {

constexpr std::chrono::milliseconds interval{250};

}  // namespace

ValueAger::ValueAger(std::shared_ptr<iTorvFeeder> feeder) : m_feeder(std::move(feeder)) {
    m_timer = Platform::current().runLoop().scheduleTimer(interval, true, [this](Timer&) { look(); });
}

ValueAger::~ValueAger() {
    m_timer->invalidate();
}

void ValueAger::watch(std::weak_ptr<AgingReadOut> readOut) {
    m_readOuts.push_back(std::move(readOut));
}

void ValueAger::look() {
    std::erase_if(m_readOuts, [](const auto& readOut) { return readOut.expired(); });
    for (const auto& readOut : std::vector{m_readOuts}) {  // one that dims may bring others
        const auto alive = readOut.lock();
        if (!alive) continue;
        const auto since = alive->shownSince();
        if (!since || m_feeder->isOldForAID(*since, alive->shownAID())) alive->dim();
    }
}

}  // namespace torv
