#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <limits>
#include <locale>

#include "attributes/AVDriveTrainInfoData.h"
#include "attributes/AVFormatterFactory.h"
#include "attributes/AVTimeFormatter.h"
#include "attributes/AVVehicleSpeedFormatter.h"
#include "link/AVStore.h"
#include "support/Hexadecimal.h"

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

void expectDecoding() {
    constexpr auto most = std::numeric_limits<int>::max();
    const struct {
        Type type;
        Scale scale;
        std::string bytes;
        int flags;
        std::string value;
    } rows[] = {
        {number, {0.1F, -40, 1}, "e8030000", 0, "60.0"},
        {number, {}, "00000000", 0, "0"},
        {number, {0.0F, 25, 2}, "ffffffff", 0, "25.00"},
        {number, {}, "ffffffff", 0, "4294967296"},
        {number, {}, "01000001", 0, "16777216"},
        {number, {0.5F}, "05000000", 0, "2"},  // to nearest, and to even in the middle
        {number, {0.1F, 0, 9}, "01000000", 0, "0.100000001"},
        {number, {-1.0F, 0, 1}, "2a000000", 0, "-42.0"},
        {number, {1.0F, 0, -3}, "2a000000", 0, "42"},
        {number, {0.25F, 0, most}, "01000000", 0, "0.25" + std::string(147, '0')},
        {number, {3e38F}, "02000000", 0, "inf"},
        {boolean, {}, "00", 1, "Refer to flags."},
        {boolean, {}, "02", 2, "Refer to flags."},
        {powerLevel, {}, "00", 1, "0"},
        {powerLevel, {}, "02", 1, "2"},
        {powerLevel, {}, "03", 2, "3"},
        {powerLevel, {}, "ff", 2, "255"},
        {gear, {}, "00", 0, "48"},
        {gear, {}, "01", 0, "49"},
        {gear, {}, "02", 0, "50"},
        {gear, {}, "03", 0, "51"},
        {gear, {}, "04", 0, "52"},
        {gear, {}, "05", 0, "52"},
        {gear, {}, "06", 0, "53"},
        {gear, {}, "07", 0, "54"},
        {gear, {}, "08", 0, "55"},
        {gear, {}, "10", 0, "82"},
        {gear, {}, "f0", 0, "80"},
        {gear, {}, "f1", 0, "78"},
        {gear, {}, "f2", 0, "76"},
        {gear, {}, "f3", 0, "290"},
        {gear, {}, "ff", 0, "302"},
        {twoBoolean, {}, "00ff", 1, "255"},
        {twoBoolean, {}, "0707", 2, "7"},
        {twoGear, {}, "0005", 1, "5"},
        {twoGear, {}, "0105", 2, "5"},
        {twoGear, {}, "0705", 4, "5"},
        {threeBoolean, {0.0F, 9, 1}, "002c01", 1, "300.0"},  // neither scale nor offset
        {threeBoolean, {}, "80ffff", 2, "65535"},
        {turbo, {}, "002c01", 9, "300"},
        {turbo, {}, "012c01", 10, "300"},
        {turbo, {}, "022c01", 17, "300"},
        {turbo, {}, "032c01", 18, "300"},
        {turbo, {}, "040000", 9, "0"},
        {turbo, {}, "ff0000", 18, "0"},
        {driveTrain, {}, "0602033b0105", 0, "31.5"},
        {driveTrain, {}, "060203ffff05", 0, "6553.5"},
        {speed, {0.1F, 0, 1}, "58020000", 0, "60.0"},
        {time, {}, "02011e2d", 0, " 257:30:45"},
        {time, {}, "00000000", 0, "   0:00:00"},
        {time, {}, "ffffffff", 0, "65280:255:255"},
    };
    for (const auto& [type, scale, hexadecimal, flags, value] : rows) {
        SCOPED_TRACE("formatter " + std::to_string(type) + ", bytes " + hexadecimal);
        auto bytes = bytesOf(hexadecimal);
        const auto formatter = make(type, scale);
        for (int pass = 0; pass < 2; ++pass) {  // the same bytes again give the same
            const auto data = formatter->dataFromAV(bytes.data());
            ASSERT_TRUE(data);
            EXPECT_EQ(data->flags, flags);
            EXPECT_EQ(data->value, value);
            EXPECT_EQ(data->additionalData.has_value(), type == driveTrain);
        }
    }
}

void expectEncoding() {
    const struct {
        Type type;
        float factor;
        int flags;
        std::string value;
        std::string bytes;
    } rows[] = {
        {number, 0.1F, 0, "60.0", "58020000"},  // the offset of 1 stays in
        {number, 0.5F, 0, "2.9", "05000000"},
        {number, 1.0F, 0, "-1", "ff000000"},
        {number, 1.0F, 0, "-256", "00ff0000"},
        {number, 1.0F, 0, "-300", "d4ff0000"},
        {number, 1.0F, 0, "16909060", "04030201"},
        {number, 1.0F, 0, " 7 psi", "07000000"},
        {number, 1.0F, 0, "7,9", "07000000"},
        {number, 1.0F, 0, "none", "00000000"},
        {number, 1.0F, 0, "1e30", "ffffff7f"},
        {number, 1.0F, 0, "-1e30", "00000080"},
        {number, 0.0F, 0, "1", "ffffff7f"},
        {number, 0.0F, 0, "-1", "00000080"},
        {number, 0.0F, 0, "0", "00000000"},
        {speed, 0.1F, 0, "60.0", "58020000"},
        {boolean, 1.0F, 2, "1", "none"},
        {gear, 1.0F, 0, "48", "none"},
        {powerLevel, 1.0F, 2, "3", "none"},
        {twoBoolean, 1.0F, 2, "300", "012c"},
        {twoBoolean, 1.0F, 18, "7.9", "0007"},
        {twoBoolean, 1.0F, 1, "-1", "00ff"},
        {twoGear, 1.0F, 1, "5", "0005"},
        {twoGear, 1.0F, 2, "5", "0105"},
        {twoGear, 1.0F, 4, "5", "0205"},
        {twoGear, 1.0F, 6, "5", "0005"},
        {threeBoolean, 1.0F, 2, "300.7", "012c01"},
        {threeBoolean, 1.0F, 3, "65536", "000000"},
        {turbo, 1.0F, 9, "300", "002c01"},
        {turbo, 1.0F, 2, "300", "012c01"},
        {turbo, 1.0F, 16, "300", "022c01"},
        {turbo, 1.0F, 18, "300", "032c01"},
        {driveTrain, 1.0F, 0, "31.5", "0600003b0100"},
        {driveTrain, 1.0F, 0, "6553.6", "060000000000"},
        {driveTrain, 1.0F, 0, "-0.1", "060000ffff00"},
        {time, 1.0F, 0, "12:34:56", "00000000"},
    };
    for (const auto& [type, factor, flags, value, bytes] : rows) {
        SCOPED_TRACE("formatter " + std::to_string(type) + ", text " + value);
        EXPECT_EQ(encoded(*make(type, {factor, 1, 0}), {.flags = flags, .value = value, .additionalData = {}},
                          bytes.size() / 2),
                  bytes);
    }
}

TEST(Formatters, Decode) {
    expectDecoding();
}
TEST(Formatters, Encode) {
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
    const struct {
        Type type;
        std::optional<AVFormatterData> data;
    } rows[] = {
        {number, {{.flags = 0, .value = "-40.0", .additionalData = {}}}},
        {boolean, {}},
        {gear, {}},
        {powerLevel, {}},
        {twoBoolean, {{.flags = 1, .value = "0", .additionalData = {}}}},
        {twoGear, {{.flags = 1, .value = "0", .additionalData = {}}}},
        {threeBoolean, {{.flags = 1, .value = "0.0", .additionalData = {}}}},
        {turbo, {{.flags = 9, .value = "0", .additionalData = {}}}},
        {driveTrain, {{.flags = 0, .value = "0.0", .additionalData = {}}}},
        {speed, {{.flags = 0, .value = "-40.0", .additionalData = {}}}},
        {time, {}},
    };
    for (const auto& [type, expected] : rows) {
        const auto data = make(type, {0.1F, -40, 1})->dataFromAV(nullptr);
        ASSERT_EQ(data.has_value(), expected.has_value()) << type;
        if (!data) continue;
        EXPECT_EQ(data->flags, expected->flags) << type;
        EXPECT_EQ(data->value, expected->value) << type;
    }
    EXPECT_EQ(make(-1), nullptr);
    EXPECT_EQ(make(11), nullptr);
    EXPECT_EQ(
        AVFormatterParameter::formatterParameterMultiplyFactorOffsetDecimalDigits(0, 1.0F, -40.7F, 2).offset,
        -40);
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
    const struct {
        std::string current, stock;
        Scale scale;
        std::string value;
    } rows[] = {
        {"33", "30", {0.1F, 0, 0}, "66"},  // raw 596: 59.6 is rounded before it is scaled
        {"33", "30", {0.1F, 0, 1}, "65.6"}, {" 33.0 ", "30", {0.1F, 0, 0}, "66"},
        {"33in", "30", {0.1F, 0, 0}, "0"},  {"", "30", {0.1F, 0, 0}, "0"},
        {"33", "0", {0.1F, 0, 0}, "inf"},   {"33", "none", {0.1F, 0, 1}, "inf"},
        {"0", "0", {0.1F, 0, 0}, "nan"},
    };
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
