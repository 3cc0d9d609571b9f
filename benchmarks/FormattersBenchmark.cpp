// A number from bytes to text and back, beside the C library doing the two conversions on the same values.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "attributes/AVNumberFormatter.h"
#include "benchmarks/Timing.h"

namespace {

using Slot = std::array<std::uint8_t, 13>;

void thereAndBack(benchmark::State& state, float offset, float factor, int digits) {
    constexpr std::uint32_t values = 256;
    constexpr std::uint32_t step = 251;  // raw values over all of two bytes
    torv::AVNumberFormatter formatter{offset, factor, digits};
    std::array<Slot, values> slots{};
    std::array<float, values> numbers{};
    for (std::uint32_t i = 0; i < values; ++i) {
        const auto raw = i * step;
        slots[i][0] = static_cast<std::uint8_t>(raw);
        slots[i][1] = static_cast<std::uint8_t>(raw >> 8U);
        numbers[i] = static_cast<float>(raw) * factor + offset;
    }
    const auto formatAll = [&] {
        int sum = 0;
        for (auto& slot : slots) {
            const auto data = formatter.dataFromAV(slot.data());
            sum += formatter.allocAVFromFormatterData(*data)[0];
        }
        return sum;
    };
    const auto printAll = [&] {
        float sum = 0;
        for (const auto number : numbers) {
            std::array<char, 64> text{};
            std::snprintf(text.data(), text.size(), "%.*f", digits, static_cast<double>(number));
            sum += std::strtof(text.data(), nullptr);
        }
        return sum;
    };
    timing::Comparison comparison;
    for ([[maybe_unused]] auto round : state) {
        const auto own = timing::secondsOf(formatAll);
        state.SetIterationTime(own);
        comparison.add(own, timing::secondsOf(printAll));
    }
    comparison.report(state, values, 1);
}
BENCHMARK_CAPTURE(thereAndBack, whole_number, 0.0F, 1.0F, 0)->UseManualTime();
BENCHMARK_CAPTURE(thereAndBack, one_digit, -40.0F, 0.25F, 1)->UseManualTime();
BENCHMARK_CAPTURE(thereAndBack, three_digits, 0.0F, 0.0145F, 3)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
