// Reading speed on a profile document of 1 MB, beside nlohmann/json in the same run. Only the reading
// is timed; the trees are taken down outside.

#include <benchmark/benchmark.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <string>

#include "JSON/SBJsonParser.h"
#include "JSON/SBJsonWriter.h"

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

template <class Read>
double secondsOf(Read read) {
    const auto begin = std::chrono::steady_clock::now();
    auto tree = read();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    benchmark::DoNotOptimize(tree);
    return taken.count();
}

void readProfile(benchmark::State& state) {
    const auto text = profile();
    torv::SBJsonParser parser;
    if (!parser.objectWithString(text)) return state.SkipWithError("the profile does not parse");
    double own = 0;
    double theirs = 0;
    for ([[maybe_unused]] auto round : state) {
        const auto taken = secondsOf([&] { return parser.objectWithString(text); });
        state.SetIterationTime(taken);
        own += taken;
        theirs += secondsOf([&] { return nlohmann::json::parse(text); });
    }
    const auto bytes = static_cast<double>(text.size()) * static_cast<double>(state.iterations());
    state.counters["MB/s"] = bytes / own / 1e6;
    state.counters["nlohmann_MB/s"] = bytes / theirs / 1e6;
    state.counters["ratio"] = own / theirs;
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
