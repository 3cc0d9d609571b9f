#include "connection/LinkStatistics.h"

#include <algorithm>
#include <utility>

#include "session/ConnectionOptions.h"

namespace torv {
namespace {

std::string endText(const Endpoint& endpoint, ByteStream::Reach how, bool hadSession) {
    if (hadSession) return "The connection was lost";
    switch (how) {
        case ByteStream::Reach::unreachable:
            return "There was no way to " + placeOfEndpoint(endpoint);
        case ByteStream::Reach::refused:
            return "Refused by " + placeOfEndpoint(endpoint);
        case ByteStream::Reach::open:
            return "The module took the connection and sent no values";
        case ByteStream::Reach::closed:
            return "The module took the connection and closed it";
        case ByteStream::Reach::noAnswer:
            break;
    }
    return "No answer from " + placeOfEndpoint(endpoint);
}

}  // namespace

void LinkStatistics::note(std::string text) {
    auto& events = m_figures.events;
    if (!events.empty() && events.front().text == text) {
        events.front().when = wallNow();
        ++events.front().times;
        return;
    }
    events.insert(events.begin(), {wallNow(), std::move(text)});
    if (events.size() > mostEvents) events.pop_back();
}

void LinkStatistics::attempted(const Endpoint&) {
    const std::scoped_lock lock{m_mutex};
    ++m_figures.attempts;
}

void LinkStatistics::sessionCameUp() {
    const std::scoped_lock lock{m_mutex};
    m_figures.upSince = m_loop.now();
    m_sessions.push_back(*m_figures.upSince);
    while (*m_figures.upSince - m_sessions.front() > lately)
        m_sessions.pop_front();
    note("Connected");
}

void LinkStatistics::connectionEnded(const Endpoint& endpoint, ByteStream::Reach how, bool hadSession) {
    const std::scoped_lock lock{m_mutex};
    m_figures.upSince.reset();
    note(endText(endpoint, how, hadSession));
}

void LinkStatistics::exchangeEnded(const Exchange& exchange) {
    const std::scoped_lock lock{m_mutex};
    if (!m_figures.upSince) return;  // nobody was there to answer
    m_exchanges.push_back(exchange);
    if (m_exchanges.size() > keptExchanges) m_exchanges.pop_front();
    if (exchange.answered) return;
    note(std::string{exchange.isWrite ? "A write of AID " : "A request of AID "} +
         std::to_string(exchange.aid) + " was not answered");
}

void LinkStatistics::chunkReceived(std::span<const std::uint8_t>, x2comResult resultOfTheOneBefore) {
    const auto now = m_loop.now();
    const std::scoped_lock lock{m_mutex};
    ++m_figures.frames;
    if (resultOfTheOneBefore == x2comFrameBadCrc) ++m_figures.damaged;
    m_figures.lastFrame = now;
    m_arrivals.push_back(now);
    while (now - m_arrivals.front() > window)
        m_arrivals.pop_front();
}

LinkStatistics::Figures LinkStatistics::figures() const {
    const auto now = m_loop.now();
    const std::scoped_lock lock{m_mutex};
    auto figures = m_figures;
    const auto recent = std::ranges::count_if(m_arrivals, [&](Time time) { return now - time <= window; });
    figures.framesPerSecond = static_cast<double>(recent) / window.count();
    std::vector<std::chrono::milliseconds> answers;
    for (const auto& exchange : m_exchanges) {
        if (exchange.answered) answers.push_back(std::chrono::ceil<std::chrono::milliseconds>(exchange.took));
    }
    figures.answered = answers.size();
    figures.unanswered = m_exchanges.size() - answers.size();
    if (!answers.empty()) {
        std::ranges::sort(answers);
        figures.median = answers[answers.size() / 2];
        figures.worst = answers.back();
    }
    figures.sessionsLately = static_cast<std::uint64_t>(
        std::ranges::count_if(m_sessions, [&](Time begun) { return now - begun <= lately; }));
    return figures;
}

}  // namespace torv
