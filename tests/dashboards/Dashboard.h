#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "dashboards/AlternateViewController.h"
#include "dashboards/LastViewController.h"
#include "dashboards/iTorvViewController.h"
#include "fakes/FakePlatform.h"
#include "fakes/FreshEngine.h"
#include "fakes/PlayedModule.h"
#include "screens/Stage.h"
#include "vehicles/VehicleDataSource.h"

namespace fakes {

inline torv::Dictionary sensor(int aid, const char* minimum = "0", const char* maximum = "100", int rule = 0,
                               int mark = 0, const char* unit = "PSI") {
    using torv::Number;
    return {{"aid", Number::fromInteger(aid)},
            {"name", "Sensor " + std::to_string(aid)},
            {"unit", unit},
            {"minValue", Number{minimum}},
            {"maxValue", Number{maximum}},
            {"warningRule", Number::fromInteger(rule)},
            {"warningValue", Number::fromInteger(mark)},
            {"formatter", Number::fromInteger(0)},
            {"multiplyFactor", Number::fromInteger(1)}};
}

inline torv::Vehicle truck(const char* name, torv::Array sensors) {
    using torv::Dictionary;
    using torv::Number;
    const auto widget = [](int aid, int formatter) {
        return Dictionary{{"aid", Number::fromInteger(aid)}, {"formatter", Number::fromInteger(formatter)}};
    };
    torv::Vehicle vehicle;
    vehicle.setName(name);
    vehicle.setInfo(torv::ProfileInfo{Dictionary{{"parameters", Dictionary{{"sensors", std::move(sensors)},
                                                                           {"powerLevel", widget(4, 3)},
                                                                           {"currentGear", widget(5, 2)},
                                                                           {"torqueLock", widget(6, 1)},
                                                                           {"sootReg", widget(53, 1)},
                                                                           {"soxReg", widget(54, 1)}}}}});
    return vehicle;
}

/// The application's pages in virtual time, with no window.
class Dashboard {
public:
    Dashboard() { freshenEngine(); }
    ~Dashboard() { page.reset(); }
    Dashboard(const Dashboard&) = delete;
    Dashboard& operator=(const Dashboard&) = delete;

    void launch(const torv::Vehicle& vehicle) {
        torv::VehicleDataSource::setCurrentVehicle(vehicle);
        app = std::make_shared<torv::iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
    }
    template <class Page = torv::iTorvViewController>
    torv::DashboardViewController& open() {
        page = std::make_shared<Page>(app, torv::DashboardScreens{});
        page->loadViewIfNeeded();
        page->viewDidAppear();
        return *page;
    }
    /// As if the module had sent it: into the store, and on to all readers.
    void receive(std::uint8_t aid, const Bytes& bytes) {
        {
            const std::scoped_lock lock{torv::avStoreMutex()};
            const auto value = torv::AV::forAID(aid, bytes);  // nothing of an earlier test stays behind it
            std::copy(value.bytes().begin(), value.bytes().end(), x2comReceiveSlot(aid));
        }
        app->feeder()->driver().handleAIDsUpdateCount(std::span{&aid, 1});
        platform.loop.runWork();
    }
    [[nodiscard]] torv::DroppableView& place(std::size_t index) const {
        return *page->droppableViews()[index];
    }
    void drop(torv::AID aid, std::size_t index) const {
        place(index).dropView(page->indicatorView(aid)->draggingView());
    }
    /// The AID stored under the key; -1 when there is no entry.
    [[nodiscard]] torv::AID stored(const std::string& key) const {
        const auto value = platform.defaults.objectForKey(key);
        return value.isNull() ? -1 : value.longLongValue();
    }

    FakePlatform platform;
    std::shared_ptr<torv::iTorvAppDelegate> app;
    std::shared_ptr<torv::DashboardViewController> page;
    std::vector<Bytes> writes;
};

}  // namespace fakes
