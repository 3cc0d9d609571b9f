#include "EngineModel.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace bench {
namespace {

struct Moment {
    double time;
    double rpm;
    double mph;
    double pedal;
    double boost;
    double egt;
    double rail;
    double gear;  // this and the columns behind it hold until the next row
    bool lock;
    bool soot;
    bool sox;
};

constexpr double park = 240;
constexpr std::array<Moment, 29> drive{{
    {0, 690, 0, 0, 0.5, 330, 5200, park, false, false, false},
    {6, 690, 0, 0, 0.5, 335, 5200, park, false, false, false},
    {7, 720, 0, 0, 0.5, 340, 5300, 1, false, false, false},
    {9, 1500, 6, 28, 5, 480, 9500, 1, false, false, false},
    {12, 2250, 16, 36, 12, 640, 13000, 1, false, false, false},
    {12.4, 1550, 18, 30, 9, 620, 11500, 2, false, false, false},
    {16, 2300, 30, 38, 16, 740, 14500, 2, false, false, false},
    {16.4, 1650, 31, 32, 12, 720, 12800, 3, false, false, false},
    {21, 2300, 45, 40, 18, 820, 15500, 3, false, false, false},
    {21.4, 1700, 46, 33, 13, 790, 13500, 4, false, false, false},
    {27, 2100, 60, 32, 13, 800, 14000, 4, true, false, false},
    {28, 1850, 60, 24, 9, 740, 12500, 6, true, false, false},
    {38, 1850, 60, 20, 8, 700, 12000, 6, true, false, false},
    {39, 2650, 61, 100, 22, 880, 19000, 4, false, false, false},
    {42, 3250, 72, 100, 45, 1240, 25500, 4, true, false, false},
    {46, 3500, 83, 100, 50, 1420, 26500, 4, true, false, false},
    {50, 3560, 89, 100, 51, 1480, 26800, 4, true, false, false},
    {51, 3100, 90, 100, 49, 1480, 26200, 6, true, false, false},
    {56, 3250, 92, 100, 49, 1470, 26200, 6, true, false, false},
    {58, 2800, 91, 0, 12, 1150, 9000, 6, true, false, false},
    {66, 2200, 76, 0, 2, 640, 6500, 6, true, false, false},
    {74, 1600, 60, 0, 1, 460, 6000, 7, true, false, false},
    {77, 1600, 58, 18, 6, 620, 11000, 7, true, true, false},
    {89, 1650, 60, 20, 7, 900, 11800, 7, true, true, true},
    {96, 1650, 60, 20, 7, 880, 11800, 7, true, false, true},
    {98, 1500, 55, 0, 2, 700, 7000, 7, true, false, false},
    {104, 1100, 18, 0, 0.5, 480, 5600, 2, false, false, false},
    {107, 760, 0, 0, 0.5, 400, 5300, 1, false, false, false},
    {109, 690, 0, 0, 0.5, 360, 5200, park, false, false, false},
}};

Moment interpolate(double seconds) {
    const double time = std::fmod(std::max(seconds, 0.0), EngineModel::cycleSeconds);
    const auto after = std::ranges::find_if(drive, [&](const Moment& row) { return row.time > time; });
    const Moment& from = *std::prev(after);
    Moment to = after == drive.end() ? drive.front() : *after;
    if (after == drive.end()) to.time = EngineModel::cycleSeconds;
    const double x = (time - from.time) / (to.time - from.time);
    const auto blend = [x](double a, double b) { return a + (b - a) * x * x * (3 - 2 * x); };
    Moment now = from;
    now.time = time;
    now.rpm = blend(from.rpm, to.rpm);
    now.mph = blend(from.mph, to.mph);
    now.pedal = blend(from.pedal, to.pedal);
    now.boost = blend(from.boost, to.boost);
    now.egt = blend(from.egt, to.egt);
    now.rail = blend(from.rail, to.rail);
    return now;
}

/// Mean pedal over the last 20 seconds: what warms coolant, oil and gearbox.
double recentWork(double seconds) {
    double sum = 0;
    for (int back = 0; back < 8; ++back)
        sum += interpolate(seconds - 2.5 * back).pedal;
    return sum / 800;
}

std::uint64_t mix(std::uint64_t value) {  // splitmix64
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30U)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27U)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31U);
}

}  // namespace

double EngineModel::noise(std::size_t channel, double seconds) const {
    const double position = seconds * 4;
    const double step = std::floor(position);
    const auto point = [&](double at) {
        const std::uint64_t hash = mix(mix(m_seed + channel * 0x10001U) ^ static_cast<std::uint64_t>(at));
        return static_cast<double>(hash >> 11U) * 0x1p-52 - 1;
    };
    return std::lerp(point(step), point(step + 1), position - step);
}

Readings EngineModel::at(double seconds) const {
    seconds = std::max(seconds, 0.0);
    const Moment now = interpolate(seconds);
    const double work = recentWork(seconds);
    const double cycle = std::floor(seconds / cycleSeconds);
    const double throttle = now.pedal / 100;
    const bool regen = now.soot || now.sox;
    const double rest = now.time >= 98 ? now.time - 98 : now.time + 12 + (cycle == 0 ? 200 * 60 : 0);

    Readings out{};
    const auto set = [&](Quantity quantity, double value, double wobble = 0) {
        const auto channel = static_cast<std::size_t>(quantity);
        out[channel] = wobble == 0 ? value : std::max(0.0, value + wobble * noise(channel, seconds));
    };
    using enum Quantity;
    set(engineSpeed, now.rpm, 12);
    set(vehicleSpeed, now.mph);
    set(pedal, now.pedal);
    set(load, 14 + 84 * throttle, 1.5);
    set(boost, now.boost, 0.4);
    set(boostTarget, now.boost + 1.5 * throttle);
    set(drivePressure, now.boost * 1.15 + 1, 0.5);
    set(turboSpeed, 9000 + 2600 * now.boost, 300);
    set(vane, 82 - 0.9 * now.boost, 1);
    set(egtPre, now.egt, 6);
    set(egtPost, now.egt * 0.84, 5);
    set(filterInlet, now.egt * 0.68 + (regen ? 420 : 0), 4);
    set(filterOutlet, now.egt * 0.62 + (regen ? 460 : 0), 3);
    set(sootLoad, now.time < 77 ? 44 + now.time / 2 : std::max(44.0, 82 - 1.8 * (now.time - 77)), 0.4);
    set(filterDrop, 0.15 + now.rpm / 3500 * 2.2 * (0.4 + throttle), 0.05);
    set(coolant, 186 + 18 * work, 0.8);
    set(oilTemp, 196 + 28 * work, 0.8);
    set(oilPressure, 22 + now.rpm / 75, 1);
    set(transTemp, 162 + 34 * work, 0.8);
    set(intakeTemp, 84 + 14 * work, 0.6);
    set(chargeTemp, 98 + 70 * work, 1);
    set(ambient, 77);
    set(fuelTemp, 104 + 16 * work, 0.5);
    set(rail, now.rail, 180);
    set(railTarget, now.rail);
    set(liftPump, 17 - 5 * throttle, 0.4);
    set(timing, 4 + now.rpm / 3500 * 14 + 4 * throttle, 0.3);
    set(pulseWidth, 420 + 1500 * throttle, 15);
    set(airFlow, now.rpm / 3500 * (18 + now.boost * 0.8), 0.3);
    const double gallons = 0.6 + now.rpm / 3500 * 26 * throttle;
    set(fuelRate, gallons, 0.05);
    set(economy, std::min(60.0, now.mph / gallons));
    set(fuelLevel, std::max(30.0, 76 - seconds / 600));
    set(defLevel, std::max(30.0, 88 - seconds / 1800));
    set(egr, now.pedal > 60 ? 0 : 32 - 0.4 * now.pedal, 1);
    set(slip, now.lock || now.mph < 1 ? 0 : 9 + 12 * throttle, 0.5);
    set(voltage, 14.1, 0.12);
    set(sinceStart, std::floor(seconds));
    set(sinceRegen, regen ? 0 : std::floor(rest / 60));
    set(runTime, std::floor(seconds) + 1234567);
    set(odometer, 48210 + 1.4 * cycle + 1.4 * now.time / cycleSeconds);
    set(gear, now.gear);
    set(torqueLock, now.lock ? 1 : 0);
    set(sootRegen, now.soot ? 1 : 0);
    set(soxRegen, now.sox ? 1 : 0);
    return out;
}

}  // namespace bench
