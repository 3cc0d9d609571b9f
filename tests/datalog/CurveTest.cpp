#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "datalog/CurveAxis.h"
#include "datalog/VisibleSpan.h"

namespace {

using namespace torv;

/// Irregular times, now and then a gap; values of all sizes.
CurveSeries randomSeries(std::mt19937& random, std::size_t count) {
    CurveSeries series;
    double time = 0;
    std::uniform_real_distribution<double> step{0, 0.05};
    std::normal_distribution<double> value{0, 100};
    for (std::size_t i = 0; i < count; ++i) {
        time += random() % 200 == 0 ? 10 : step(random);
        series.append(time, value(random));
    }
    return series;
}

TEST(CurveSeries, NoSampleIsLostByReduction) {
    std::mt19937 random{7};
    for (int run = 0; run < 60; ++run) {
        const auto series = randomSeries(random, random() % 3000 + 1);
        const auto whole = series.span();
        std::uniform_real_distribution<double> place{whole.from - 1, whole.to + 1};
        TimeSpan span{place(random), place(random)};
        if (span.from > span.to) std::swap(span.from, span.to);
        if (run % 3 == 0) span = whole;  // ends with the last sample
        if (span.length() == 0) continue;
        const std::size_t width = random() % 400 + 1;
        const auto columns = series.columns(span, width);
        const auto samples = series.samples(span);
        // Each sample stands in the column of its time, and each column holds nothing else.
        std::vector<bool> seen(columns.size());
        double low = 1e9;
        double high = -1e9;
        double sum = 0;
        int count = 0;
        for (const auto& sample : samples) {
            const double exact = (sample.seconds - span.from) / span.length() * static_cast<double>(width);
            const bool outside = sample.seconds < span.from || sample.seconds > span.to;
            const auto found = std::ranges::find_if(columns, [&](const CurveSeries::Column& column) {
                if (outside) return column.column == (sample.seconds < span.from ? 0 : width + 1);
                return std::abs(static_cast<double>(column.column) - 1 - exact + 0.5) < 0.5 + 1e-6 &&
                       column.low <= sample.value && sample.value <= column.high;
            });
            ASSERT_NE(found, columns.end()) << run << ": " << exact << " of " << width;
            seen[static_cast<std::size_t>(found - columns.begin())] = true;
            if (outside) continue;
            low = std::min(low, sample.value);
            high = std::max(high, sample.value);
            sum += sample.value;
            ++count;
        }
        EXPECT_EQ(std::ranges::count(seen, false), 0);
        EXPECT_EQ(series.countWithin(span), static_cast<std::size_t>(count));
        const auto summary = series.summary(span);
        ASSERT_EQ(summary.has_value(), count > 0);
        if (!summary) continue;
        EXPECT_EQ(summary->low, low);
        EXPECT_EQ(summary->high, high);
        EXPECT_NEAR(summary->mean, sum / count, 1e-6);
        double drawnLow = 1e9;
        double drawnHigh = -1e9;
        for (const auto& column : columns) {
            if (column.column < 1 || column.column > width) continue;
            drawnLow = std::min(drawnLow, column.low);
            drawnHigh = std::max(drawnHigh, column.high);
        }
        EXPECT_EQ(drawnLow, low);
        EXPECT_EQ(drawnHigh, high);
    }
}

TEST(CurveSeries, TheLastSampleIsDrawnWhereTheGraphEnds) {
    CurveSeries series;
    for (int i = 0; i < 1000; ++i)
        series.append(i * 0.1, i == 999 ? 250 : 20);
    for (const std::size_t width : {1U, 7U, 400U}) {
        const auto columns = series.columns(series.span(), width);
        EXPECT_EQ(columns.back().column, width);
        EXPECT_EQ(columns.back().high, 250);
    }
    EXPECT_EQ(series.countWithin(series.span()), series.size());
}

TEST(CurveSeries, GapsAreNotJoinedAndHaveNoValue) {
    CurveSeries series;
    EXPECT_FALSE(series.valueAt(0));
    EXPECT_TRUE(series.columns({0, 1}, 10).empty());
    for (const double time : {1.0, 2.0, 6.0})
        series.append(time, time * 10);
    EXPECT_FALSE(series.valueAt(0.9));
    EXPECT_EQ(series.valueAt(1), 10);
    EXPECT_EQ(series.valueAt(1.9), 10);
    EXPECT_EQ(series.valueAt(2), 20);
    EXPECT_FALSE(series.valueAt(2.1));
    EXPECT_EQ(series.valueAt(6), 60);
    EXPECT_EQ(series.valueAt(9), 60);
    EXPECT_FALSE(series.valueAt(9.1));
    const auto columns = series.columns({1.5, 6.5}, 5);
    ASSERT_EQ(columns.size(), 3U);
    EXPECT_EQ(columns[0].column, 0U);  // from beyond the left edge
    EXPECT_TRUE(columns[1].joined);
    EXPECT_FALSE(columns[2].joined);
    EXPECT_EQ(columns[2].column, 5U);
}

TEST(CurveAxis, HasRoundNumbersAroundItsValues) {
    for (const auto& [low, high] : {std::pair{0.0, 3564.0},
                                    {185.0, 203.0},
                                    {-40.0, 200.0},
                                    {5.0, 5.0},
                                    {0.0, 0.0},
                                    {-1e-7, 2e-7},
                                    {-1e300, 1e300}}) {
        const CurveAxis axis{low, high};
        EXPECT_LE(axis.low(), std::max(low, -1e15));
        EXPECT_GE(axis.high(), std::min(high, 1e15));
        EXPECT_LE(axis.textAt(CurveAxis::parts).size(), 22U);
    }
    EXPECT_EQ((CurveAxis{0, 3564}.textAt(0)), "0");
    EXPECT_EQ((CurveAxis{0, 3564}.textAt(CurveAxis::parts)), "4000");
    EXPECT_EQ((CurveAxis{13.9, 14.2}.textAt(1)), "14.0");
    EXPECT_DOUBLE_EQ((CurveAxis{0, 3564}.placeOf(1000)), 0.25);
    EXPECT_EQ(timeStep(60, 6), 10);
    EXPECT_EQ(timeStep(3600, 6), 600);
    EXPECT_EQ(timeStep(86400, 6), 14400);
}

TEST(VisibleSpan, StaysWithinTheWhole) {
    VisibleSpan visible{TimeSpan{0, 100}};
    visible.zoom(0.25, 0.5);
    EXPECT_DOUBLE_EQ(visible.timeAt(0.25), 25);  // what stood there stays
    EXPECT_DOUBLE_EQ(visible.span().length(), 50);
    visible.keep(77.7, 0.1);
    EXPECT_EQ(visible.span().to, 100);
    visible.keep(10, 0.9);
    EXPECT_DOUBLE_EQ(visible.span().from, 0);
    visible.keep(40, 0.25, 60, 0.75);
    EXPECT_DOUBLE_EQ(visible.timeAt(0.25), 40);
    EXPECT_DOUBLE_EQ(visible.timeAt(0.75), 60);
    const auto before = visible.span();
    visible.keep(40, 0.5, 60, 0.5);  // both fingers at one place
    EXPECT_EQ(visible.span().from, before.from);
    visible.zoom(0.5, 1e-9);
    EXPECT_NEAR(visible.span().length(), 0.1, 1e-9);
    visible.zoom(0.5, 1e9);
    EXPECT_DOUBLE_EQ(visible.span().length(), 100);
    EXPECT_DOUBLE_EQ(visible.placeOf(50), 0.5);
}

}  // namespace
