#include "connection/LinkStatistics.h"

#include <algorithm>
#include <utility>

namespace torv {
namespace {

std::string placeText(const Endpoint& endpoint) {
    return endpoint.host + ", port " + std::to_string(endpoint.port);
}

std::string endText(const Endpoint& endpoint, ByteStream::Reach how, bool hadSession) {
    if (hadSession) return "The connection was lost";
    switch (how) {
        case ByteStream::Reach::unreachable:
            return "There was no way to " + placeText(endpoint);
        case ByteStream::Reach::refused:
            return placeText(endpoint) + ", refused the connection";
        case ByteStream::Reach::open:
            return "The module took the connection and sent no values";
        case ByteStream::Reach::closed:
            return "The module took the connection and closed it";
        case ByteStream::Reach::noAnswer:
            break;
    }
    return "No answer from " + placeText(endpoint);
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
    ++m_figures.sessions;
    m_figures.upSince = m_loop.now();
    note("Connected");
}

void LinkStatistics::connectionEnded(const Endpoint& endpoint, ByteStream::Reach how, bool hadSession) {
    const std::scoped_lock lock{m_mutex};
    m_figures.upSince.reset();
    note(endText(endpoint, how, hadSession));
}

void LinkStatistics::exchangeEnded(const Exchange& exchange) {
    const std::scoped_lock lock{m_mutex};
    if (!exchange.answered) {
        ++m_figures.unanswered;
        if (m_figures.upSince)
            note(std::string{exchange.isWrite ? "A write of AID " : "A request of AID "} +
                 std::to_string(exchange.aid) + " was not answered");
        return;
    }
    ++m_figures.answered;
    m_answers.push_back(exchange.took);
    if (m_answers.size() > keptAnswers) m_answers.pop_front();
    const auto took = std::chrono::ceil<std::chrono::milliseconds>(exchange.took);
    m_figures.worst = std::max(m_figures.worst.value_or(took), took);
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
    if (!m_answers.empty()) {
        std::vector<std::chrono::nanoseconds> sorted{m_answers.begin(), m_answers.end()};
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::nth_element(sorted.begin(), middle, sorted.end());
        figures.median = std::chrono::ceil<std::chrono::milliseconds>(*middle);
    }
    return figures;
}

}  // namespace torv
