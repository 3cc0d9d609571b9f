#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/ModuleState.h"
#include "control/ConnectReplay.h"
#include "fakes/FakePlatform.h"
#include "fakes/Frames.h"
#include "fakes/FreshEngine.h"
#include "platform/NotificationNames.h"
#include "platform/StoredKeys.h"
#include "tuning/ProfileList.h"
#include "vehicles/VehicleDataSource.h"

/// The application in virtual time, on the memory of the bench's module, which the test can spoil.
namespace tuning_test {

using namespace torv;
using namespace std::chrono_literals;
using fakes::Bytes;

inline Dictionary item(int aid, const char* name, int lowest = 0, int highest = 200, int formatter = 0) {
    const auto number = [](int value) { return Number::fromInteger(value); };
    return {{"aid", number(aid)},
            {"name", name},
            {"unit", "RPM"},
            {"formatter", number(formatter)},
            {"multiplyFactor", number(1)},
            {"minValue", number(lowest)},
            {"maxValue", number(highest)},
            {"warningvaluelow", number(lowest)},
            {"warningvaluehigh", number(highest)},
            {"additionalMinValue", number(300)},
            {"additionalMaxValue", number(700)}};
}

inline Vehicle truck() {
    Vehicle vehicle;
    vehicle.setName("Truck");
    const Array groups{Dictionary{{"name", "Limits"},
                                  {"type", "list"},
                                  {"items", Array{item(31, "Rev"), item(152, "Timer", 30, 600, 7)}}},
                       Dictionary{{"name", "Fueling"},
                                  {"type", "equalizer"},
                                  {"low", Number::fromInteger(50)},
                                  {"high", Number::fromInteger(150)},
                                  {"default", Number::fromInteger(100)},
                                  {"items", Array{item(42, "800", 50, 150), item(43, "1200", 60, 150)}}},
                       Dictionary{{"name", "Odd"}, {"type", "wheel"}, {"items", Array{item(44, "One")}}}};
    vehicle.setInfo(ProfileInfo{Dictionary{{"parameters", Dictionary{{"tuning", groups}}}}});
    return vehicle;
}

class TuningTest : public testing::Test {
protected:
    TuningTest() {
        fakes::freshenEngine();
        std::filesystem::remove(ProfileList::dataFilePath());
        VehicleDataSource::setCurrentVehicle(truck());
        platform.defaults.setObjectForKey(std::string{defaultProfileName}, activeProfileKey);
        platform.defaults.setObjectForKey(std::string{}, "AS_FOUND_Truck");
    }
    ~TuningTest() override {
        if (app) app->applicationWillTerminate();
    }

    /// The link is up, and the replay has not begun. The module is there again after each loss.
    void connect() {
        platform.onOpened = [this] {
            platform.stream().onWrite = [this](const Bytes& sent) { play(sent); };
            for (int i = 0; i < 3; ++i)
                platform.stream().feed(fakes::frame({0x13, 10, 1}));
        };
        app = std::make_shared<iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
        platform.loop.runWork();
        writes.clear();
    }
    /// The link is lost with this frame of the next pass, and comes back with a replay in the middle of it.
    void loseAt(std::size_t frame, ConnectReplay& replay) {
        lost = platform.notificationCenter().addObserver(sendNotification, [this, &replay] {
            answers = true;
            replay.run();
        });
        onFrame = [this, frame, frames = std::size_t{0}](const bench::Frame&) mutable {
            if (++frames != frame) return;
            answers = false;
            platform.stream().lose();
        };
    }
    void hold(std::uint8_t aid, std::uint8_t value) {
        bench::Bytes bytes(bench::valueWidth(aid), 0);
        bytes[0] = value;
        module.force(aid, bytes);
        static_cast<void>(module.nextPush());
    }

    fakes::FakePlatform platform;
    std::shared_ptr<iTorvAppDelegate> app;
    bench::ModuleState module;
    std::function<void(const bench::Frame&)> onFrame;
    std::vector<bench::Item> writes;
    bool answers = true;
    NotificationCenter::Observation lost;

private:
    void play(const Bytes& sent) {
        const auto frame = bench::decode(sent);
        if (!frame) return;
        if (onFrame) onFrame(*frame);
        for (const auto& written :
             frame->type == 0 ? bench::parseItems(frame->payload) : std::vector<bench::Item>{}) {
            writes.push_back(written);
            if (module.write(written) && answers) feed({2, {written.aid}});
        }
        if (frame->type != bench::typeByte(bench::FrameType::request)) return;
        bench::Frame response{bench::typeByte(bench::FrameType::response), {}};
        for (const auto aid : frame->payload)
            bench::appendItem(response.payload, {aid, module.value(aid)});
        if (answers) feed(response);
    }
    void feed(const bench::Frame& frame) {
        platform.stream().feed(bench::encode(frame));
        platform.stream().feed(fakes::frame({0x13, 10, 1}));
    }
};

}  // namespace tuning_test
