// The road of a frame: the engine alone, beside the two checksum passes that it can't do without, and from
// a chunk to the readers.

#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "benchmarks/Timing.h"
#include "fakes/FakePlatform.h"
#include "link/x2comEngine.h"
#include "session/iTorvFeeder.h"

namespace {

std::atomic<std::int64_t> allocations{0};

void* counted(std::size_t size) {
    ++allocations;
    if (auto* memory = std::malloc(size)) return memory;
    throw std::bad_alloc{};
}

}  // namespace

void* operator new(std::size_t size) {
    return counted(size);
}
void* operator new[](std::size_t size) {
    return counted(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

struct Frame {
    x2comFrame bytes{};
    std::uint8_t length = 0;
};

Frame frameOf(std::uint32_t type, std::initializer_list<std::uint8_t> payload) {
    Frame frame;
    frame.length = static_cast<std::uint8_t>(payload.size() + 2);
    frame.bytes[0] = static_cast<std::uint8_t>(type << 4U | (payload.size() + 1));
    std::copy(payload.begin(), payload.end(), frame.bytes.begin() + 1);
    frame.bytes[payload.size() + 1] =
        x2comCrc8(frame.bytes.data(), static_cast<std::uint8_t>(payload.size() + 1));
    return frame;
}

void push(const Frame& frame) {
    x2comPushChunk(frame.bytes.data(), frame.length);
}

/// Chunks are queued outside the measured time, as another thread's work would be; their blocks are counted.
void receiveFrame(benchmark::State& state, const Frame& frame) {
    constexpr int frames = 256;
    x2comAIDList list;
    const auto receiveAll = [&] {
        int results = 0;
        for (int i = 0; i < frames; ++i)
            results += x2comReceive(list);
        return results;
    };
    const auto checkAll = [&] {
        int results = 0;
        for (int i = 0; i < 2 * frames; ++i) {
            const auto* bytes = frame.bytes.data();
            benchmark::DoNotOptimize(bytes);
            results += x2comCrc8(bytes, frame.length);
        }
        return results;
    };
    const auto queueAll = [&] {
        for (int i = 0; i < frames; ++i)
            push(frame);
    };
    queueAll();
    static_cast<void>(receiveAll());  // behind this the engine holds the frame itself

    timing::Comparison comparison;
    std::int64_t blocks = 0;
    for ([[maybe_unused]] auto round : state) {
        const auto before = allocations.load();
        queueAll();
        const auto own = timing::secondsOf(receiveAll);
        blocks += allocations - before;
        state.SetIterationTime(own);
        comparison.add(own, timing::secondsOf(checkAll));
    }
    comparison.report(state, frames, 3);
    state.counters["allocs"] =
        static_cast<double>(blocks) / (frames * static_cast<double>(state.iterations()));
    state.counters["allocs_limit"] = 1;
}
BENCHMARK_CAPTURE(receiveFrame, seven_values,
                  frameOf(x2comFramePushA, {10, 1, 11, 2, 12, 3, 13, 4, 14, 5, 15, 6, 16, 7}))
    ->UseManualTime();
BENCHMARK_CAPTURE(receiveFrame, one_wide_value,
                  frameOf(x2comFramePushA, {230, 13, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}))
    ->UseManualTime();
BENCHMARK_CAPTURE(receiveFrame, request_of_14,
                  frameOf(x2comFrameRequest, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}))
    ->UseManualTime();
BENCHMARK_CAPTURE(receiveFrame, one_short_value, frameOf(x2comFramePushA, {100, 1, 2}))->UseManualTime();

class NotingReader final : public torv::iTorvReader {
public:
    using Clock = std::chrono::steady_clock;

    explicit NotingReader(Clock::time_point& lastCall) : m_lastCall(lastCall) {}
    void readAid(std::span<std::uint8_t> bytes, torv::AID) override {
        benchmark::DoNotOptimize(bytes.data());
        m_lastCall = Clock::now();
    }
    [[nodiscard]] std::int32_t priority() const override { return 1; }

private:
    Clock::time_point& m_lastCall;
};

/// To the last of the four readers of a frame; ten frames take turns to bring the 40 sensors. A frame takes
/// effect with the chunk behind it, so that chunk is where the clock starts.
void chunkToReader(benchmark::State& state) {
    constexpr std::uint8_t firstSensor = 80;
    constexpr std::uint8_t sensors = 40;
    const fakes::FakePlatform platform;
    torv::iTorvFeeder feeder;
    NotingReader::Clock::time_point lastCall{};
    for (int aid = firstSensor; aid < firstSensor + sensors; ++aid)
        feeder.addReaderForKey(std::make_shared<NotingReader>(lastCall), std::to_string(aid));
    feeder.setFeeding(true);
    std::vector<Frame> frames;
    for (std::uint8_t aid = firstSensor; aid < firstSensor + sensors;
         aid = static_cast<std::uint8_t>(aid + 4)) {
        const auto next = [aid](int step) { return static_cast<std::uint8_t>(aid + step); };
        frames.push_back(frameOf(x2comFramePushA, {aid, 1, 2, next(1), 3, 4, next(2), 5, 6, next(3), 7, 8}));
    }
    push(frames.back());
    static_cast<void>(feeder.driver().handleMessage());

    std::vector<double> samples;
    std::size_t turn = 0;
    for ([[maybe_unused]] auto round : state) {
        const auto& frame = frames[turn++ % frames.size()];
        const auto begin = NotingReader::Clock::now();
        push(frame);
        static_cast<void>(feeder.driver().handleMessage());
        const std::chrono::duration<double> taken = lastCall - begin;
        if (taken.count() < 0) return state.SkipWithError("no reader was called");
        state.SetIterationTime(taken.count());
        samples.push_back(taken.count());
    }
    state.counters["median_us"] = timing::median(samples) * 1e6;
    state.counters["limit_us"] = 5;
}
BENCHMARK(chunkToReader)->UseManualTime();

}  // namespace

BENCHMARK_MAIN();
