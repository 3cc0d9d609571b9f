#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace bench {

/// What the engine model knows. Units: rev/min, miles per hour, percent, PSI, degrees Fahrenheit, volts,
/// pounds per minute, gallons per hour, miles per gallon, microseconds, crank degrees, seconds, miles.
enum class Quantity : std::size_t {
    engineSpeed,
    vehicleSpeed,
    pedal,
    load,
    boost,
    boostTarget,
    drivePressure,
    turboSpeed,
    vane,
    egtPre,
    egtPost,
    filterInlet,
    filterOutlet,
    filterDrop,
    sootLoad,
    coolant,
    oilTemp,
    oilPressure,
    transTemp,
    intakeTemp,
    chargeTemp,
    ambient,
    fuelTemp,
    rail,
    railTarget,
    liftPump,
    timing,
    pulseWidth,
    airFlow,
    fuelRate,
    economy,
    fuelLevel,
    defLevel,
    egr,
    slip,
    voltage,
    sinceStart,
    sinceRegen,
    runTime,
    odometer,
    gear,  ///< as the module sends it: 1 to 4, 6, 7, and 240 for park
    torqueLock,
    sootRegen,
    soxRegen,
    count
};

using Readings = std::array<double, static_cast<std::size_t>(Quantity::count)>;

/// A drive of 110 seconds, over and over: idle, pull-away through the gears, cruise, full throttle with boost
/// and exhaust temperature past their limits, coast, regeneration, stop.
///
/// A pure function of seed and time, so that a run can be repeated. Any thread.
class EngineModel final {
public:
    explicit EngineModel(std::uint64_t seed) : m_seed(seed) {}

    /// Seconds from the start of the first drive.
    [[nodiscard]] Readings at(double seconds) const;

    static constexpr double cycleSeconds = 110;

private:
    [[nodiscard]] double noise(std::size_t channel, double seconds) const;

    std::uint64_t m_seed;
};

}  // namespace bench
