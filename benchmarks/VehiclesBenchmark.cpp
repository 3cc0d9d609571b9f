// The list of vehicles with two hundred stored profiles of 100 KB, without the network: opening the store,
// and the first `vehicles` after it.

#include <QCoreApplication>
#include <QTemporaryDir>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Timing.h"
#include "platform/real/RealPlatform.h"
#include "support/FileContents.h"
#include "vehicles/VehicleArchive.h"
#include "vehicles/VehicleDataSource.h"

namespace {

constexpr std::size_t count = 200;
constexpr std::size_t profileBytes = 100'000;
constexpr int rounds = 15;

int fail(const std::string& why) {
    std::fprintf(stderr, "benchmark_vehicles: %s\n", why.c_str());
    return 1;
}

struct NoNetwork final : torv::NetworkInterfaces {
    [[nodiscard]] std::optional<std::vector<Address>> addresses() const override { return std::nullopt; }
    [[nodiscard]] std::optional<std::uint32_t> reachabilityFlags() const override { return 0; }
    [[nodiscard]] std::optional<Route> routeTo(const std::string&) const override { return std::nullopt; }
};

/// The real parts, with the store in the folder XDG_DATA_HOME names, and no network.
class OfflinePlatform final : public torv::Platform {
public:
    OfflinePlatform() { install(this); }
    ~OfflinePlatform() override { install(nullptr); }

    [[nodiscard]] torv::RunLoop& runLoop() override { return m_real.runLoop(); }
    [[nodiscard]] torv::UserDefaults& userDefaults() override { return m_real.userDefaults(); }
    [[nodiscard]] torv::ByteStreamFactory& streams() override { return m_real.streams(); }
    [[nodiscard]] torv::NetworkInterfaces& networkInterfaces() override { return m_network; }
    [[nodiscard]] torv::URLLoader& urlLoader() override { return m_real.urlLoader(); }
    [[nodiscard]] torv::Resources& resources() override { return m_real.resources(); }
    void setIdleTimerDisabled(bool) override {}
    [[nodiscard]] torv::MailComposer& mailComposer() override { return m_real.mailComposer(); }
    [[nodiscard]] torv::DocumentSaver& documentSaver() override { return m_real.documentSaver(); }
    [[nodiscard]] torv::WirelessNetworks& wirelessNetworks() override { return m_real.wirelessNetworks(); }
    [[nodiscard]] torv::WarningTone& warningTone() override { return m_real.warningTone(); }
    [[nodiscard]] std::unique_ptr<torv::WorkQueue> makeWorkQueue(const std::string& name) override {
        return m_real.makeWorkQueue(name);
    }

private:
    torv::RealPlatform m_real;
    NoNetwork m_network;
};

/// The shipped document as often as it fits, and blanks.
std::string profileText(const std::string& shipped) {
    std::string text = "{\"documents\": [" + shipped;
    while (text.size() + shipped.size() + 3 <= profileBytes)
        text += ',' + shipped;
    text.resize(std::max(text.size(), profileBytes - 2), ' ');
    return text + "]}";
}

void store(const std::string& info) {
    const OfflinePlatform platform;
    std::vector<torv::Vehicle> vehicles(count);
    for (std::size_t i = 0; i < count; ++i) {
        vehicles[i].setName("Vehicle " + std::to_string(count - i));
        vehicles[i].setVersion("1.0");
        vehicles[i].setInfo(torv::ProfileInfo{info});
    }
    const auto last = vehicles.back();
    vehicles.pop_back();
    torv::Platform::current().userDefaults().setObjectForKey(torv::archivedVehicles(vehicles), "vehicles");
    torv::VehicleDataSource::setCurrentVehicle(last);
    torv::VehicleDataSource::saveVehicle(last);
}

}  // namespace

int main(int argc, char** argv) {
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    const QCoreApplication application{argc, argv};
    std::string error;
    const auto shipped = torv::contentsOfFile(ITORV_RESOURCE_DIR "/vehicle.json", error);
    if (!shipped) return fail(error);
    store(profileText(*shipped));

    std::vector<double> opening;
    std::vector<double> listing;
    for (int round = 0; round < rounds; ++round) {
        std::unique_ptr<OfflinePlatform> platform;
        opening.push_back(
            timing::secondsOf([&] { return (platform = std::make_unique<OfflinePlatform>()).get(); }));
        std::vector<torv::Vehicle> vehicles;
        listing.push_back(
            timing::secondsOf([&] { return (vehicles = torv::VehicleDataSource::vehicles()).size(); }));
        if (vehicles.size() != count) return fail("the store does not give back what was stored");
    }
    const double open = timing::median(opening) * 1e3;
    const double list = timing::median(listing) * 1e3;
    std::printf("%-46s %7.1f ms\n", "opening the store of 200 profiles of 100 KB", open);
    std::printf("%-46s %7.1f ms   limit 100\n", "vehicles() without the network", list);
    std::printf("%-46s %7.1f ms   limit 100\n", "both", open + list);
    return 0;
}
