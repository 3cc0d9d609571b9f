#pragma once

#include <string_view>

#include "vehicles/Vehicle.h"

namespace torv {

/// What can't be read, or kept, of what the driver has chosen. Where it is not known, nothing is written to
/// the module by itself: a damaged store is not a new vehicle.
enum class StoreTrouble {
    none,
    unreadable,     ///< the whole store
    vehicle,        ///< which vehicle is the current one
    settings,       ///< the device settings of the vehicle
    someSettings,   ///< a part of them
    activeProfile,  ///< which tuning profile is the active one
    activeValues,   ///< what that profile holds
    unwritable      ///< all is known, and changes are lost at the end
};

/// The gravest for this vehicle, which is the current one. Main thread.
[[nodiscard]] StoreTrouble storeTrouble(const Vehicle& vehicle);

/// One sentence for the driver; empty where there is none.
[[nodiscard]] std::string_view sentenceFor(StoreTrouble trouble);

}  // namespace torv
