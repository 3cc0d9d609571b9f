// An hour of driving (under a sanitizer, whose own memory tells nothing, a few minutes) in virtual time: 200
// frames a second into the readers of the shipped profile.
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <random>

#include "fakes/FakePlatform.h"
#include "fakes/Frames.h"
#include "fakes/FreshEngine.h"
#include "session/iTorvFeeder.h"
#include "vehicles/ProfileDocument.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

struct Decoder final : iTorvReader {
    explicit Decoder(TorvAttribute a) : attribute(std::move(a)) {}
    void readAid(std::span<std::uint8_t> bytes, AID aid) override {
        auto value = AV::forAID(aid, bytes);
        texts += attribute.dataFromAV(value)->value.empty() ? 0 : 1;
    }
    [[nodiscard]] std::int32_t priority() const override { return 0; }

    const TorvAttribute attribute;
    std::size_t texts = 0;
};

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int seconds = 300;
#else
constexpr int seconds = 3600;
#endif

TEST(Soak, AnHourOfDrivingKeepsMemoryLevel) {
    fakes::FakePlatform platform;
    fakes::freshenEngine();
    std::string error;
    const auto vehicle = vehicleFromFileOrShipped({}, error);
    ASSERT_TRUE(vehicle) << error;
    auto feeder = std::make_shared<iTorvFeeder>();
    feeder->setFeeding(true);
    std::vector<std::shared_ptr<Decoder>> decoders;
    for (const auto& sensor : vehicle->sensors()) {
        decoders.push_back(std::make_shared<Decoder>(sensor));
        feeder->addReaderForKey(decoders.back(), std::to_string(sensor.aid));
    }
    feeder->start();
    std::mt19937 random{99};
    std::size_t inUse = 0;
    for (int second = 0; second < seconds; ++second) {
        for (int i = 0; i < 200; ++i) {
            // Boost, engine speed, exhaust temperature and the odometer: an item of each of the first three
            // widths.
            const auto low = static_cast<std::uint8_t>(random());
            const auto high = static_cast<std::uint8_t>(random() % 8);
            platform.stream().feed(
                fakes::frame({0x1D, 8, low, 78, low, high, 80, high, low, 150, low, high, 1}));
            platform.loop.runFor(5ms);
        }
        platform.stream().sent.clear();
        if (second == 60) inUse = mallinfo2().uordblks;
    }
    EXPECT_TRUE(feeder->driver().connected());
    EXPECT_EQ(platform.opened.size(), 1U);
    const auto texts = std::count_if(decoders.begin(), decoders.end(),
                                     [](const auto& d) { return d->texts > 195 * seconds; });
    EXPECT_EQ(texts, 4);
    EXPECT_LE(mallinfo2().uordblks, inUse + 65536);
}

}  // namespace
