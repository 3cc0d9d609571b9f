#include "app/Demo.h"

#include <array>
#include <filesystem>

#include "platform/StoredKeys.h"
#include "platform/real/StandardResources.h"
#include "support/Number.h"

namespace torv {
namespace {

using namespace std::chrono_literals;

constexpr auto vehicle = "Diesel Pickup 6.7L";
constexpr int rate = 200;
// Longer than the handset's first attempts.
constexpr auto firstLoss = 120s;
constexpr auto lossLasts = 12s;

bench::Options optionsOf(Demo::Kind kind) {
    bench::Options options;
    options.rate = rate;
    options.profile =
        StandardResources{}.pathForResourceOfType("vehicle", "json").value_or(std::filesystem::path{});
    options.troubleCodes = {"P0299", "P2463"};
    if (kind == Demo::Kind::faults)
        options.faults.push_back({bench::Fault::refuse, {.at = firstLoss, .lasts = lossLasts}});
    return options;
}

bench::Options optionsWithStores(Demo::Kind kind, const QTemporaryDir& stores) {
    qputenv("XDG_DATA_HOME", stores.path().toUtf8());
    return optionsOf(kind);
}

}  // namespace

std::optional<Demo::Kind> Demo::kindFromText(const QString& text) {
    if (text == u"drive") return Kind::drive;
    if (text == u"faults") return Kind::faults;
    return std::nullopt;
}

Demo::Demo(Kind kind) : m_module(optionsWithStores(kind, m_stores)) {}

std::optional<std::string> Demo::start() {
    // Without a place of its own it would take the user's.
    if (!m_stores.isValid())
        return "the demo has no place for its stores: " + m_stores.errorString().toStdString();
    return m_module.start();
}

void Demo::prepare(UserDefaults& defaults) {
    struct Placement {
        const char* place;
        int aid;
    };
    for (const auto& [place, aid] :
         {Placement{"_0_KEY", 78}, {"_4_KEY", 8},      {"_3_KEY", 80},     {"_2_KEY", 7},
          {"_1_KEY", 10},          {"_0_0_2_KEY", 7},  {"_5_1_2_KEY", 14}, {"_5_2_2_KEY", 16},
          {"_5_3_2_KEY", 17},      {"_5_4_2_KEY", 10}, {"_5_5_2_KEY", 11}, {"_5_6_2_KEY", 13},
          {"_5_7_2_KEY", 12},      {"_5_8_2_KEY", 82}, {"_5_9_2_KEY", 8},  {"_6_0_3_KEY", 22},
          {"_6_1_3_KEY", 34},      {"_6_2_3_KEY", 35}, {"_6_3_3_KEY", 78}, {"_6_4_3_KEY", 81},
          {"_6_5_3_KEY", 30},      {"_6_6_3_KEY", 28}, {"_6_7_3_KEY", 20}, {"_6_8_3_KEY", 32}}) {
        defaults.setObjectForKey(Number::fromInteger(aid), std::string{vehicle} + place);
    }
    defaults.setObjectForKey(true, firstRunKey);
    defaults.synchronize();
}

}  // namespace torv
