#include <algorithm>
#include <cstdio>
#include <string>
#include <tuple>
#include <vector>

#include "Commands.h"
#include "JSON/ValueArchive.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "support/TextNumbers.h"
#include "tuning/ProfileValues.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/VehicleDataSource.h"

namespace itorvctl {

using namespace torv;

namespace {

void print(const char* place, const Vehicle& vehicle, bool json) {
    const auto name = vehicle.name().value_or(json ? "" : "(no name)");
    const auto version = vehicle.version().value_or(json ? "" : "(none)");
    const std::string state = vehicle.updateAvailable() ? "update available"
                              : vehicle.info().empty()  ? "not downloaded"
                                                        : "";
    if (json) {
        const Dictionary line{{"place", place}, {"name", name}, {"version", version}, {"state", state}};
        printObject(line);
    } else {
        std::printf("%-8s  %s  version %s%s%s\n", place, printable(name).c_str(), printable(version).c_str(),
                    state.empty() ? "" : "  ", state.c_str());
    }
}

int serverIsSilent() {
    complain("the update server " + VehicleDataSource::updateServer() +
             " could not be asked; --verbose tells why");
    return noServer;
}

int list(bool json) {
    print("current", VehicleDataSource::currentVehicle(), json);
    for (const auto& vehicle : VehicleDataSource::storedVehicles())
        print("stored", vehicle, json);
    std::fflush(stdout);  // asking the server takes a while
    const auto remote = VehicleDataSource::vehiclesOfServer();
    if (!remote) return serverIsSilent();
    for (const auto& vehicle : *remote)
        print("remote", vehicle, json);
    return success;
}

std::optional<Vehicle> named(const std::vector<Vehicle>& vehicles, const std::string& name) {
    const auto found =
        std::find_if(vehicles.begin(), vehicles.end(), [&](const Vehicle& v) { return v.name() == name; });
    if (found == vehicles.end()) return std::nullopt;
    return *found;
}

int use(const std::string& name, bool json) {
    const auto vehicle = named(VehicleDataSource::storedVehicles(), name);
    if (!vehicle) {
        complain("no vehicle \"" + name + "\" is stored");
        return badArguments;
    }
    if (vehicle->info().empty()) {
        complain("\"" + name + "\" is not downloaded yet; update it first");
        return badArguments;
    }
    VehicleDataSource::setCurrentVehicle(*vehicle);
    if (!isKept()) return noAnswer;
    if (json) {
        print("current", *vehicle, json);
    } else {
        std::printf("%s is the current vehicle; %s\n", printable(name).c_str(), seenAtNextStart);
    }
    return success;
}

int update(const std::string& name, bool json) {
    // Asked first: without a way to the internet `vehicles` does not ask, but the server may stand on this
    // very network.
    const auto remote = VehicleDataSource::vehiclesOfServer();
    auto vehicle = named(remote ? VehicleDataSource::vehicles() : VehicleDataSource::storedVehicles(), name);
    if (!vehicle && remote) vehicle = named(*remote, name);
    if (!vehicle && !remote) return serverIsSilent();
    if (!vehicle) {
        complain("there is no vehicle \"" + name + "\", neither stored nor on the update server");
        return badArguments;
    }
    if (!VehicleDataSource::updateVehicle(*vehicle)) {
        if (!remote) return serverIsSilent();
        complain("\"" + name + "\" could not be downloaded; --verbose tells why");
        return noAnswer;
    }
    if (vehicle->info().empty()) {
        complain("what was downloaded for \"" + name + "\" is no profile");
        return noAnswer;
    }
    // The current vehicle is stored beside the list.
    const bool isCurrent = vehicle->isEqual(VehicleDataSource::currentVehicle());
    if (isCurrent) VehicleDataSource::setCurrentVehicle(*vehicle);
    if (!isKept()) return noAnswer;
    print("stored", *vehicle, json);
    if (isCurrent) complain(seenAtNextStart);
    return success;
}

/// A whole number or a truth value where the text is one, else the text.
Value valueFromText(const std::string& text) {
    if (text == "true" || text == "false") return Value{text == "true"};
    const auto number = longLongValue(text);
    if (std::to_string(number) != text) return text;
    return Number::fromInteger(number);
}

/// What a running itorv has read at its start, and not again at each connect.
bool isReadAtStart(const std::string& key) {
    return key == currentVehicleKey || key == turboSettingKey || key == stockTireSizeKey ||
           key.starts_with(sensorsKeyPrefix) || key.ends_with(placementKeySuffix);
}

/// Looks into what entries hold, as itorv would: what can't be read is set aside by that.
void readThrough(UserDefaults& store) {
    static_cast<void>(VehicleDataSource::currentVehicle());
    static_cast<void>(VehicleDataSource::storedVehicles());
    for (const auto& key : store.keys()) {
        if (!key.starts_with(settingsKeyPrefix) || !originOfUnreadable(key).empty()) continue;
        Vehicle vehicle;
        vehicle.setName(key.substr(settingsKeyPrefix.size()));
        static_cast<void>(SettingValueStore::load(vehicle));
    }
}

/// What the list of keys does not show, a line each.
int tellTrouble(const UserDefaults& store, const std::vector<std::string>& keys) {
    if (!store.isWhole() && !store.isKept()) {
        complain("what is stored can't be read; --verbose tells why");
        return noAnswer;
    }
    if (!store.isWhole()) complain("the store was damaged once, and entries may be missing");
    if (!store.isKept()) complain("the store can't be written; changes would be lost");
    const auto profile = store.objectForKey(activeProfileKey).textValue().value_or("");
    if (!store.objectForKey(profile).isNull() && !ProfileValues::load(profile))
        complain("what is stored under \"" + profile + "\", the active tuning profile, can't be read");
    for (const auto& key : keys) {
        const std::string origin{originOfUnreadable(key)};
        if (origin.empty()) continue;
        const bool again = store.stateForKey(origin) == EntryState::there;
        complain("what was stored under \"" + origin + "\" can't be read, or not all of it" +
                 (again ? "; it has been set again or kept in part since" : ""));
    }
    return success;
}

}  // namespace

bool isKept() {
    const bool kept = Platform::current().userDefaults().synchronize();
    if (!kept) complain("it could not be stored; --verbose tells why");
    return kept;
}

int vehicles(const Arguments& arguments) {
    if (arguments.words.empty()) return list(arguments.json);
    const auto& [verb, name] = std::tie(arguments.words[0], arguments.words[1]);
    return verb == "use" ? use(name, arguments.json) : update(name, arguments.json);
}

int defaults(const Arguments& arguments) {
    auto& store = Platform::current().userDefaults();
    if (arguments.words.empty()) {
        readThrough(store);
        const auto keys = store.keys();
        for (const auto& key : keys)
            std::puts(key.c_str());
        return tellTrouble(store, keys);
    }
    const auto& key = arguments.words[1];
    if (arguments.words[0] == "set") {
        store.setObjectForKey(valueFromText(arguments.words[2]), key);
        if (!isKept()) return noAnswer;
        if (isReadAtStart(key)) complain(seenAtNextStart);
        return success;
    }
    const auto keys = store.keys();
    const auto value = store.objectForKey(key);
    const bool isThere = std::find(keys.begin(), keys.end(), key) != keys.end();
    if (!isThere && store.stateForKey(key) == EntryState::absent) {
        complain("nothing is stored under \"" + key + "\"");
        return badArguments;
    }
    if (value.isNull() && (!isThere || !originOfUnreadable(key).empty())) {
        complain("what is stored under \"" + key + "\" can't be read");
        return noAnswer;
    }
    std::puts(value.text() ? value.text()->c_str()
                           : archivedText(value).value_or("(too deep to show)").c_str());
    return success;
}

}  // namespace itorvctl
