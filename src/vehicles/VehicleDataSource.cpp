#include "vehicles/VehicleDataSource.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "JSON/SBJSON.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "platform/Reachability.h"
#include "platform/StoredKeys.h"
#include "platform/URLData.h"
#include "support/TextNumbers.h"
#include "support/Utf8.h"
#include "vehicles/ProfileDocument.h"
#include "vehicles/StoredArchive.h"
#include "vehicles/VehicleArchive.h"
#include "vehicles/VersionComparison.h"

namespace torv {
namespace {

constexpr auto manifestPath = "/itorvv2/update.json";

struct Server {
    std::mutex mutex;
    std::string url = VehicleDataSource::defaultUpdateServer;
};

Server& server() {
    static Server instance;
    return instance;
}

/// What is stored under the key; nothing when nothing is, or nothing that can be read.
std::optional<std::vector<Vehicle>> storedUnder(std::string_view key) {
    const auto stored = defaults().objectForKey(key);
    if (stored.isNull()) return std::nullopt;
    std::string error = "it is no text";
    auto vehicles = stored.text() ? vehiclesFromArchive(*stored.text(), error) : std::nullopt;
    if (vehicles && vehicles->empty()) {
        error = "it holds no vehicle";
        vehicles.reset();
    }
    if (!vehicles) {
        setAsideUnreadable(key, stored, error);
        return std::nullopt;
    }
    // A start without its resources may have stored one without a name, which no other could replace.
    std::erase_if(*vehicles, [](const Vehicle& vehicle) { return !vehicle.name(); });
    return vehicles->empty() ? std::nullopt : std::move(vehicles);
}

/// All except those without a name, which equal no vehicle.
void archiveUnder(std::string_view key, std::vector<Vehicle> vehicles) {
    std::erase_if(vehicles, [](const Vehicle& vehicle) { return !vehicle.name(); });
    if (!vehicles.empty()) defaults().setObjectForKey(archivedVehicles(vehicles), key);
}

bool currentVehicleIsKnown() {
    return defaults().stateForKey(currentVehicleKey) != EntryState::unreadable;
}

std::optional<std::string> utf8Text(const Data& data) {
    std::string text{data.begin(), data.end()};
    if (!isUtf8(text)) return std::nullopt;
    return text;
}

}  // namespace

bool VehicleDataSource::setUpdateServer(std::string url, const URLLoader& loader) {
    while (url.ends_with('/'))
        url.pop_back();
    if (!loader.accepts(url)) return false;
    const std::scoped_lock lock{server().mutex};
    server().url = std::move(url);
    return true;
}

std::string VehicleDataSource::updateServer() {
    const std::scoped_lock lock{server().mutex};
    return server().url;
}

Vehicle VehicleDataSource::currentVehicle() {
    if (const auto stored = storedUnder(currentVehicleKey)) {
        const auto& info = stored->front().info();
        if (info.empty() || !info.document().empty()) return stored->front();
        setAsideUnreadable(currentVehicleKey, defaults().objectForKey(currentVehicleKey),
                           "its profile is damaged");
    }
    std::string error;
    auto vehicle = vehicleFromFileOrShipped({}, error);
    if (!vehicle) {
        logLine(error);
        return {};
    }
    // Nobody has chosen what stands in for a vehicle that can't be read.
    if (currentVehicleIsKnown()) setCurrentVehicle(*vehicle);
    return *vehicle;
}

void VehicleDataSource::setCurrentVehicle(const Vehicle& vehicle) {
    archiveUnder(currentVehicleKey, {vehicle});
}

std::vector<Vehicle> VehicleDataSource::storedVehicles() {
    if (auto stored = storedUnder(vehiclesKey)) return std::move(*stored);
    std::vector<Vehicle> vehicles{currentVehicle()};
    if (!vehicles.front().name()) return {};
    archiveUnder(vehiclesKey, vehicles);
    return vehicles;
}

std::optional<std::vector<Vehicle>> VehicleDataSource::vehiclesOfServer() {
    const auto url = updateServer() + manifestPath;
    const auto data = dataOfURL(url);
    if (!data) return std::nullopt;
    const auto text = utf8Text(*data);
    const auto manifest = vehicleInfo(text);
    if (!manifest || !manifest->array()) {
        logLine(url + (text ? " is no list of vehicles" : " is not UTF-8"));
        return std::nullopt;
    }
    std::vector<Vehicle> vehicles;
    for (const auto& element : manifest->elements()) {
        const auto* entry = element.dictionary();
        auto vehicle = entry ? Vehicle::vehicleFromDictionary(*entry) : Vehicle{};
        if (vehicle.name()) {
            vehicles.push_back(std::move(vehicle));
        } else {
            // Without a name it equals no vehicle, and would be added anew each time.
            logLine(url + " has an entry without a name, which is passed over");
        }
    }
    return vehicles;
}

std::vector<Vehicle> VehicleDataSource::remoteVehicles() {
    return vehiclesOfServer().value_or(std::vector<Vehicle>{});
}

std::vector<Vehicle> VehicleDataSource::vehicles() {
    auto merged = storedVehicles();
    if (Reachability::isInternetAvailable()) {
        logLine("inetavailable");
        const auto current = currentVehicle();
        VersionComparison comparison;
        for (auto& remote : remoteVehicles()) {
            const auto stored = std::find_if(merged.begin(), merged.end(),
                                             [&](const Vehicle& v) { return v.isEqual(remote); });
            if (stored == merged.end()) {
                logLine("contains vehicles");  // the opposite is meant; kept as it is
                merged.push_back(std::move(remote));
                continue;
            }
            if (comparison.isNewer(stored->version(), remote.version())) {
                stored->setUrl(remote.url());
                if (stored->info().empty()) {
                    stored->setVersion(remote.version());
                } else {
                    stored->setUpdateAvailable(true);
                }
            }
            // A document that was no profile has emptied the stored one; the current one is not to follow.
            const bool emptied = stored->info().empty() && !current.info().empty();
            if (stored->isEqual(current) && currentVehicleIsKnown() && !emptied) setCurrentVehicle(*stored);
        }
        archiveUnder(vehiclesKey, merged);
    }
    std::stable_sort(merged.begin(), merged.end(),
                     [](const Vehicle& a, const Vehicle& b) { return a.name() < b.name(); });
    return merged;
}

std::optional<Value> VehicleDataSource::vehicleInfo(std::optional<std::string_view> text) {
    if (text) text = withoutByteOrderMark(*text);
    return SBJSON{}.objectWithString(text);
}

bool VehicleDataSource::saveVehicle(const Vehicle& vehicle) {
    if (!vehicle.name()) return false;
    auto stored = storedVehicles();
    std::erase_if(stored, [&](const Vehicle& v) { return v.isEqual(vehicle); });
    stored.push_back(vehicle);
    archiveUnder(vehiclesKey, std::move(stored));
    return defaults().synchronize();
}

bool VehicleDataSource::updateVehicle(Vehicle& vehicle) {
    if (!vehicle.url()) return false;
    logLine(*vehicle.url());
    const auto data = dataOfURL(*vehicle.url());
    if (!data) return false;
    auto info = vehicleInfo(utf8Text(*data));
    if (!info || !info->dictionary()) logLine(*vehicle.url() + " holds no profile");
    auto document = info && info->dictionary() ? std::move(*info->dictionary()) : Dictionary{};
    vehicle.setUpdateAvailable(false);
    vehicle.setVersion(document["version"].textValue());
    vehicle.setDTC(document["DTC"].textValue());
    vehicle.setInfo(ProfileInfo{std::move(document)});
    saveVehicle(vehicle);
    return true;
}

}  // namespace torv
