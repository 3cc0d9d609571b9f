// The name of every notification on the default center. All are posted without an object.
#pragma once

#include <string_view>

namespace torv {

// By the engine, while the caller holds the driver's exchange lock: run or stop a timer of 0.1 seconds.
inline constexpr std::string_view x2comStartAckTimerNotification = "x2comStartAckTimerNotification";
inline constexpr std::string_view x2comStopAckTimerNotification = "x2comStopAckTimerNotification";
inline constexpr std::string_view x2comStartRespTimerNotification = "x2comStartRespTimerNotification";
inline constexpr std::string_view x2comStopRespTimerNotification = "x2comStopRespTimerNotification";

// By the driver on the reading thread, under the driver's lock: a report of trouble codes is in the store.
inline constexpr std::string_view dtc224Received = "dtc224Received";
inline constexpr std::string_view dtc225Received = "dtc225Received";

// By the store, on the thread that stored: whether changes reach the disk is another now.
inline constexpr std::string_view storeKeptChanged = "storeKeptChanged";

// On the main thread.
inline constexpr std::string_view sendNotification = "sendNotification";  // replay what is stored
inline constexpr std::string_view customTuningSettingsUpdated = "customTuningSettingsUpdated";
inline constexpr std::string_view turboOnNotification = "turboOnNotification";
inline constexpr std::string_view turboOffNotification = "turboOffNotification";
inline constexpr std::string_view lockNotification = "lockNotification";  // of the torque converter
inline constexpr std::string_view unlockNotification = "unlockNotification";

}  // namespace torv
