#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <limits>
#include <locale>
#include <sstream>

#include "attributes/AVDriveTrainInfoData.h"
#include "attributes/AVFormatterFactory.h"
#include "attributes/AVTimeFormatter.h"
#include "attributes/AVVehicleSpeedFormatter.h"
#include "link/AVStore.h"
#include "support/Hexadecimal.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

using Bytes = std::array<std::uint8_t, longSlotSize>;

enum Type {
    number,
    boolean,
    gear,
    powerLevel,
    twoBoolean,
    twoGear,
    threeBoolean,
    turbo,
    driveTrain,
    speed,
    time
};

struct Scale {
    float factor = 1.0F;
    int offset = 0;
    int digits = 0;
};

std::shared_ptr<AVFormatter> make(int type, const Scale& scale = {}) {
    return AVFormatterFactory::formatterWithParameter({.multiplyFactor = scale.factor,
                                                       .offset = scale.offset,
                                                       .decimalDigits = scale.digits,
                                                       .type = type});
}

Bytes bytesOf(std::string_view hexadecimal) {
    Bytes bytes{};
    const auto given = bytesFromHexadecimal(hexadecimal).value();
    std::copy(given.begin(), given.end(), bytes.begin());
    return bytes;
}

/// The bytes that the formatter writes, in hexadecimal; zeros must follow up to the widest slot.
std::string encoded(AVFormatter& formatter, const AVFormatterData& data, std::size_t width) {
    const auto buffer = formatter.allocAVFromFormatterData(data);
    if (!buffer) return "none";
    EXPECT_TRUE(std::all_of(&buffer[width], &buffer[0] + longSlotSize, [](auto byte) { return byte == 0; }));
    return hexadecimalText({buffer.get(), width});
}

struct Case {
    std::string bytes;
    int flags;
    std::string value;
};

/// "bytes flags value|..."; a value may begin with blanks.
std::vector<Case> cases(const std::string& text) {
    std::vector<Case> all;
    std::istringstream lines{text};
    for (std::string line; std::getline(lines, line, '|');) {
        const auto first = line.find(' '), second = line.find(' ', first + 1);
        all.push_back({line.substr(0, first), intValue(line.substr(first)), line.substr(second + 1)});
    }
    return all;
}

void expectDecoding() {
    constexpr auto most = std::numeric_limits<int>::max();
    const std::tuple<Type, Scale, std::string> rows[] = {
        {number, {0.1F, -40, 1}, "e8030000 0 60.0"},
        {number, {}, "00000000 0 0|ffffffff 0 4294967296|01000001 0 16777216"},
        {number, {0.0F, 25, 2}, "ffffffff 0 25.00"},
        {number, {0.5F}, "05000000 0 2"},  // to nearest, and to even in the middle
        {number, {0.1F, 0, 9}, "01000000 0 0.100000001"},
        {number, {-1.0F, 0, 1}, "2a000000 0 -42.0"},
        {number, {1.0F, 0, -3}, "2a000000 0 42"},
        {number, {0.25F, 0, most}, "01000000 0 0.25" + std::string(147, '0')},
        {number, {3e38F}, "02000000 0 inf"},
        {boolean, {}, "00 1 Refer to flags.|02 2 Refer to flags."},
        {powerLevel, {}, "00 1 0|02 1 2|03 2 3|ff 2 255"},
        {gear, {}, "00 0 48|01 0 49|02 0 50|03 0 51|04 0 52|05 0 52|06 0 53|07 0 54|08 0 55|10 0 82|f0 0 80"},
        {gear, {}, "f1 0 78|f2 0 76|f3 0 290|ff 0 302"},
        {twoBoolean, {}, "00ff 1 255|0707 2 7"},
        {twoGear, {}, "0005 1 5|0105 2 5|0705 4 5"},
        {threeBoolean, {0.0F, 9, 1}, "002c01 1 300.0"},  // neither scale nor offset
        {threeBoolean, {}, "80ffff 2 65535"},
        {turbo, {}, "002c01 9 300|012c01 10 300|022c01 17 300|032c01 18 300|040000 9 0|ff0000 18 0"},
        {driveTrain, {}, "0602033b0105 0 31.5|060203ffff05 0 6553.5"},
        {speed, {0.1F, 0, 1}, "58020000 0 60.0"},
        {time, {}, "02011e2d 0  257:30:45|00000000 0    0:00:00|ffffffff 0 65280:255:255"},
    };
    for (const auto& [type, scale, text] : rows) {
        const auto formatter = make(type, scale);
        for (const auto& row : cases(text)) {
            SCOPED_TRACE("formatter " + std::to_string(type) + ", bytes " + row.bytes);
            auto bytes = bytesOf(row.bytes);
            for (int pass = 0; pass < 2; ++pass) {  // the same bytes again give the same
                const auto data = formatter->dataFromAV(bytes.data());
                ASSERT_TRUE(data);
                EXPECT_EQ(data->flags, row.flags);
                EXPECT_EQ(data->value, row.value);
                EXPECT_EQ(data->additionalData.has_value(), type == driveTrain);
            }
        }
    }
}

void expectEncoding() {
    const std::tuple<Type, float, std::string> rows[] = {
        {number, 0.1F, "58020000 0 60.0"},  // the offset of 1 stays in
        {number, 0.5F, "05000000 0 2.9"},
        {number, 1.0F, "ff000000 0 -1|00ff0000 0 -256|d4ff0000 0 -300|04030201 0 16909060|07000000 0  7 psi"},
        {number, 1.0F, "07000000 0 7,9|00000000 0 none|ffffff7f 0 1e30|00000080 0 -1e30"},
        {number, 0.0F, "ffffff7f 0 1|00000080 0 -1|00000000 0 0"},
        {speed, 0.1F, "58020000 0 60.0"},
        {boolean, 1.0F, "none 2 1"},
        {gear, 1.0F, "none 0 48"},
        {powerLevel, 1.0F, "none 2 3"},
        {twoBoolean, 1.0F, "012c 2 300|0007 18 7.9|00ff 1 -1"},
        {twoGear, 1.0F, "0005 1 5|0105 2 5|0205 4 5|0005 6 5"},
        {threeBoolean, 1.0F, "012c01 2 300.7|000000 3 65536"},
        {turbo, 1.0F, "002c01 9 300|012c01 2 300|022c01 16 300|032c01 18 300"},
        {driveTrain, 1.0F, "0600003b0100 0 31.5|060000000000 0 6553.6|060000ffff00 0 -0.1"},
        {time, 1.0F, "00000000 0 12:34:56"},
    };
    for (const auto& [type, factor, text] : rows) {
        for (const auto& [bytes, flags, value] : cases(text)) {
            const AVFormatterData data{.flags = flags, .value = value, .additionalData = {}};
            EXPECT_EQ(encoded(*make(type, {factor, 1, 0}), data, bytes.size() / 2), bytes)
                << "formatter " << type << ", text " << value;
        }
    }
}

TEST(Formatters, DecodeAndEncode) {
    expectDecoding();
    expectEncoding();
}

TEST(Formatters, AreTheSameUnderACommaLocale) {
    struct Comma final : std::numpunct<char> {
        Comma() : std::numpunct<char>(1) {}  // counted, so that no locale deletes it
        ~Comma() override = default;
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::string before = std::setlocale(LC_ALL, nullptr);
    Comma comma;
    const auto old = std::locale::global(std::locale{std::locale::classic(), &comma});
    for (const auto* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE"}) {
        if (std::setlocale(LC_ALL, name)) break;  // where the machine has it
    }
    expectDecoding();
    expectEncoding();
    std::locale::global(old);
    std::setlocale(LC_ALL, before.c_str());
}

TEST(Formatters, TakeAbsentBytesAsToldOfEach) {
    const std::tuple<Type, std::string> rows[] = {
        {number, "0 -40.0"},   {boolean, "none"},  {gear, "none"},          {powerLevel, "none"},
        {twoBoolean, "1 0"},   {twoGear, "1 0"},   {threeBoolean, "1 0.0"}, {turbo, "9 0"},
        {driveTrain, "0 0.0"}, {speed, "0 -40.0"}, {time, "none"}};
    for (const auto& [type, expected] : rows) {
        const auto data = make(type, {0.1F, -40, 1})->dataFromAV(nullptr);
        EXPECT_EQ(data ? std::to_string(data->flags) + ' ' + data->value : "none", expected) << type;
    }
    EXPECT_EQ(make(-1), nullptr);
    EXPECT_EQ(make(11), nullptr);
}

TEST(TurboFormatter, TranslatesItsByteInPlace) {
    const std::array<std::array<std::uint8_t, 3>, 6> rows{
        // byte 0, as written back, as encoded again
        {{0, 0x00, 0}, {1, 0x80, 1}, {2, 0x40, 2}, {3, 0xC0, 3}, {4, 4, 0}, {0xFF, 0xFF, 3}}};
    const auto formatter = make(turbo);
    for (const auto& [code, translated, again] : rows) {
        auto bytes = bytesOf("002c01");
        bytes[0] = code;
        const auto data = formatter->dataFromAV(bytes.data());
        EXPECT_EQ(bytes[0], translated);
        EXPECT_EQ(encoded(*formatter, *data, 3), hexadecimalText({&again, 1}) + "2c01");
    }
}

TEST(DriveTrainFormatter, KeepsItsCodes) {
    auto bytes = bytesOf("0902033b0105");
    const auto formatter = make(driveTrain);
    auto data = formatter->dataFromAV(bytes.data());
    auto& codes = std::any_cast<AVDriveTrainInfoData&>(data->additionalData);
    EXPECT_EQ(codes.numberOfCharacters, 9);
    EXPECT_EQ(codes.transmissionID, 2);
    EXPECT_EQ(codes.rearEndRatio, 3);
    EXPECT_EQ(codes.vehicleSelection, 5);
    EXPECT_EQ(encoded(*formatter, *data, 6), "0602033b0105");
    codes.rearEndRatio = 0x1FF;
    EXPECT_EQ(encoded(*formatter, *data, 6), "0602ff3b0105");
}

TEST(TimeFormatter, WritesWhatItDecodedLast) {
    auto bytes = bytesOf("02011e2d");
    AVTimeFormatter formatter{0, 0, 0};
    static_cast<void>(formatter.dataFromAV(bytes.data()));
    EXPECT_EQ(formatter.hrs(), 257);
    EXPECT_EQ(encoded(formatter, {}, 4), "01011e2d");
    EXPECT_EQ(encoded(*AVTimeFormatter::formatterWithHoursAndMinutesAndSeconds(0x203, 4, 5), {}, 4),
              "03020405");
}

TEST(SpeedFormatter, CorrectsForTheTires) {
    EXPECT_EQ(AVVehicleSpeedFormatter::currentTireSize() + AVVehicleSpeedFormatter::stockTireSize(), "11");
    const std::tuple<std::string, std::string, Scale, std::string> rows[] = {
        {"33", "30", {0.1F, 0, 0}, "66"},  // raw 596: 59.6 is rounded before it is scaled
        {"33", "30", {0.1F, 0, 1}, "65.6"}, {" 33.0 ", "30", {0.1F, 0, 0}, "66"},
        {"33in", "30", {0.1F, 0, 0}, "0"},  {"", "30", {0.1F, 0, 0}, "0"},
        {"33", "0", {0.1F, 0, 0}, "inf"},   {"33", "none", {0.1F, 0, 1}, "inf"},
        {"0", "0", {0.1F, 0, 0}, "nan"}};
    for (const auto& [current, stock, scale, value] : rows) {
        auto bytes = bytesOf("54020000");
        AVVehicleSpeedFormatter::setCurrentTireSize(current);
        AVVehicleSpeedFormatter::setStockTireSize(stock);
        EXPECT_EQ(make(speed, scale)->dataFromAV(bytes.data())->value, value) << current << " over " << stock;
    }
    AVVehicleSpeedFormatter::setCurrentTireSize("1");
    AVVehicleSpeedFormatter::setStockTireSize("1");
}

}  // namespace
}  // namespace torv
