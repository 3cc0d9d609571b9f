#include <cstdio>

#include "Commands.h"
#include "tuning/ProfileList.h"
#include "vehicles/VehicleDataSource.h"

namespace itorvctl {

using namespace torv;

namespace {

using Names = std::vector<std::string>;

Names namesOf(const std::vector<TorvAttribute>& attributes) {
    Names names;
    for (const auto& attribute : attributes) {
        if (attribute.name) names.push_back(*attribute.name);
    }
    return names;
}

Names profiles() {
    if (!ProfileList::isUsable()) return {};
    return ProfileList{}.names();
}

Names storedVehicles() {
    Names names;
    for (const auto& vehicle : VehicleDataSource::storedVehicles()) {
        if (vehicle.name()) names.push_back(*vehicle.name());
    }
    return names;
}

}  // namespace

int names(const Vehicle& vehicle, const Arguments& arguments) {
    const auto& kind = arguments.words[0];
    Names all;
    if (kind == "settings") {
        all = namesOf(vehicle.settings());
    } else if (kind == "sensors") {
        all = namesOf(vehicle.updatableSensors());
    } else if (kind == "profiles") {
        all = profiles();
    } else if (kind == "vehicles") {
        all = storedVehicles();
    } else {
        complain("names takes settings, sensors, profiles or vehicles, and not \"" + kind + "\"");
        return badArguments;
    }
    for (const auto& name : all)
        std::puts(printable(name).c_str());
    return success;
}

}  // namespace itorvctl
