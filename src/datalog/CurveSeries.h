#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace torv {

/// A span of time in seconds since a recording began.
struct TimeSpan {
    double from = 0;
    double to = 0;

    [[nodiscard]] double length() const { return to - from; }
};

/// All samples of one sensor, ready to be drawn at any scale. One thread at a time.
///
/// A curve is drawn by columns of pixels. What falls into one column is drawn from its lowest to its highest
/// value, so that no peak is lost however many samples a column has. Samples further apart than 3 seconds are
/// not joined: the link was lost, or the sensor silent.
class CurveSeries final {
public:
    /// `seconds` must not fall from one to the next, and both be finite.
    void append(double seconds, double value);

    [[nodiscard]] bool empty() const { return m_times.empty(); }
    [[nodiscard]] std::size_t size() const { return m_times.size(); }
    /// From the first to the last sample; nothing long without one.
    [[nodiscard]] TimeSpan span() const;

    struct Sample {
        double seconds;
        double value;
    };
    struct Column {
        std::size_t column;
        double first;
        double last;
        double low;
        double high;
        bool joined;  ///< with the column before it
    };
    /// What of the span, both its ends included, falls into each of so many columns, those without a sample
    /// left out. The samples next to the span are kept as columns before the first and behind the last: the
    /// span's own count from 1 to `columns`.
    [[nodiscard]] std::vector<Column> columns(TimeSpan span, std::size_t columns) const;
    /// The samples themselves, with those next to the span; for spans with few of them.
    [[nodiscard]] std::vector<Sample> samples(TimeSpan span) const;
    [[nodiscard]] std::size_t countWithin(TimeSpan span) const;
    [[nodiscard]] static bool areJoined(double before, double after) { return after - before <= longestGap; }

    struct Summary {
        double low = 0;
        double high = 0;
        double mean = 0;  ///< of the samples, not of the time
    };
    /// Nothing when no sample falls into the span.
    [[nodiscard]] std::optional<Summary> summary(TimeSpan span) const;
    /// The latest value at this moment; nothing before the first, and in a gap.
    [[nodiscard]] std::optional<double> valueAt(double seconds) const;

private:
    static constexpr double longestGap = 3;
    static constexpr std::size_t blockSize = 64;

    /// Of all samples of a block, so that a long span is summed up without looking at each.
    struct Block {
        double low;
        double high;
        double sum;
    };

    [[nodiscard]] std::size_t indexAt(double seconds) const;      // of the first sample not before it
    [[nodiscard]] std::size_t indexBehind(double seconds) const;  // of the first sample after it
    [[nodiscard]] Block blockOf(std::size_t begin, std::size_t end) const;

    std::vector<double> m_times;
    std::vector<double> m_values;
    std::vector<Block> m_blocks;
};

}  // namespace torv
