#include "diagnostics/DtcRequest.h"

#include <chrono>
#include <utility>

#include "diagnostics/DtcAIDs.h"
#include "platform/NotificationNames.h"
#include "platform/Platform.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds patience{5000};
constexpr std::int32_t requests = 3;

}  // namespace

std::function<void()> DtcRequest::inThisRead(Step step) {
    return [weak = weak_from_this(), read = m_read, step] {
        const auto self = weak.lock();
        if (self && self->m_dtcReadActive && self->m_read == read) (*self.*step)();
    };
}

void DtcRequest::begin() {
    if (m_dtcReadActive) return;
    const auto self = shared_from_this();
    ++m_read;
    m_begun = Platform::current().runLoop().now();
    m_dtcRetries = requests;
    m_dtc224Seen = m_dtc225Seen = m_dtcTimedOut = false;
    m_dtcReadActive = true;
    // On the reading thread nothing is touched but the loop's queue.
    const auto onMainThread = [](std::function<void()> step) {
        return [step = std::move(step)] { Platform::current().runLoop().performOnMainThread(step); };
    };
    auto& center = Platform::current().notificationCenter();
    m_224 = center.addObserver(dtc224Received, onMainThread(inThisRead(&DtcRequest::dtc224Observer)));
    m_225 = center.addObserver(dtc225Received, onMainThread(inThisRead(&DtcRequest::dtc225Observer)));
    sendDtcRequest();
}

void DtcRequest::end() {
    m_dtcReadActive = false;
    m_224 = {};
    m_225 = {};
}

void DtcRequest::sendDtcRequest() {
    if (m_dtcRetries-- == 0) return loadReadDtcView();
    // Before the write, in which a report may come: one alone is no reason to stop waiting for the other.
    m_dtcTimedOut = false;
    const auto read = m_read;
    const auto self = shared_from_this();
    m_feeder->setValueForAID(doItByte, reportCodesAID);  // the timer decides
    if (!m_dtcReadActive || m_read != read) return;
    Platform::current().runLoop().scheduleTimer(
        patience, false, [step = inThisRead(&DtcRequest::dtcRequestTimeoutHandler)](Timer&) { step(); });
}

void DtcRequest::dtcRequestTimeoutHandler() {
    m_dtcTimedOut = true;
    sendDtcRequest();
}

void DtcRequest::dtc224Observer() {
    m_dtc224Seen = true;
    loadReadDtcView();
}

void DtcRequest::dtc225Observer() {
    m_dtc225Seen = true;
    loadReadDtcView();
}

void DtcRequest::loadReadDtcView() {
    if (!(m_dtc224Seen && m_dtc225Seen) && !m_dtcTimedOut) return;
    end();
    m_done();
}

}  // namespace torv
