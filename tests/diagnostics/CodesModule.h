#pragma once

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "control/iTorvAppDelegate.h"
#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "fakes/PlayedModule.h"
#include "vehicles/VehicleDataSource.h"

/// The application in virtual time, on a module that reports what the test tells it to.
namespace codes_test {

using namespace torv;
using namespace std::chrono_literals;
using fakes::Bytes;

/// A push of one long value.
inline Bytes pushOf(std::uint8_t aid, const Bytes& value) {
    Bytes bytes{static_cast<std::uint8_t>(0x10 | (value.size() + 2)), aid};
    bytes.insert(bytes.end(), value.begin(), value.end());
    bytes.push_back(x2comCrc8(bytes.data(), static_cast<std::uint8_t>(bytes.size())));
    return bytes;
}
/// P0101 and on.
inline Bytes report224(int reported) {
    Bytes value{13, 0, static_cast<std::uint8_t>(reported), 1, 1, 1, 2, 1, 3, 1, 4, 1, 5};
    return pushOf(224, value);
}
inline Bytes report225(int codes) {
    Bytes value{static_cast<std::uint8_t>(1 + 2 * codes)};
    for (int i = 0; i < codes; ++i)
        value.insert(value.end(), {1, static_cast<std::uint8_t>(6 + i)});
    return pushOf(225, value);
}

class CodesTest : public testing::Test {
protected:
    CodesTest() {
        fakes::freshenEngine();
        Vehicle vehicle;
        vehicle.setName("Tow/Truck");
        vehicle.setInfo(ProfileInfo{Dictionary{{"parameters", Dictionary{}}}});
        VehicleDataSource::setCurrentVehicle(vehicle);
        app = std::make_shared<iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto& whenShown) { whenShown(); });
        connect();
    }
    ~CodesTest() override { app->applicationWillTerminate(); }

    void connect() {
        acknowledges = true;
        fakes::connectModule(platform, m_ignored);
        play();
        platform.loop.runFor(1000ms);
        ASSERT_TRUE(app->connected() && app->feeder()->driver().connected());
    }
    void play() {
        platform.stream().onWrite = [this](const Bytes& sent) {
            if (!acknowledges) return;
            if (sent[0] >> 4 == x2comFrameWrite && sent[1] >= 25 && sent[1] <= 27) {
                askedAt.push_back(platform.loop.time().count());
                if (onAsked) onAsked();
            }
            if (sent[0] >> 4 == x2comFrameRequest && sent[1] == 78) {
                ++speedAskedFor;
                platform.stream().feed(speed);
            }
            platform.stream().feed(fakes::frame({0x22, sent[1]}));
            platform.stream().feed(push);
        };
        // A module never falls silent for long.
        ticking = platform.loop.scheduleTimer(100ms, true, [this](Timer&) {
            if (!platform.stream().closed) platform.stream().feed(push);
        });
    }
    void feedAfter(std::chrono::milliseconds time, const Bytes& bytes) {
        platform.loop.scheduleTimer(time, false, [this, bytes](Timer&) {
            platform.stream().feed(bytes);
            platform.stream().feed(push);
        });
    }
    void fall() {
        acknowledges = false;
        ticking->invalidate();
        platform.stream().lose();
    }

    const Bytes push = fakes::frame({0x13, 10, 0x2A});
    fakes::FakePlatform platform;
    std::shared_ptr<iTorvAppDelegate> app;
    std::shared_ptr<Timer> ticking;
    bool acknowledges = true;
    Bytes speed = fakes::frame({0x14, 78, 0, 0});
    int speedAskedFor = 0;
    std::vector<std::int64_t> askedAt;  // milliseconds
    std::function<void()> onAsked;

private:
    std::vector<Bytes> m_ignored;
};

}  // namespace codes_test
