// What a profile document may hold, as tables.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace profiles {

/// Where something stands, as bits.
enum Place : unsigned {
    document = 1,
    parameters = 2,
    group = 4,
    sensor = 8,
    setting = 16,
    tuningItem = 32,
    powerLevel = 64,
    gear = 128,
    lamp = 256,
};
inline constexpr unsigned listed = sensor | setting | tuningItem;
inline constexpr unsigned written = setting | tuningItem;  ///< the handset writes it to the module
inline constexpr unsigned anyAttribute = listed | powerLevel | gear | lamp;

struct PlaceName {
    Place place;
    std::string_view name;
};
inline constexpr std::array<PlaceName, 9> placeNames{{
    {document, "the document"},
    {parameters, "parameters"},
    {group, "a tuning group"},
    {sensor, "a sensor"},
    {setting, "a setting"},
    {tuningItem, "a tuning item"},
    {powerLevel, "the power level"},
    {gear, "the gear"},
    {lamp, "a lamp"},
}};

enum class Kind { text, whole, number, truth, texts, values, objects, object };

inline constexpr double anyNumber = 3.4e38;  // the numbers of a profile fit single precision
inline constexpr double anyWhole = 2147483647;

struct Key {
    std::string_view name;
    Kind kind = Kind::text;
    unsigned places = 0;    ///< where it has an effect
    unsigned required = 0;  ///< where it must be
    double lowest = -anyNumber;
    double highest = anyNumber;
    std::string_view choices = {};  ///< the texts that are allowed, with blanks between; empty: any
};

inline constexpr std::array<Key, 43> keys{{
    {"vehicle", Kind::text, document, document},
    {"version", Kind::text, document, document},
    {"DTC", Kind::text, document, 0, 0, 0, "YES NO"},
    {"url", Kind::text, document},
    {"parameters", Kind::object, document, document},

    {"sensors", Kind::objects, parameters, parameters},
    {"settings", Kind::objects, parameters},
    {"tuning", Kind::objects, parameters},
    {"powerLevel", Kind::object, parameters},
    {"currentGear", Kind::object, parameters},
    {"torqueLock", Kind::object, parameters},
    {"sootReg", Kind::object, parameters},
    {"soxReg", Kind::object, parameters},

    {"name", Kind::text, group | anyAttribute, group | listed},
    {"type", Kind::text, group, group, 0, 0, "list equalizer"},
    {"unit", Kind::text, group | anyAttribute},
    {"default", Kind::number, group},
    {"low", Kind::number, group},
    {"high", Kind::number, group},
    {"resolution", Kind::number, group},
    {"items", Kind::objects, group, group},

    {"aid", Kind::whole, anyAttribute, anyAttribute, 1, 254},
    {"formatter", Kind::whole, anyAttribute, anyAttribute, 0, 10},
    {"multiplyFactor", Kind::number, anyAttribute},
    {"offset", Kind::whole, anyAttribute, 0, -anyWhole, anyWhole},
    {"decimalDigits", Kind::whole, anyAttribute, 0, 0, 9},
    {"minValue", Kind::number, anyAttribute, sensor | tuningItem},
    {"maxValue", Kind::number, anyAttribute, sensor | tuningItem},
    {"enabled", Kind::truth, anyAttribute},
    {"warningRule", Kind::whole, sensor, 0, 0, 4},
    {"warningValue", Kind::whole, sensor, 0, -anyWhole, anyWhole},
    {"minmax", Kind::text, sensor, 0, 0, 0, "high low both off none"},
    {"category", Kind::text, sensor},
    {"toggable", Kind::truth, setting},
    {"options", Kind::texts, setting},
    {"optionValues", Kind::values, setting},
    {"options1", Kind::texts, setting},
    {"optionValues1", Kind::values, setting},
    {"additionalUnit", Kind::text, written},
    {"additionalMinValue", Kind::number, written},
    {"additionalMaxValue", Kind::number, written},
    {"warningvaluelow", Kind::number, tuningItem},
    {"warningvaluehigh", Kind::number, tuningItem},
}};

/// The single attributes of `parameters`.
struct Single {
    std::string_view key;
    Place place;
};
inline constexpr std::array<Single, 5> singles{{
    {"powerLevel", powerLevel},
    {"currentGear", gear},
    {"torqueLock", lamp},
    {"sootReg", lamp},
    {"soxReg", lamp},
}};

/// A formatter by its number, which is the row.
struct Formatter {
    unsigned places;      ///< where it does what is needed: settings and tuning items are also written
    bool scaled;          ///< uses multiplyFactor and offset
    bool hasSwitch;       ///< carries on and off beside the number
    unsigned bytes;       ///< of the value that it reads; with 1, a longer number will do as well
    double highestValue;  ///< that it can write, before scaling
};
inline constexpr std::array<Formatter, 11> formatters{{
    /* 0 number */ {listed | powerLevel, true, false, 1, 2147483647},
    /* 1 on or off */ {sensor | lamp, false, false, 1, 0},
    /* 2 gear */ {sensor | gear, false, false, 1, 0},
    /* 3 power level */ {sensor | powerLevel, false, false, 1, 0},
    /* 4 switch and byte */ {listed | lamp, false, true, 2, 255},
    /* 5 three-way and byte */ {listed | lamp, false, true, 2, 255},
    /* 6 switch and number */ {listed | lamp, false, true, 3, 65535},
    /* 7 two switches and number */ {listed, false, true, 3, 65535},
    /* 8 drive train */ {sensor | setting, false, false, 6, 6553.5},
    /* 9 vehicle speed */ {listed, true, false, 1, 2147483647},
    /* 10 time */ {sensor, false, false, 4, 0},
}};
/// The only one that reads a slot of 13 bytes, whose first byte is a length; it takes 6 of them.
inline constexpr std::int64_t driveTrainFormatter = 8;

/// AIDs that the handset uses by itself.
struct ReservedAID {
    std::int64_t aid;
    std::string_view use;
};
inline constexpr std::array<ReservedAID, 8> reservedAIDs{{
    {9, "the heartbeat"},
    {15, "the highest power level"},
    {24, "the reset of tuning"},
    {25, "clearing trouble codes"},
    {26, "the answer to clearing trouble codes"},
    {27, "asking for trouble codes"},
    {224, "trouble codes"},
    {225, "trouble codes"},
}};

/// Settings that the handset knows by their AID: which formatter, and how many options at least.
struct KnownSetting {
    std::int64_t aid;
    std::int64_t formatter;
    std::size_t options;
    std::string_view use;
};
inline constexpr std::array<KnownSetting, 3> knownSettings{{
    {91, 5, 3, "the three-way setting"},
    {152, 7, 2, "the setting with two modes"},
    {226, driveTrainFormatter, 1, "the drive train"},
}};

}  // namespace profiles
