#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/URLLoader.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// Knows which profile is the current one, which are stored, and which the update server offers, and merges
/// the last two.
///
/// No state of its own but the server's address: all lives in the user defaults "current_vehicle" and
/// "vehicles", in the profile that ships, and on the server. Every call gives new objects.
/// `vehiclesOfServer`, `remoteVehicles`, `vehicles` and `updateVehicle` block for as long as the network
/// takes. Main thread; but `vehicles` and `updateVehicle` may run on a background thread, where reading,
/// merging and writing the list is not guarded against another change in between. The server's address is
/// for any thread.
class VehicleDataSource final {
public:
    static constexpr auto defaultUpdateServer = "http://update.example.com";

    /// "http://host[:port]" or https; the manifest is at /itorvv2/update.json there. False, and nothing
    /// changes, when the loader fetches from no such address.
    [[nodiscard]] static bool setUpdateServer(std::string url, const URLLoader& loader);
    [[nodiscard]] static std::string updateServer();

    /// The profile that ships, at the first use. An unreadable archive is set aside; the profile that ships
    /// then stands in for it and is not stored, so that each start knows that the vehicle is not known.
    [[nodiscard]] static Vehicle currentVehicle();
    /// Like the other calls that store, leaves out a vehicle without a name.
    static void setCurrentVehicle(const Vehicle& vehicle);
    /// The current one alone, at the first use; none where even that one is missing.
    [[nodiscard]] static std::vector<Vehicle> storedVehicles();
    /// Without documents; nothing when the manifest can't be fetched.
    [[nodiscard]] static std::optional<std::vector<Vehicle>> vehiclesOfServer();
    /// The same; none when the manifest can't be fetched.
    [[nodiscard]] static std::vector<Vehicle> remoteVehicles();
    /// Stored and remote vehicles in one list, by name. Without a network the stored ones, and nothing is
    /// written. A stored vehicle whose version on the server is newer takes the address from there, and an
    /// update mark if it has a document, else the version.
    [[nodiscard]] static std::vector<Vehicle> vehicles();
    /// What the text holds, a dictionary or a list; nothing when it is no JSON. A byte order mark
    /// before it does not matter.
    [[nodiscard]] static std::optional<Value> vehicleInfo(std::optional<std::string_view> text);
    /// In place of the stored one of that name, at the end of the list. False when it is not on disk.
    static bool saveVehicle(const Vehicle& vehicle);
    /// Downloads the document into the vehicle and stores it. With no address, or no answer from there, the
    /// vehicle stays as it is. A document that is no JSON empties it, and it is stored empty. True when
    /// something came.
    static bool updateVehicle(Vehicle& vehicle);
};

}  // namespace torv
