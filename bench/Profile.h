#pragma once

#include <filesystem>
#include <string>

#include "FrameCodec.h"

namespace bench {

/// How an attribute's bytes are laid out; the numbers stand in the profile document.
enum class Layout {
    number = 0,
    boolean = 1,
    gear = 2,
    powerLevel = 3,
    switchByte = 4,
    threeWayByte = 5,
    switchWord = 6,
    turboWord = 7,
    driveTrain = 8,
    speed = 9,
    time = 10
};

/// What the profile says about one AID, as far as a module needs it.
struct Attribute {
    std::uint8_t aid = 0;
    std::string name{};
    std::string unit{};
    Layout layout = Layout::number;
    double factor = 0;
    double offset = 0;
    double minValue = 0;
    double maxValue = 0;
    int warningRule = 0;
    double warningValue = 0;
    double initial = 0;  ///< what a module holds before anything is written

    /// The value as wire bytes; out of range numbers stop at the ends of the raw range, which has no sign.
    [[nodiscard]] Bytes encode(double value) const;
};

struct Profile {
    std::vector<Attribute> sensors;
    std::vector<Attribute> settings;
    std::vector<Attribute> tuning;
    std::optional<Attribute> powerLevel;
    std::optional<Attribute> currentGear;
    std::optional<Attribute> torqueLock;
    std::optional<Attribute> sootReg;
    std::optional<Attribute> soxReg;
};

/// Reads a profile document; when that fails, `error` says in one line why. Any thread.
[[nodiscard]] std::optional<Profile> loadProfile(const std::filesystem::path& path, std::string& error);

}  // namespace bench
