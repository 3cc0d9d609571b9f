#pragma once

#include "support/AV.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// Which stored settings of a vehicle the module has not acknowledged since they were last written, in the
/// user defaults under "UNTAKEN_" and its name. Main thread. Nothing here synchronizes.
class UntakenSettings final {
public:
    [[nodiscard]] static bool contains(const Vehicle& vehicle, AID aid);
    /// After each write.
    static void note(const Vehicle& vehicle, AID aid, bool acknowledged);
    static void forget(const Vehicle& vehicle);
};

}  // namespace torv
