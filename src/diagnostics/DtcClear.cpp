#include "diagnostics/DtcClear.h"

#include <algorithm>
#include <chrono>

#include "diagnostics/DtcAIDs.h"
#include "platform/Platform.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds waiting{5000};
constexpr std::uint8_t clearedByte = 1;

}  // namespace

bool DtcClear::engineTurns(const iTorvFeeder& feeder) {
    const auto speed = feeder.valueForAID(engineSpeedAID);
    return std::ranges::any_of(speed.bytes(), [](std::uint8_t byte) { return byte != 0; });
}

void DtcClear::begin() {
    if (m_active) return;
    const auto self = shared_from_this();
    m_active = true;
    m_begun = Platform::current().runLoop().now();
    m_taken = m_feeder->setValueForAID(doItByte, clearCodesAID);
    m_written = Platform::current().runLoop().now();
    Platform::current().runLoop().scheduleTimer(waiting, false, [weak = weak_from_this()](Timer&) {
        if (const auto clearing = weak.lock()) clearing->dtcClearTimeoutHandler();
    });
}

void DtcClear::dtcClearTimeoutHandler() {
    m_active = false;
    const auto arrival = m_feeder->arrivalOfAID(clearResultAID);
    const bool cleared = m_feeder->valueForAID(clearResultAID).bytes()[0] == clearedByte;
    m_done({.cleared = cleared,
            .confirmed = m_taken && arrival && *arrival >= m_written,
            .arrived = arrival && *arrival >= m_begun});
}

}  // namespace torv
