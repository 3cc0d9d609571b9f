#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "diagnostics/AVDTCData224.h"
#include "diagnostics/AVDTCData225.h"
#include "diagnostics/AVDTCFormatter224.h"
#include "diagnostics/AVDTCFormatter225.h"
#include "diagnostics/TroubleCodeDatabase.h"

namespace {

using namespace torv;
using Slot = std::array<std::uint8_t, 13>;
using Codes = std::vector<std::string>;

AVDTCData224 codes224(Slot slot) {
    return std::any_cast<AVDTCData224>(AVDTCFormatter224{}.dataFromAV(slot.data())->additionalData);
}
Codes codes225(Slot slot) {
    return std::any_cast<Codes>(AVDTCFormatter225{}.dataFromAV(slot.data())->additionalData);
}

TEST(DtcFormatters, DecodeLetterDigitsAndCountsInTheirOwnWays) {
    Slot first{0x0D, 0x2A, 0x03, 0x01, 0x23, 0xC1, 0x58, 0x4A, 0xBC};
    EXPECT_EQ(codes224(first).DTCData, (Codes{"P0123", "U0158", "C0101112"}));
    EXPECT_EQ(AVDTCFormatter224{}.dataFromAV(first.data())->value, "42");
    EXPECT_EQ(codes224({13, 0, 2, 0xB3, 0xFF, 0, 0}).DTCData, (Codes{"B331515", "P0000"}));
    EXPECT_EQ(codes225({5, 0xC1, 0x23, 0x04, 0x20}), (Codes{"P0123", "P0420"}));
    AVDTCData225 six;
    six.setDTCData({"1", "2", "3", "4", "5", "6", "7"});
    EXPECT_EQ(six.DTCData(), (Codes{"1", "2", "3", "4", "5", "6"}));
    EXPECT_TRUE(codes225({}).empty());
    EXPECT_TRUE(std::any_cast<Codes>(AVDTCFormatter225{}.dataFromAV(nullptr)->additionalData).empty());
    EXPECT_TRUE(
        std::any_cast<AVDTCData224>(AVDTCFormatter224{}.dataFromAV(nullptr)->additionalData).DTCData.empty());
}

TEST(DtcFormatters, TakeEveryLengthAndEveryCount) {
    for (int n = 0; n < 256; ++n) {
        for (int count = 0; count < 256; ++count) {
            Slot slot;
            slot.fill(0xFF);
            slot[0] = static_cast<std::uint8_t>(n);
            slot[2] = static_cast<std::uint8_t>(count);
            const auto codes = codes224(slot);
            ASSERT_EQ(codes.DTCData.size(), static_cast<std::size_t>(std::min(count, 5)));
            ASSERT_EQ(codes.numberOfDTCReported, std::to_string(count));
            ASSERT_EQ(codes225(slot).size(), static_cast<std::size_t>(n < 3 ? 0 : std::min((n - 1) / 2, 6)));
        }
    }
}

/// In how many ways the digits can be read as three fields of 0 to 15 without leading zeros.
int readings(const std::string& digits, int fields) {
    if (fields == 0) return digits.empty() ? 1 : 0;
    int ways = 0;
    for (std::size_t length = 1; length <= std::min<std::size_t>(digits.size(), 2); ++length) {
        const bool fits = length == 1 || (digits[0] == '1' && digits[1] <= '5');
        if (fits) ways += readings(digits.substr(length), fields - 1);
    }
    return ways;
}

TEST(TroubleCodeDatabase, HasAKeyForEachCodeAsTheReportsSpellIt) {
    std::string error;
    const auto texts = TroubleCodeDatabase::load(ITORV_SHARE_DIR "/DTCDB.sqlite", error);
    ASSERT_TRUE(texts) << error;
    EXPECT_GE(texts->size(), 2500U);
    for (const auto& [code, text] : *texts) {
        ASSERT_GE(code.size(), 5U);
        EXPECT_NE(std::string{"PCBU"}.find(code[0]), std::string::npos) << code;
        EXPECT_TRUE(code[1] >= '0' && code[1] <= '3' && readings(code.substr(2), 3) > 0) << code;
        EXPECT_GE(text.size(), 10U) << code;
        // A spelling that is not the world's own tells that too.
        EXPECT_EQ(code.size() > 5, text.size() > 7 && text[5] == ':' && text[0] == code[0]) << code;
    }
    EXPECT_NE(texts->at("P01112").find("P011C"), std::string::npos);
    EXPECT_NE(texts->at("P01112").find("P0B12"), std::string::npos);
}

/// Words in small letters, a blank before and behind each.
std::string plainWords(std::string text) {
    for (auto& c : text)
        c = std::isalnum(static_cast<unsigned char>(c)) ? static_cast<char>(std::tolower(c)) : ' ';
    return " " + text + " ";
}

/// A code of five signs as the reports spell it.
std::string spelt(const std::string& code) {
    std::string text;
    for (const char sign : code) {
        const bool isDigitAboveNine = !text.empty() && std::isalpha(static_cast<unsigned char>(sign)) != 0;
        text += isDigitAboveNine ? std::to_string(sign - 'A' + 10) : std::string(1, sign);
    }
    return text;
}

TEST(TroubleCodeDatabase, SaysWhatTheStandardSays) {
    // Code, and words that its text must have, or their beginnings.
    std::istringstream rows{R"(
P0001 volume regulator open; P0010 camshaft A actuator bank 1; P0016 crankshaft correlat sensor A;
P0021 bank 2 advanced; P0030 heater bank 1 sensor 1; P0045 boost control A open;
P0057 heater bank 2 sensor 2 low; P0068 throttle correlat; P0087 rail pressure too low;
P0088 rail pressure too high; P0089 pressure regulator 1 performance; P0093 leak large;
P0101 air flow range; P0106 manifold range; P0113 intake air temperature high; P0117 coolant low;
P0123 throttle high; P0128 thermostat; P0133 oxygen bank 1 sensor 1 slow;
P0141 oxygen bank 1 sensor 2 heater; P0154 oxygen bank 2 sensor 1 no activity; P0171 bank 1 too lean;
P0175 bank 2 too rich; P0183 fuel temperature A high; P0190 rail pressure sensor A;
P0193 rail pressure sensor A high; P0201 injector cylinder 1; P0208 injector cylinder 8;
P0217 coolant over temperature; P0219 overspeed; P0222 throttle B low; P0234 overboost;
P0238 boost sensor A high; P0243 wastegate A; P0251 injection pump metering A; P0263 cylinder 1 balance;
P0276 cylinder 6 low; P0284 cylinder 8 balance; P0299 underboost; P0300 misfire random;
P0306 misfire cylinder 6; P0325 knock 1 bank 1; P0335 crankshaft A; P0340 camshaft A bank 1;
P0351 coil A; P0380 glow plug A; P0401 recirculation insufficient; P0402 recirculation excessive;
P0404 recirculation range; P0420 catalyst bank 1 efficiency; P0430 catalyst bank 2 efficiency;
P0442 small leak; P0446 vent; P0455 large leak; P0470 exhaust pressure A; P0471 exhaust pressure range;
P0480 fan 1; P0500 vehicle speed A; P0507 idle higher; P0520 oil pressure; P0524 oil pressure too low;
P0544 exhaust gas temperature bank 1 sensor 1; P0562 system voltage low; P0571 brake switch A;
P0601 checksum; P0606 processor; P0615 starter relay; P0627 fuel pump A open;
P0642 reference voltage A low; P0670 glow plug control module; P0671 glow plug cylinder 1;
P0678 glow plug cylinder 8; P0700 transmission; P0705 range sensor A; P0715 turbine speed A;
P0731 gear 1 ratio; P0741 torque converter clutch stuck off; P0750 shift solenoid A;
P0776 pressure control B stuck off; P0841 fluid pressure A range; P0962 pressure control solenoid A low;
P2002 particulate bank 1; P2031 exhaust gas temperature bank 1 sensor 2; P2047 reductant bank 1 unit 1;
P2122 pedal D low; P2135 A and B correlat; P2138 D and E correlat; P2146 injector group A open;
P2200 NOx bank 1; P2262 boost none mechanical; P2263 boost performance; P2269 water in fuel;
P2291 injector control pressure cranking; P2413 recirculation performance;
P2453 particulate pressure A range; P2463 soot; P2457 recirculation cooler;
P2563 boost control position A range; P2610 engine off timer; P3401 cylinder 1 deactivation intake;
P3497 bank 2; P203E reductant level intermittent; P20EE SCR bank 1 efficiency;
P203F reductant level low; P20BD reductant heater B open; P029D cylinder 1 leaking;
P0AEF inverter temperature A low; P0A0F failed to start; P0A80 replace; U0100 engine control;
U0101 transmission control; U0121 antilock; U0140 body control; U0155 instrument; U0401 invalid engine;
U0073 bus A off; C0035 right front wheel speed; C0040 brake pedal switch A; B0001 driver stage 1;
B0028 right side;
P208A reductant pump A control open; P208B reductant pump A range; P208D reductant pump A high;
P208E reductant injection valve bank 1 unit 1 closed; P203A reductant level; P204A reductant pressure;
P205A reductant tank temperature; P202A reductant tank heater; P206A reductant quality; P20E8 reductant low;
P20A0 reductant purge open; P20A6 reductant air pressure control open; P20AC metering temperature;
P20B1 reductant heater coolant valve; P20B5 metering heater; P20F4 consumption low; P249C reductant long;
P229E NOx bank 1 sensor 2; P22A3 NOx heater bank 1 sensor 2; P22A6 NOx heater sense bank 1 sensor 2;
P225C NOx bank 1 sensor 1 stuck high; P225D NOx bank 1 sensor 1 stuck low; P22FB NOx bank 1 sensor 1 element;
P20EC SCR bank 1 over; P242A exhaust temperature bank 1 sensor 3; P246E exhaust temperature bank 1 sensor 4;
P247A exhaust temperature bank 1 sensor 3 out of range; P244A particulate differential low;
P244C exhaust low regeneration; P2458 regeneration duration; P249F particulate regeneration long;
P24A0 particulate regeneration limit temperature low; P24A1 particulate regeneration limit temperature high;
P24A2 particulate bank 1 regeneration incomplete; P24A4 particulate bank 1 restricted soot;
P24AE particulate matter sensor; P20CB aftertreatment injector A open; P20D7 aftertreatment supply open;
P20DD aftertreatment fuel pressure; P245A recirculation cooler bypass; P040A recirculation temperature A;
P02E0 diesel air flow open; P02EE injector cylinder 1 range; P06B9 glow plug cylinder 1 range;
P0A0B interlock range; P0A82 fan 1 off; P0A83 fan 1 on; P0A97 fan 2 off; P0A99 fan 2 low)"};
    std::string error;
    const auto texts = TroubleCodeDatabase::load(ITORV_SHARE_DIR "/DTCDB.sqlite", error);
    ASSERT_TRUE(texts) << error;
    for (std::string row; std::getline(rows, row, ';');) {
        std::istringstream words{row};
        std::string word;
        words >> word;
        const auto found = texts->find(spelt(word));
        ASSERT_NE(found, texts->end()) << row;
        const auto text = plainWords(found->second);
        while (words >> word) {
            const auto whole = plainWords(word);
            const auto wanted = word.size() == 1 ? whole : whole.substr(0, whole.size() - 1);
            EXPECT_NE(text.find(wanted), std::string::npos) << row << ": " << found->second;
        }
    }
}

TEST(TroubleCodeDatabase, ThatCanNotBeReadIsNamed) {
    const std::filesystem::path folder = testing::TempDir();
    const auto file = [&](const char* name, const std::string& content) {
        std::ofstream{folder / name, std::ios::binary} << content;
        return folder / name;
    };
    std::ostringstream whole;
    whole << std::ifstream{ITORV_SHARE_DIR "/DTCDB.sqlite", std::ios::binary}.rdbuf();
    const auto bytes = whole.str();
    ASSERT_GT(bytes.size(), 100000U);
    const std::pair<std::filesystem::path, const char*> rows[] = {
        {folder / "none.sqlite", "Failed to open database"},
        {folder, "Failed to open database"},
        {file("empty.sqlite", ""), "Error while creating add statement. 'no such table: dtc'"},
        {file("text.sqlite", std::string(5000, 'x')), "Error while creating add statement. '"},
        {file("cut.sqlite", bytes.substr(0, bytes.size() / 2)), "Error while creating add statement. '"},
        {file("holes.sqlite", bytes.substr(0, 8192) + std::string(bytes.size() - 8192, '\xA5')),
         "Error while creating add statement. '"}};
    for (const auto& [path, text] : rows) {
        std::string error;
        EXPECT_FALSE(TroubleCodeDatabase::load(path, error)) << path;
        EXPECT_EQ(error.find(text), 0U) << error;
        EXPECT_NE(error.find(path.string()), std::string::npos) << error;
    }
}

}  // namespace
