#include "datalog/CurveSeries.h"

#include <algorithm>

namespace torv {

void CurveSeries::append(double seconds, double value) {
    if (m_values.size() % blockSize == 0) m_blocks.push_back({value, value, 0});
    m_times.push_back(seconds);
    m_values.push_back(value);
    auto& block = m_blocks.back();
    block.low = std::min(block.low, value);
    block.high = std::max(block.high, value);
    block.sum += value;
}

TimeSpan CurveSeries::span() const {
    return empty() ? TimeSpan{} : TimeSpan{m_times.front(), m_times.back()};
}

std::size_t CurveSeries::indexAt(double seconds) const {
    return static_cast<std::size_t>(std::lower_bound(m_times.begin(), m_times.end(), seconds) -
                                    m_times.begin());
}

std::size_t CurveSeries::indexBehind(double seconds) const {
    return static_cast<std::size_t>(std::upper_bound(m_times.begin(), m_times.end(), seconds) -
                                    m_times.begin());
}

/// Of the samples from `begin` to before `end`, of which there is at least one.
CurveSeries::Block CurveSeries::blockOf(std::size_t begin, std::size_t end) const {
    Block all{m_values[begin], m_values[begin], 0};
    while (begin < end) {
        const bool whole = begin % blockSize == 0 && begin + blockSize <= end;
        const auto next =
            whole ? m_blocks[begin / blockSize] : Block{m_values[begin], m_values[begin], m_values[begin]};
        all.low = std::min(all.low, next.low);
        all.high = std::max(all.high, next.high);
        all.sum += next.sum;
        begin += whole ? blockSize : 1;
    }
    return all;
}

std::vector<CurveSeries::Column> CurveSeries::columns(TimeSpan span, std::size_t columns) const {
    std::vector<Column> result;
    if (empty() || columns == 0 || span.length() <= 0) return result;
    const double width = span.length() / static_cast<double>(columns);
    auto begin = indexAt(span.from);
    const auto last = indexBehind(span.to);
    const auto add = [&](std::size_t column, std::size_t from, std::size_t to) {
        if (from >= to) return;
        const auto block = blockOf(from, to);
        const bool joined = from > 0 && areJoined(m_times[from - 1], m_times[from]);
        result.push_back({column, m_values[from], m_values[to - 1], block.low, block.high, joined});
    };
    if (begin > 0) add(0, begin - 1, begin);
    while (begin < last) {
        const auto column =
            std::min(static_cast<std::size_t>((m_times[begin] - span.from) / width), columns - 1);
        const double edge = span.from + static_cast<double>(column + 1) * width;
        // At least one, however the edge is rounded.
        const auto end = column + 1 == columns ? last : std::clamp(indexAt(edge), begin + 1, last);
        add(column + 1, begin, end);
        begin = end;
    }
    if (last < size()) add(columns + 1, last, last + 1);
    return result;
}

std::vector<CurveSeries::Sample> CurveSeries::samples(TimeSpan span) const {
    const auto begin = indexAt(span.from);
    const auto end = std::min(indexBehind(span.to) + 1, size());
    std::vector<Sample> result;
    for (auto i = begin > 0 ? begin - 1 : begin; i < end; ++i)
        result.push_back({m_times[i], m_values[i]});
    return result;
}

std::size_t CurveSeries::countWithin(TimeSpan span) const {
    return indexBehind(span.to) - indexAt(span.from);
}

std::optional<CurveSeries::Summary> CurveSeries::summary(TimeSpan span) const {
    const auto begin = indexAt(span.from);
    const auto end = indexBehind(span.to);
    if (begin >= end) return std::nullopt;
    const auto block = blockOf(begin, end);
    return Summary{block.low, block.high, block.sum / static_cast<double>(end - begin)};
}

std::optional<double> CurveSeries::valueAt(double seconds) const {
    const auto behind = indexBehind(seconds);
    if (behind == 0) return std::nullopt;
    const bool inGap = behind < size() ? !areJoined(m_times[behind - 1], m_times[behind])
                                       : !areJoined(m_times[behind - 1], seconds);
    if (inGap && m_times[behind - 1] != seconds) return std::nullopt;
    return m_values[behind - 1];
}

}  // namespace torv
