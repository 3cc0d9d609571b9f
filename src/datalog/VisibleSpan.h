#pragma once

#include <algorithm>

#include "datalog/CurveSeries.h"

namespace torv {

/// Which part of a recording a graph shows: never more than the whole of it, never less than a tenth of a
/// second. Places are fractions of the graph's width, from 0 at its left edge to 1. One thread at a time.
class VisibleSpan final {
public:
    VisibleSpan() = default;
    explicit VisibleSpan(TimeSpan whole)
        : m_whole{whole.from, std::max(whole.to, whole.from + shortest)}, m_span(m_whole) {}

    [[nodiscard]] TimeSpan span() const { return m_span; }
    [[nodiscard]] double timeAt(double place) const { return m_span.from + place * m_span.length(); }
    [[nodiscard]] double placeOf(double time) const { return (time - m_span.from) / m_span.length(); }

    void showAll() { m_span = m_whole; }
    /// So that this moment stands at this place.
    void keep(double time, double place) { show(time - place * m_span.length(), m_span.length()); }
    /// The same for two, as two fingers hold them. Nothing changes while they are at one place.
    void keep(double first, double firstPlace, double second, double secondPlace) {
        const double length = (second - first) / (secondPlace - firstPlace);
        if (length > 0 && length <= largest) show(first - firstPlace * std::max(length, shortest), length);
    }
    /// `factor` below 1 shows less; what stands at the place stays there.
    void zoom(double place, double factor) {
        const double time = timeAt(place);
        const double length = std::clamp(m_span.length() * factor, shortest, m_whole.length());
        show(time - place * length, length);
    }

private:
    static constexpr double shortest = 0.1;
    static constexpr double largest = 1e12;

    void show(double from, double length) {
        length = std::clamp(length, shortest, m_whole.length());
        // At the ends exactly, however the sum is rounded: the first and the last sample stand there.
        if (length >= m_whole.length()) {
            m_span = m_whole;
        } else if (from >= m_whole.to - length) {
            m_span = {m_whole.to - length, m_whole.to};
        } else {
            from = std::max(from, m_whole.from);
            m_span = {from, from + length};
        }
    }

    TimeSpan m_whole{0, shortest};
    TimeSpan m_span = m_whole;
};

}  // namespace torv
