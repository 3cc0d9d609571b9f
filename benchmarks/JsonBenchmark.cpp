// Reading speed on a profile document of 1 MB, beside nlohmann/json in the same run. Only the reading
// is timed; the trees are taken down outside.

#include <benchmark/benchmark.h>

#include <nlohmann/json.hpp>
#include <string>

#include "JSON/SBJsonParser.h"
#include "JSON/SBJsonWriter.h"
#include "benchmarks/Timing.h"

namespace {

std::string sensor(int i) {
    const auto n = std::to_string(i);
    return R"({"aid": )" + n + R"(, "name": "Sensor )" + n +
           R"(", "unit": "DEGF", "formatter": 0, "multiplyFactor": 0.25, "offset": -40, )" +
           R"("decimalDigits": 1, "minValue": 0, "maxValue": )" + std::to_string(60 + i % 4800) +
           R"(, "warningRule": 1, "warningValue": 45.5, "minmax": "high", "enabled": true})";
}

std::string profile() {
    constexpr std::size_t megabyte = 1'000'000;
    std::string text = R"({"vehicle": "Diesel Pickup 6.7L", "version": "1.0", "DTC": "YES",
  "url": "http://update.example.com/profile.json", "parameters": {"sensors": [)";
    for (int i = 0; text.size() < megabyte; ++i)
        text += (i == 0 ? "\n    " : ",\n    ") + sensor(i);
    return text + "]}}\n";
}

void readProfile(benchmark::State& state) {
    const auto text = profile();
    torv::SBJsonParser parser;
    if (!parser.objectWithString(text)) return state.SkipWithError("the profile does not parse");
    timing::Comparison comparison;
    for ([[maybe_unused]] auto round : state) {
        const auto own = timing::secondsOf([&] { return parser.objectWithString(text); });
        const auto other = timing::secondsOf([&] { return nlohmann::json::parse(text); });
        state.SetIterationTime(own);
        comparison.add(own, other);
    }
    comparison.report(state, 1, 1);
}
BENCHMARK(readProfile)->UseManualTime()->Unit(benchmark::kMillisecond);

void writeProfile(benchmark::State& state) {
    const auto tree = torv::SBJsonParser{}.objectWithString(profile());
    torv::SBJsonWriter writer;
    std::size_t bytes = 0;
    for ([[maybe_unused]] auto round : state)
        bytes += writer.stringWithObject(*tree)->size();
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
}
BENCHMARK(writeProfile)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
