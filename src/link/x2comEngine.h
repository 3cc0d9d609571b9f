// The protocol state of the x2com link: a queue of received chunks, the dispatcher, the transmit scheduler
// and the channels. One instance, process-wide; it holds no thread and no timer.
//
// The chunk queue has a lock of its own. Of the rest one call may run at a time, on any thread: the caller
// sees to that. Posting a notification and sending bytes happen inside the call.
//
// A chunk is what one read returned and is taken for exactly one frame. `x2comReceive` decodes not the
// chunk that it pops but the one before it, so every frame takes effect one chunk late, and a module has
// to keep talking for its answers to be heard.
//
// Write channel (the read channel is alike, with type 4, the resp timer and `x2comRespTimedOut`):
//
//   Idle          x2comRequestWrite            take the list              Wanted
//   Wanted        scheduler, some left over    first frame, timer         AwaitAck
//   Wanted        scheduler, none left over    first frame, timer         AwaitLastAck
//   AwaitAck      ack, all AIDs settled        stop timer                 NextFrame
//   AwaitAck      timer runs out                                          NextFrame
//   NextFrame     scheduler, fewer left over   next frame, timer          AwaitAck
//   NextFrame     scheduler, 0 or unchanged    next frame, timer          AwaitLastAck
//   AwaitLastAck  ack, all AIDs settled        stop timer, AckDone        Idle
//   AwaitLastAck  timer runs out                                          Idle
//
// `x2comRequestWrite` is refused in every state but Idle; an ack in Idle, Wanted and NextFrame is ignored.
// Nothing is sent twice: what is not acknowledged in time is given up.
#pragma once

#include <cstdint>
#include <span>

#include "link/x2comCodec.h"

/// `...Sent` is the last frame of its kind, after `...More` there is more to come.
enum x2comTxResult : std::uint8_t {
    x2comTxIdle = 0,
    x2comTxBlocked = 8,
    x2comTxAckSent = 9,
    x2comTxRespSent = 10,
    x2comTxRespMore = 11,
    x2comTxPushASent = 12,
    x2comTxPushAMore = 13,
    x2comTxPushBSent = 14,
    x2comTxPushBMore = 15,
    x2comTxWriteSent = 16,
    x2comTxWriteMore = 17,
    x2comTxRequestSent = 18,
    x2comTxRequestMore = 19,
};

/// Where frames go; what the driver provides to the engine. Called within `x2comTransmit`, on its thread.
class x2comSink {
public:
    x2comSink() = default;
    x2comSink(const x2comSink&) = delete;
    x2comSink& operator=(const x2comSink&) = delete;
    virtual ~x2comSink() = default;

    /// One whole frame, 2 to 16 bytes, valid during the call.
    virtual void sendBytes(std::span<const std::uint8_t> frame) = 0;
    [[nodiscard]] virtual bool canSend() = 0;
};

/// Not owned. Null takes the sink away: then nothing can be sent.
void x2comSetSink(x2comSink* sink);
void x2comSendBytes(const std::uint8_t* bytes, std::uint8_t length);
[[nodiscard]] bool x2comCanSend();

/// Clears what is owed and under way, and drops one chunk into the current frame buffer. A write that was
/// asked for and has not begun stays. For the start only: a reconnection leaves the engine as it is.
void x2comReset();

/// Copies the bytes, at most the 16 of a frame, behind the chunks that wait. Any thread.
void x2comPushChunk(const std::uint8_t* bytes, std::uint8_t length);

/// Decodes the chunk before the one that it pops.
[[nodiscard]] x2comResult x2comReceive(x2comAIDList& list);

/// Sends at most one frame: answers before the handset's own traffic, a write before a read.
x2comTxResult x2comTransmit();

/// Takes up to 14 AIDs; their values are taken from `sendStore` when the frame is built. False while an
/// earlier exchange of the channel is wanted or under way.
[[nodiscard]] bool x2comRequestWrite(std::span<const std::uint8_t> aids);
[[nodiscard]] bool x2comRequestRead(std::span<const std::uint8_t> aids);

/// The timer of the write channel, or of the read channel, has run out.
void x2comAckTimedOut();
void x2comRespTimedOut();
