#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/RunLoop.h"
#include "session/LinkMonitor.h"

namespace torv {

/// What a module can do against docs/link.md.
enum class LinkRule : std::uint8_t {
    checksum,
    split,
    joined,
    noLength,
    reservedType,
    wrongAID,
    cutItem,
    wrongWidth,
    beginning,
    silence,
    missingAck,
    lateAck,
    strayAck,
    missingResponse,
    lateResponse,
    strayResponse,
    wrongAnswer,
    ownWrite,
    ownRequest,
    refusedConnection,
    lostConnection,
    noFrames,
    notKept,
    notSentBack,
    ownLag,
};

struct LinkRuleText {
    LinkRule rule;
    const char* name;      ///< one word, for scripts
    const char* sentence;  ///< what is wrong
    bool isRemark;         ///< allowed, and unusual
};
inline constexpr std::array<LinkRuleText, 25> linkRules{{
    {LinkRule::checksum, "checksum", "a frame's checksum is wrong", false},
    {LinkRule::split, "split", "a frame comes in two segments", false},
    {LinkRule::joined, "joined", "more than one frame comes in a segment", false},
    {LinkRule::noLength, "no-length", "a frame's length is 0", false},
    {LinkRule::reservedType, "reserved-type", "a frame has a type from 6 to 15", false},
    {LinkRule::wrongAID, "wrong-aid", "an item is for AID 255", false},
    {LinkRule::cutItem, "cut-item", "a frame ends inside an item", false},
    {LinkRule::wrongWidth, "wrong-width",
     "an item from AID 220 up says that it has no bytes, or more than 13", false},
    {LinkRule::beginning, "beginning", "the first two frames are not writes or pushes with whole items",
     false},
    {LinkRule::silence, "silence", "the module is silent for longer than 0.6 seconds", false},
    {LinkRule::missingAck, "missing-ack", "a write is not acknowledged", false},
    {LinkRule::lateAck, "late-ack",
     "a write is acknowledged later than 0.1 seconds, the frame behind the ack included", false},
    {LinkRule::strayAck, "stray-ack", "an ack comes that no write waits for", false},
    {LinkRule::missingResponse, "missing-response", "a request has no response", false},
    {LinkRule::lateResponse, "late-response",
     "a request is answered later than 0.1 seconds, the frame behind the response included", false},
    {LinkRule::strayResponse, "stray-response", "a response comes that no request waits for", false},
    {LinkRule::wrongAnswer, "wrong-answer", "an ack or a response is for another AID than was asked", false},
    {LinkRule::ownWrite, "own-write", "the module writes to the handset", true},
    {LinkRule::ownRequest, "own-request", "the module asks what the handset last wrote", true},
    {LinkRule::refusedConnection, "refused", "the connection is refused", false},
    {LinkRule::lostConnection, "lost", "the module ends the connection", false},
    {LinkRule::noFrames, "no-frames",
     "the module takes the connection and brings no session up within 3 seconds", false},
    {LinkRule::notKept, "not-kept", "a write is acknowledged, and the value is another one afterwards",
     false},
    {LinkRule::notSentBack, "not-sent-back", "a changed value is not sent within a second of the write's ack",
     false},
    {LinkRule::ownLag, "own-lag", "this machine was too slow to take one frame at a time", true},
}};

/// Holds all that comes over the link against docs/link.md. A read of the handset counts as a segment. A
/// handset that falls behind cuts segments anywhere, and then reads several in a row without a pause: what is
/// odd beside such a read counts as its own lag. Findings may be asked for on any thread.
class LinkInspector final : public LinkMonitor {
public:
    struct Finding {
        LinkRule rule = LinkRule::checksum;
        std::uint64_t count = 0;
        std::vector<std::uint8_t> frame{};  ///< the first one; empty where no frame shows it
        std::string detail{};               ///< of the first one; may be empty
    };

    explicit LinkInspector(const RunLoop& loop) : m_loop(loop) {}

    /// In the order in which they were first found.
    [[nodiscard]] std::vector<Finding> findings() const;
    /// What is found by whoever writes and reads back.
    void find(LinkRule rule, std::string detail);
    /// How often an AID has come in a push so far.
    [[nodiscard]] std::uint64_t pushesOf(std::uint8_t aid) const;

    void attempted(const Endpoint& endpoint) override;
    void sessionCameUp() override;
    void connectionEnded(const Endpoint& endpoint, ByteStream::Reach how, bool hadSession) override;
    void exchangeEnded(const Exchange& exchange) override;
    void frameSent(std::span<const std::uint8_t> frame, x2comTxResult result) override;
    void chunkReceived(std::span<const std::uint8_t> chunk, x2comResult) override;

private:
    using Time = RunLoop::Clock::time_point;
    using Bytes = std::span<const std::uint8_t>;

    /// Of one channel: writes and their acks, or requests and their responses.
    struct Channel {
        LinkRule missing;
        LinkRule late;
        LinkRule stray;
        std::optional<Time> asked{};        // and not answered yet
        std::vector<std::uint8_t> frame{};  // the question
        std::vector<std::uint8_t> aids{};   // that it asks for
        bool overdue = false;               // the handset waits no more
        bool answerSeen = false;            // before the handset stopped waiting
    };

    static void add(std::vector<Finding>& findings, LinkRule rule, Bytes frame, std::string detail = {});
    void found(LinkRule rule, Bytes frame, std::string detail = {});
    void lookAtSilence(Bytes nextChunk);
    void inspect(Bytes chunk);
    void foundInRead(LinkRule rule, Bytes frame);
    void settleRead();
    void inspectFrame(Bytes frame);
    void inspectItems(Bytes frame);
    [[nodiscard]] static std::vector<std::uint8_t> aidsOf(Bytes frame);
    void answered(Channel& channel, Bytes frame);
    void giveUp(Channel& channel);

    const RunLoop& m_loop;
    mutable std::mutex m_mutex;
    std::vector<Finding> m_findings;
    Channel m_writes{LinkRule::missingAck, LinkRule::lateAck, LinkRule::strayAck};
    Channel m_requests{LinkRule::missingResponse, LinkRule::lateResponse, LinkRule::strayResponse};
    std::optional<Finding> m_inRead;            // of the last read, unless it was the handset's own lag
    bool m_hurried = false;                     // the last read came right behind the one before it
    std::vector<std::uint8_t> m_half;           // a chunk that is shorter than its frame
    std::optional<Time> m_attempted;            // this connection
    std::array<std::uint64_t, 256> m_pushes{};  // by AID
    std::optional<Time> m_lastChunk;            // of this connection
    int m_chunks = 0;                           // of this connection, up to 3
};

}  // namespace torv
