// The key of every entry in the user defaults. A changed key loses what handsets have stored under it.
#pragma once

#include <string_view>

namespace torv {

inline constexpr std::string_view currentVehicleKey = "current_vehicle";  // archived vehicle
inline constexpr std::string_view vehiclesKey = "vehicles";               // archived vehicles
inline constexpr std::string_view firstRunKey =
    "FIRST_RUN_KEY";  // true once the first choice of a vehicle was offered
inline constexpr std::string_view stockTireSizeKey = "STOCK_TIRE_SIZE";  // text of the first size entered
inline constexpr std::string_view turboSettingKey = "turbosetting";      // whether the turbo lamp is on
inline constexpr std::string_view activeProfileKey = "savedprofile";     // name of the active tuning profile
inline constexpr std::string_view damagedListKey =
    "DAMAGED_PROFILE_LIST";  // path of the list of tuning profiles that ended an earlier process

inline constexpr std::string_view brightnessKey = "DISPLAY_BRIGHTNESS";  // 0 full, 1 dim, 2 night
inline constexpr std::string_view contrastKey = "DISPLAY_CONTRAST";      // whether it is high
inline constexpr std::string_view warningSoundKey = "WARNING_SOUND";     // whether warnings are heard

// Behind these stands the name of a vehicle.
inline constexpr std::string_view settingsKeyPrefix = "SETTINGS_";  // profile dictionary of device settings
inline constexpr std::string_view sensorsKeyPrefix = "SENSORS_";    // warning rule and value by sensor name
inline constexpr std::string_view untakenKeyPrefix =
    "UNTAKEN_";  // settings that the module has not acknowledged
inline constexpr std::string_view asFoundKeyPrefix =
    "AS_FOUND_";  // name of the profile of what the module held at first, empty when that is lost
// Read by the reset of the settings; nothing has ever written it. Kept as it is.
inline constexpr std::string_view originalSettingsKeyPrefix = "ORIGINAL_SETTINGS_";

// VEHICLE_STYLE_KEY or VEHICLE_STYLE_PLACE_PAGE_KEY: the AID that stands on a place of a page.
inline constexpr std::string_view placementKeySuffix = "_KEY";

/// What `activeProfileKey` holds when the module runs on values of its own.
inline constexpr std::string_view defaultProfileName = "Default Profile";

}  // namespace torv
