#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <locale>
#include <string>
#include <tuple>
#include <vector>

#include "attributes/AVFormatterFactory.h"
#include "attributes/AVVehicleSpeedFormatter.h"
#include "support/AV.h"
#include "support/Hexadecimal.h"

namespace torv {
namespace {

using Bytes = std::array<std::uint8_t, longSlotSize>;

constexpr int number = 0, boolean = 1, gear = 2, powerLevel = 3, twoBoolean = 4, twoGear = 5,
              threeBoolean = 6, turbo = 7, driveTrain = 8, speed = 9, time = 10;

struct Scale {
    float factor = 1.0F;
    int offset = 0;
    int digits = 0;
};

struct Case {
    std::string raw;
    int flags;
    std::string value;
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
    const std::tuple<int, Scale, std::vector<Case>> rows[]{
        {number, {0.1F, -40, 1}, {{"e8030000", 0, "60.0"}}},
        {number, {}, {{"00000000", 0, "0"}, {"ffffffff", 0, "4294967296"}, {"01000001", 0, "16777216"}}},
        {number, {0.5F}, {{"05000000", 0, "2"}}},  // to nearest, and to even in the middle
        {number, {-1.0F, 0, 1}, {{"2a000000", 0, "-42.0"}}},
        {number, {1.0F, 0, -3}, {{"2a000000", 0, "42"}}},
        {number, {0.25F, 0, most}, {{"01000000", 0, "0.25" + std::string(147, '0')}}},
        {boolean, {}, {{"00", 1, "Refer to flags."}, {"02", 2, "Refer to flags."}}},
        {powerLevel, {}, {{"00", 1, "0"}, {"02", 1, "2"}, {"03", 2, "3"}, {"ff", 2, "255"}}},
        {gear, {}, {{"00", 0, "48"}, {"01", 0, "49"}, {"02", 0, "50"}, {"03", 0, "51"}, {"04", 0, "52"}}},
        {gear, {}, {{"05", 0, "52"}, {"06", 0, "53"}, {"07", 0, "54"}, {"08", 0, "55"}, {"10", 0, "82"}}},
        {gear, {}, {{"f0", 0, "80"}, {"f1", 0, "78"}, {"f2", 0, "76"}, {"f3", 0, "290"}, {"ff", 0, "302"}}},
        {twoBoolean, {}, {{"00ff", 1, "255"}, {"0707", 2, "7"}}},
        {twoGear, {}, {{"0005", 1, "5"}, {"0105", 2, "5"}, {"0705", 4, "5"}}},
        {threeBoolean, {0.0F, 9, 1}, {{"002c01", 1, "300.0"}}},  // neither scale nor offset
        {turbo, {}, {{"002c01", 9, "300"}, {"012c01", 10, "300"}, {"022c01", 17, "300"}}},
        {turbo, {}, {{"032c01", 18, "300"}, {"040000", 9, "0"}, {"ff0000", 18, "0"}}},
        {driveTrain, {}, {{"0602033b0105", 0, "31.5"}, {"060203ffff05", 0, "6553.5"}}},
        {time, {}, {{"02011e2d", 0, " 257:30:45"}, {"00000000", 0, "   0:00:00"}}},
        {time, {}, {{"ffffffff", 0, "65280:255:255"}}},
    };
    for (const auto& [type, scale, cases] : rows) {
        for (const auto& [raw, flags, value] : cases) {
            SCOPED_TRACE("formatter " + std::to_string(type) + ", bytes " + raw);
            auto bytes = bytesOf(raw);
            const auto data = make(type, scale)->dataFromAV(bytes.data());
            ASSERT_TRUE(data);
            EXPECT_EQ(data->flags, flags);
            EXPECT_EQ(data->value, value);
        }
    }
}

void expectEncoding() {
    const std::tuple<int, float, std::vector<Case>> rows[]{
        {number, 0.1F, {{"58020000", 0, "60.0"}}},  // the offset of 1 stays in
        {number, 1.0F, {{"ff000000", 0, "-1"}, {"00ff0000", 0, "-256"}, {"d4ff0000", 0, "-300"}}},
        {number, 1.0F, {{"04030201", 0, "16909060"}, {"07000000", 0, " 7 psi"}}},
        {twoBoolean, 1.0F, {{"012c", 2, "300"}, {"0007", 18, "7.9"}, {"00ff", 1, "-1"}}},
        {twoGear, 1.0F, {{"0005", 1, "5"}, {"0105", 2, "5"}, {"0205", 4, "5"}, {"0005", 6, "5"}}},
        {threeBoolean, 1.0F, {{"012c01", 2, "300.7"}, {"000000", 3, "65536"}}},
        {turbo, 1.0F, {{"002c01", 9, "300"}, {"012c01", 2, "300"}}},
        {turbo, 1.0F, {{"022c01", 16, "300"}, {"032c01", 18, "300"}}},
        {driveTrain, 1.0F, {{"0600003b0100", 0, "31.5"}, {"060000000000", 0, "6553.6"}}},
        {driveTrain, 1.0F, {{"060000ffff00", 0, "-0.1"}}},
    };
    for (const auto& [type, factor, cases] : rows) {
        for (const auto& [raw, flags, value] : cases) {
            const AVFormatterData data{.flags = flags, .value = value, .additionalData = {}};
            EXPECT_EQ(encoded(*make(type, {factor, 1, 0}), data, raw.size() / 2), raw)
                << "formatter " << type << ", text " << value;
        }
    }
}

TEST(Formatters, DecodeAndEncodeUnderAnyLocale) {
    expectDecoding();
    expectEncoding();
    struct Comma final : std::numpunct<char> {
        Comma() : std::numpunct<char>(1) {}  // counted, so that no locale deletes it
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    Comma comma;
    const auto old = std::locale::global(std::locale{std::locale::classic(), &comma});
    expectDecoding();
    expectEncoding();
    std::locale::global(old);
}

TEST(Formatters, TakeAbsentBytesEachInItsOwnWay) {
    const std::tuple<int, std::string> rows[] = {
        {number, "0 -40.0"},   {boolean, "none"},  {gear, "none"},          {powerLevel, "none"},
        {twoBoolean, "1 0"},   {twoGear, "1 0"},   {threeBoolean, "1 0.0"}, {turbo, "9 0"},
        {driveTrain, "0 0.0"}, {speed, "0 -40.0"}, {time, "none"}};
    for (const auto& [type, expected] : rows) {
        const auto data = make(type, {0.1F, -40, 1})->dataFromAV(nullptr);
        EXPECT_EQ(data ? std::to_string(data->flags) + ' ' + data->value : "none", expected) << type;
    }
}

TEST(Formatters, WriteBackWhatTheyDecoded) {
    const std::tuple<int, std::string, std::string, std::string> rows[] = {
        // as it came, as it is left, as it is written
        {turbo, "012c01", "802c01", "012c01"},
        {turbo, "042c01", "042c01", "002c01"},
        {turbo, "ff2c01", "ff2c01", "032c01"},
        {driveTrain, "0902033b0105", "0902033b0105", "0602033b0105"},
        {time, "02011e2d", "02011e2d", "01011e2d"}};  // 257 hours
    for (const auto& [type, came, left, written] : rows) {
        auto bytes = bytesOf(came);
        const auto formatter = make(type);
        const auto data = formatter->dataFromAV(bytes.data());
        EXPECT_EQ(hexadecimalText({bytes.data(), came.size() / 2}), left);
        EXPECT_EQ(encoded(*formatter, *data, came.size() / 2), written) << came;
    }
}

TEST(SpeedFormatter, CorrectsForTheTires) {
    auto bytes = bytesOf("54020000");  // 596: 59.6 is rounded before it is scaled
    AVVehicleSpeedFormatter::setCurrentTireSize("33");
    AVVehicleSpeedFormatter::setStockTireSize("30");
    EXPECT_EQ(make(speed, {0.1F, 0, 0})->dataFromAV(bytes.data())->value, "66");
    EXPECT_EQ(make(speed, {0.1F, 0, 1})->dataFromAV(bytes.data())->value, "65.6");
    AVVehicleSpeedFormatter::setCurrentTireSize("1");
    AVVehicleSpeedFormatter::setStockTireSize("1");
}

}  // namespace
}  // namespace torv
