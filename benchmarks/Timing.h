// What the benchmarks measure with: wall time of one piece of work, and the median of many.
#pragma once

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

namespace timing {

/// Wall time of `work`; what it returns is let go of only after the measurement.
template <class Work>
[[nodiscard]] double secondsOf(Work&& work) {
    const auto begin = std::chrono::steady_clock::now();
    auto result = work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    benchmark::DoNotOptimize(result);
    return taken.count();
}

/// The middle one, so that a moment in which the machine did something else does not count.
[[nodiscard]] inline double median(std::vector<double> samples) {
    if (samples.empty()) return 0;
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

/// Two ways of doing the same, taken by turns in one run.
class Comparison final {
public:
    void add(double own, double other) {
        m_own.push_back(own);
        m_other.push_back(other);
    }

    /// Counters: nanoseconds for each of the `pieces` in a sample, their ratio, and its limit.
    void report(benchmark::State& state, double pieces, double limit) const {
        const auto own = median(m_own);
        const auto other = median(m_other);
        state.counters["own_ns"] = own / pieces * 1e9;
        state.counters["other_ns"] = other / pieces * 1e9;
        state.counters["ratio"] = own / other;
        state.counters["limit"] = limit;
    }

private:
    std::vector<double> m_own;
    std::vector<double> m_other;
};

}  // namespace timing
