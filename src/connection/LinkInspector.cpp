#include "connection/LinkInspector.h"

#include <algorithm>

#include "connection/FrameText.h"
#include "support/Hexadecimal.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds longestSilence{600};
constexpr std::chrono::microseconds shortestPause{1500};   // a module leaves two milliseconds
constexpr std::chrono::seconds lateAtMost{1};              // what comes later answers nothing any more
constexpr std::chrono::milliseconds timeForSession{2900};  // an attempt has three seconds
constexpr std::uint8_t lastType = x2comFrameResponse;
constexpr std::uint8_t noAID = 255;
constexpr std::uint8_t firstCountedAID = 220;
constexpr std::uint8_t longestItem = 13;
constexpr int firstChunks = 2;

std::string milliseconds(std::chrono::nanoseconds time) {
    return std::to_string(std::chrono::round<std::chrono::milliseconds>(time).count()) + " ms";
}

bool holdsItems(std::uint8_t type) {
    return type == x2comFrameWrite || type == x2comFramePushA || type == x2comFramePushB ||
           type == x2comFrameResponse;
}

}  // namespace

std::vector<LinkInspector::Finding> LinkInspector::findings() const {
    const std::scoped_lock lock{m_mutex};
    auto all = m_findings;
    // What is still missing now.
    for (const auto* channel : {&m_writes, &m_requests}) {
        if (channel->overdue) add(all, channel->missing, channel->frame);
    }
    if (m_inRead) add(all, m_inRead->rule, m_inRead->frame);
    if (m_lastChunk && m_loop.now() - *m_lastChunk > longestSilence) add(all, LinkRule::silence, {});
    return all;
}

void LinkInspector::find(LinkRule rule, std::string detail) {
    const std::scoped_lock lock{m_mutex};
    found(rule, {}, std::move(detail));
}

void LinkInspector::add(std::vector<Finding>& findings, LinkRule rule, Bytes frame, std::string detail) {
    const auto same = std::ranges::find(findings, rule, &Finding::rule);
    if (same != findings.end()) {
        ++same->count;
    } else {
        findings.push_back({rule, 1, {frame.begin(), frame.end()}, std::move(detail)});
    }
}

void LinkInspector::found(LinkRule rule, Bytes frame, std::string detail) {
    add(m_findings, rule, frame, std::move(detail));
}

std::uint64_t LinkInspector::pushesOf(std::uint8_t aid) const {
    const std::scoped_lock lock{m_mutex};
    return m_pushes[aid];
}

std::vector<std::uint8_t> LinkInspector::aidsOf(Bytes frame) {
    const auto type = x2comFrameType(frame.data());
    const auto payload = frame.subspan(1, frame.size() - 2);
    if (!holdsItems(type)) return {payload.begin(), payload.end()};
    std::vector<std::uint8_t> aids;
    for (std::size_t i = 0; i < payload.size();) {
        aids.push_back(payload[i++]);
        i += i < payload.size() ? x2comValueLength(aids.back(), payload[i]) : 0;
    }
    return aids;
}

void LinkInspector::attempted(const Endpoint&) {
    const std::scoped_lock lock{m_mutex};
    m_attempted = m_loop.now();
    m_half.clear();
    m_lastChunk.reset();
    m_chunks = 0;
    for (auto* channel : {&m_writes, &m_requests}) {
        channel->asked.reset();
        channel->overdue = false;
    }
}

void LinkInspector::sessionCameUp() {
    const std::scoped_lock lock{m_mutex};
    m_lastChunk = m_loop.now();
}

void LinkInspector::lookAtSilence(Bytes nextChunk) {
    if (!m_lastChunk) return;
    const auto length = m_loop.now() - *m_lastChunk;
    if (length > longestSilence)
        found(LinkRule::silence, nextChunk, "it was silent for " + milliseconds(length));
}

void LinkInspector::connectionEnded(const Endpoint&, ByteStream::Reach how, bool hadSession) {
    const std::scoped_lock lock{m_mutex};
    lookAtSilence({});
    m_lastChunk.reset();
    if (how == ByteStream::Reach::refused) found(LinkRule::refusedConnection, {});
    if (how == ByteStream::Reach::closed) found(LinkRule::lostConnection, {});
    const bool longEnough = m_attempted && m_loop.now() - *m_attempted >= timeForSession;
    if (how == ByteStream::Reach::open && !hadSession && longEnough) found(LinkRule::noFrames, {});
}

void LinkInspector::frameSent(Bytes frame, x2comTxResult) {
    const std::scoped_lock lock{m_mutex};
    const auto type = x2comFrameType(frame.data());
    if (type != x2comFrameWrite && type != x2comFrameRequest) return;
    auto& channel = type == x2comFrameWrite ? m_writes : m_requests;
    if (channel.overdue) giveUp(channel);
    channel.asked = m_loop.now();
    channel.frame.assign(frame.begin(), frame.end());
    channel.aids = aidsOf(frame);
    channel.overdue = channel.answerSeen = false;
}

void LinkInspector::exchangeEnded(const Exchange& exchange) {
    const std::scoped_lock lock{m_mutex};
    auto& channel = exchange.isWrite ? m_writes : m_requests;
    if (!channel.asked) return;
    if (exchange.answered) {
        channel.asked.reset();
    } else if (channel.answerSeen) {
        found(channel.late, channel.frame, "the answer came in time, and no frame behind it");
        channel.asked.reset();
    } else {
        channel.overdue = true;
    }
}

void LinkInspector::giveUp(Channel& channel) {
    found(channel.missing, channel.frame);
    channel.asked.reset();
    channel.overdue = false;
}

void LinkInspector::answered(Channel& channel, Bytes frame) {
    const auto now = m_loop.now();
    if (channel.overdue && now - *channel.asked > lateAtMost) giveUp(channel);
    if (!channel.asked || channel.answerSeen) return found(channel.stray, frame);
    const auto answers = aidsOf(frame);
    if (std::ranges::find_first_of(answers, channel.aids) == answers.end())
        return found(LinkRule::wrongAnswer, frame, "asked was " + hexadecimalText(channel.frame));
    if (!channel.overdue) {
        channel.answerSeen = true;
        return;
    }
    found(channel.late, frame, "it came after " + milliseconds(now - *channel.asked));
    channel.asked.reset();
    channel.overdue = false;
}

void LinkInspector::chunkReceived(Bytes chunk, x2comResult) {
    const auto now = m_loop.now();
    const std::scoped_lock lock{m_mutex};
    lookAtSilence(chunk);
    m_hurried = m_lastChunk && now - *m_lastChunk < shortestPause;
    settleRead();
    m_lastChunk = now;
    inspect(chunk);
}

void LinkInspector::foundInRead(LinkRule rule, Bytes frame) {
    settleRead();
    m_inRead = Finding{rule, 1, {frame.begin(), frame.end()}};
    if (m_hurried) settleRead();
}

void LinkInspector::settleRead() {
    if (!m_inRead) return;
    found(m_hurried ? LinkRule::ownLag : m_inRead->rule, m_inRead->frame);
    m_inRead.reset();
}

void LinkInspector::inspect(Bytes chunk) {
    if (!m_half.empty()) {
        auto joined = m_half;
        joined.insert(joined.end(), chunk.begin(), chunk.end());
        const bool completes =
            !beginsWithFrame(chunk) && joined.size() <= x2comFrameSize && beginsWithFrame(joined);
        foundInRead(completes ? LinkRule::split : LinkRule::checksum,
                    completes ? Bytes{joined} : Bytes{m_half});
        m_half.clear();
        if (completes) return;
    }
    const std::size_t length = x2comFrameLength(chunk.data());
    if (length == 0) return foundInRead(LinkRule::noLength, chunk);
    if (chunk.size() <= length) {
        m_half.assign(chunk.begin(), chunk.end());
        return;
    }
    if (!beginsWithFrame(chunk)) return foundInRead(LinkRule::checksum, chunk);
    if (chunk.size() > length + 1) foundInRead(LinkRule::joined, chunk);
    inspectFrame(chunk.first(length + 1));
}

void LinkInspector::inspectFrame(Bytes frame) {
    const auto type = x2comFrameType(frame.data());
    const bool isPush = type == x2comFramePushA || type == x2comFramePushB;
    if (++m_chunks <= firstChunks && type != x2comFrameWrite && !isPush) found(LinkRule::beginning, frame);
    m_chunks = std::min(m_chunks, firstChunks);
    if (type > lastType) return found(LinkRule::reservedType, frame);
    if (isPush) {
        for (const auto aid : aidsOf(frame))
            ++m_pushes[aid];
    }
    if (holdsItems(type)) inspectItems(frame);
    switch (type) {
        case x2comFrameWrite:
            return found(LinkRule::ownWrite, frame);
        case x2comFrameRequest:
            return found(LinkRule::ownRequest, frame);
        case x2comFrameAck:
            return answered(m_writes, frame);
        case x2comFrameResponse:
            return answered(m_requests, frame);
        default:
            return;
    }
}

void LinkInspector::inspectItems(Bytes frame) {
    const auto payload = frame.subspan(1, frame.size() - 2);
    for (std::size_t i = 0; i < payload.size();) {
        const auto aid = payload[i++];
        if (aid == noAID) return found(LinkRule::wrongAID, frame);
        if (i == payload.size()) return found(LinkRule::cutItem, frame);
        const auto width = x2comValueLength(aid, payload[i]);
        if (aid >= firstCountedAID && (width == 0 || width > longestItem))
            return found(LinkRule::wrongWidth, frame);
        if (i + width > payload.size()) return found(LinkRule::cutItem, frame);
        i += width;
    }
}

}  // namespace torv
