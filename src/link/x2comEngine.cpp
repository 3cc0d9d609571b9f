#include "link/x2comEngine.h"

#include <algorithm>
#include <list>
#include <mutex>

#include "platform/NotificationNames.h"
#include "platform/Platform.h"

namespace {

/// The handset's own exchange with the module: `writeWanted`, `writeBusy`, `ackWait` and so on of the write
/// channel, `readWanted`, `readBusy`, `respWait` and so on of the read channel.
struct Exchange {
    const std::uint32_t frameType;
    const x2comTxResult sent;
    const x2comResult done;
    const std::string_view startTimer;
    const std::string_view stopTimer;

    bool wanted = false;         ///< asked for, and the first frame is not out yet
    bool busy = false;           ///< started and not finished
    bool wait = false;           ///< a frame is out and its answer is awaited; the timer runs
    bool lastSent = false;       ///< the frame now out is the last of the exchange
    bool timedOut = false;       ///< the timer ran out during this exchange
    bool failed = false;         ///< ended after a timeout; never read, kept as it is
    x2comAIDList list{};         ///< still to be sent
    x2comAIDList awaited{};      ///< in the frame now out; empty also means that any answer will do
    std::uint8_t lastCount = 0;  ///< what was left over after the frame before
};

/// An answer or a push that may need several frames.
struct Reply {
    const std::uint32_t frameType;
    const x2comTxResult sent;

    bool owed = false;
    bool more = false;
    x2comAIDList list{};
    std::uint8_t lastCount = 0;
};

struct Engine {
    std::mutex chunksMutex;
    struct Chunk {
        x2comFrame bytes;
        std::uint8_t length;
    };
    std::list<Chunk> rxChunks;

    x2comFrame rxBufferA{};
    x2comFrame rxBufferB{};
    x2comFrame* rxCurrent = &rxBufferA;  ///< received the last popped chunk
    std::int32_t badFrameCount = 0;      ///< bad frames in a row; never read, kept as it is

    x2comFrame txFrame{};
    x2comSink* sink = nullptr;

    bool ackOwed = false;
    x2comAIDList ackOwedList;
    Reply resp{.frameType = x2comFrameResponse, .sent = x2comTxRespSent};
    // The two push channels are dormant: nothing sets `owed`, and the handset only receives these frame
    // types. Kept as they are, with their places in the order of service.
    Reply pushA{.frameType = x2comFramePushA, .sent = x2comTxPushASent};
    Reply pushB{.frameType = x2comFramePushB, .sent = x2comTxPushBSent};

    Exchange write{.frameType = x2comFrameWrite,
                   .sent = x2comTxWriteSent,
                   .done = x2comRxAckDone,
                   .startTimer = torv::x2comStartAckTimerNotification,
                   .stopTimer = torv::x2comStopAckTimerNotification};
    Exchange read{.frameType = x2comFrameRequest,
                  .sent = x2comTxRequestSent,
                  .done = x2comRxRespDone,
                  .startTimer = torv::x2comStartRespTimerNotification,
                  .stopTimer = torv::x2comStopRespTimerNotification};
};

Engine& engine() {
    static Engine instance;
    return instance;
}

void post(std::string_view name) {
    torv::Platform::current().notificationCenter().postNotificationName(name);
}

/// Each `...More` is the number after its `...Sent`.
x2comTxResult withMore(x2comTxResult sent, bool more) {
    return static_cast<x2comTxResult>(sent + (more ? 1 : 0));
}

void setList(x2comAIDList& list, std::span<const std::uint8_t> aids) {
    list.count = static_cast<std::uint8_t>(std::min<std::size_t>(aids.size(), x2comListSize));
    std::copy_n(aids.begin(), list.count, list.aids.begin());
}

void x2comPopChunk(x2comFrame& buffer) {
    auto& e = engine();
    const std::scoped_lock lock{e.chunksMutex};
    if (e.rxChunks.empty()) return;
    const auto& chunk = e.rxChunks.front();
    std::copy_n(chunk.bytes.begin(), chunk.length,
                buffer.begin());  // stale bytes stay behind a shorter chunk
    e.rxChunks.pop_front();
}

bool x2comHasChunk() {
    auto& e = engine();
    const std::scoped_lock lock{e.chunksMutex};
    return !e.rxChunks.empty();
}

void buildAndSend(std::uint32_t type, x2comAIDList& list) {
    auto& frame = engine().txFrame;
    x2comBuildFrame(frame, type, list);
    x2comSendBytes(frame.data(), static_cast<std::uint8_t>(x2comFrameLength(frame.data()) + 1));
}

x2comTxResult sendAck() {
    auto& e = engine();
    e.ackOwed = false;  // first: the loop may turn while the frame leaves, and bring the next one to owe
    buildAndSend(x2comFrameAck, e.ackOwedList);
    return x2comTxAckSent;
}

x2comTxResult sendFirst(Reply& reply) {
    reply.owed = false;
    buildAndSend(reply.frameType, reply.list);
    if (reply.list.count != 0) {
        reply.more = true;
        reply.lastCount = reply.list.count;
    }
    return withMore(reply.sent, reply.list.count != 0);
}

/// What does not shrink from one frame to the next can never be sent and is given up.
x2comTxResult sendMore(Reply& reply) {
    buildAndSend(reply.frameType, reply.list);
    reply.more = reply.list.count != 0 && reply.list.count != reply.lastCount;
    if (reply.more) reply.lastCount = reply.list.count;
    return withMore(reply.sent, reply.more);
}

x2comTxResult sendFrame(Exchange& exchange, bool first) {
    if (first) exchange.wanted = exchange.failed = exchange.timedOut = exchange.lastSent = false;
    if (exchange.list.count != 0) exchange.awaited = exchange.list;
    buildAndSend(exchange.frameType, exchange.list);
    post(exchange.startTimer);
    const auto left = exchange.list.count;
    const bool last = left == 0 || (!first && left == exchange.lastCount);
    if (last) exchange.lastSent = true;
    exchange.wait = true;
    if (first) exchange.busy = true;
    // With nothing left over this empties `awaited`, so that any answer finishes the exchange, whatever it
    // names. Kept as it is; the driver asks for one AID at a time.
    x2comRemoveAIDs(exchange.awaited, exchange.list);
    exchange.lastCount = left;
    return withMore(exchange.sent, !last);
}

/// An ack or a response.
x2comResult settle(Exchange& exchange, const x2comFrame& frame, x2comAIDList& list) {
    if (!exchange.busy || !exchange.wait) return x2comFrameGood;
    std::uint32_t type = x2comFrameNoType;
    const auto result = x2comParseFrame(frame.data(), type, list);
    x2comRemoveAIDs(exchange.awaited, list);
    if (exchange.awaited.count != 0) return result;
    exchange.wait = false;
    post(exchange.stopTimer);
    if (!exchange.lastSent) return result;
    exchange.busy = false;
    if (exchange.timedOut) exchange.failed = true;
    return exchange.done;
}

/// A write or a request of the module: the answer is noted and leaves at the scheduler's next run. Only the
/// latest note counts.
x2comResult note(bool& owed, x2comAIDList& owedList, const x2comFrame& frame, x2comAIDList& list) {
    std::uint32_t type = x2comFrameNoType;
    const auto result = x2comParseFrame(frame.data(), type, list);
    if (list.count != 0) {
        owedList = list;
        owed = true;
    }
    return result;
}

bool request(Exchange& exchange, std::span<const std::uint8_t> aids) {
    if (exchange.busy || exchange.wanted) return false;
    exchange.wanted = true;
    if (!aids.empty()) setList(exchange.list, aids);
    return true;
}

void timedOut(Exchange& exchange) {
    exchange.timedOut = true;
    exchange.wait = false;
    if (!exchange.lastSent) return;
    exchange.failed = true;
    exchange.busy = false;
}

struct Service {
    bool (*applies)(const Engine&);
    x2comTxResult (*serve)(Engine&);
};

/// The order of service; the first row that applies sends its frame.
constexpr std::array<Service, 11> services{{
    {[](const Engine& e) { return e.ackOwed; }, [](Engine&) { return sendAck(); }},
    {[](const Engine& e) { return e.resp.more; }, [](Engine& e) { return sendMore(e.resp); }},
    {[](const Engine& e) { return e.resp.owed; }, [](Engine& e) { return sendFirst(e.resp); }},
    {[](const Engine& e) { return e.pushA.more; }, [](Engine& e) { return sendMore(e.pushA); }},
    {[](const Engine& e) { return e.pushA.owed; }, [](Engine& e) { return sendFirst(e.pushA); }},
    {[](const Engine& e) { return e.pushB.more; }, [](Engine& e) { return sendMore(e.pushB); }},
    {[](const Engine& e) { return e.pushB.owed; }, [](Engine& e) { return sendFirst(e.pushB); }},
    {[](const Engine& e) { return e.write.busy && !e.write.wait; },
     [](Engine& e) { return sendFrame(e.write, false); }},
    {[](const Engine& e) { return e.write.wanted; }, [](Engine& e) { return sendFrame(e.write, true); }},
    {[](const Engine& e) { return e.read.busy && !e.read.wait; },
     [](Engine& e) { return sendFrame(e.read, false); }},
    {[](const Engine& e) { return e.read.wanted; }, [](Engine& e) { return sendFrame(e.read, true); }},
}};

}  // namespace

void x2comSetSink(x2comSink* sink) {
    engine().sink = sink;
}

void x2comSendBytes(const std::uint8_t* bytes, std::uint8_t length) {
    if (auto* sink = engine().sink) sink->sendBytes({bytes, length});
}

bool x2comCanSend() {
    auto* sink = engine().sink;
    return sink && sink->canSend();
}

void x2comReset() {
    auto& e = engine();
    e.ackOwed = false;
    for (auto* reply : {&e.resp, &e.pushA, &e.pushB})
        reply->owed = reply->more = false;
    e.write.busy = e.write.wait = false;
    e.read.wanted = e.read.busy = e.read.wait = false;  // `wanted` of the write channel is left as it is
    x2comPopChunk(*e.rxCurrent);
}

void x2comPushChunk(const std::uint8_t* bytes, std::uint8_t length) {
    auto& e = engine();
    const auto kept = std::min(length, x2comFrameSize);
    const std::scoped_lock lock{e.chunksMutex};
    auto& chunk = e.rxChunks.emplace_back();
    chunk.length = kept;
    std::copy_n(bytes, kept, chunk.bytes.begin());
}

x2comResult x2comReceive(x2comAIDList& list) {
    list.count = 0;
    if (!x2comHasChunk()) return x2comRxIdle;
    auto& e = engine();
    ++e.badFrameCount;
    const auto& frame = *e.rxCurrent;
    e.rxCurrent = e.rxCurrent == &e.rxBufferA ? &e.rxBufferB : &e.rxBufferA;
    x2comPopChunk(*e.rxCurrent);
    if (const auto check = x2comCheckFrame(frame.data(), x2comFrameLength(frame.data()));
        check != x2comFrameGood) {
        return check;
    }
    e.badFrameCount = 0;
    switch (x2comFrameType(frame.data())) {
        case x2comFrameWrite:
            return note(e.ackOwed, e.ackOwedList, frame, list);
        case x2comFrameRequest:
            return note(e.resp.owed, e.resp.list, frame, list);
        case x2comFrameAck:
            return settle(e.write, frame, list);
        case x2comFrameResponse:
            return settle(e.read, frame, list);
        case x2comFramePushA:
        case x2comFramePushB: {
            std::uint32_t type = x2comFrameNoType;
            return x2comParseFrame(frame.data(), type, list);
        }
        default:
            return x2comFrameGood;
    }
}

x2comTxResult x2comTransmit() {
    if (!x2comCanSend()) return x2comTxBlocked;
    auto& e = engine();
    const auto* service =
        std::find_if(services.begin(), services.end(), [&](const Service& s) { return s.applies(e); });
    return service == services.end() ? x2comTxIdle : service->serve(e);
}

bool x2comRequestWrite(std::span<const std::uint8_t> aids) {
    return request(engine().write, aids);
}
bool x2comRequestRead(std::span<const std::uint8_t> aids) {
    return request(engine().read, aids);
}
void x2comAckTimedOut() {
    timedOut(engine().write);
}
void x2comRespTimedOut() {
    timedOut(engine().read);
}
