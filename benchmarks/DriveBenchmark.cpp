// One hour of driving in virtual time with all three pages open, 200 frames a second: what memory they take.

#include <unistd.h>

#include <QGuiApplication>
#include <chrono>
#include <cstdio>
#include <fstream>

#include "app/Screens.h"
#include "dashboards/Dashboard.h"
#include "vehicles/ProfileDocument.h"

namespace {

using namespace std::chrono_literals;

constexpr int minutes = 60;
constexpr int framesPerSecond = 200;
constexpr int aidsPerFrame = 4;

double residentMegabytes() {
    double size = 0;
    double resident = 0;
    std::ifstream{"/proc/self/statm"} >> size >> resident;
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application{argc, argv};
    fakes::Dashboard dashboard;
    std::string error;
    const auto vehicle = torv::vehicleFromFile(ITORV_RESOURCE_DIR "/vehicle.json", error);
    if (!vehicle) return std::fprintf(stderr, "benchmark_drive: %s\n", error.c_str()), 1;
    dashboard.launch(*vehicle);
    const auto first = torv::Screens{dashboard.app}.firstPage();
    torv::Stage stage{first, nullptr};
    first->goToAlternate();
    dynamic_cast<torv::AlternateViewController&>(*stage.top()).goToLast();
    std::vector<std::uint8_t> aids;
    for (const auto& sensor : vehicle->sensors())
        aids.push_back(static_cast<std::uint8_t>(sensor.aid));

    std::size_t next = 0;
    std::uint8_t value = 0;
    double afterOne = 0;
    for (int minute = 1; minute <= minutes; ++minute) {
        for (int frame = 0; frame < 60 * framesPerSecond; ++frame) {
            for (int i = 0; i < aidsPerFrame; ++i) {
                next = (next + 1) % aids.size();
                dashboard.receive(aids[next], {++value, static_cast<std::uint8_t>(minute), 0, 0});
            }
            dashboard.platform.loop.runFor(1000ms / framesPerSecond);
        }
        if (minute == 1) afterOne = residentMegabytes();
        if (minute == 1 || minute % 20 == 0) {
            std::printf("three pages, after %2d minutes of driving %10.1f MB   %.2f times that after one\n",
                        minute, residentMegabytes(), residentMegabytes() / afterOne);
        }
    }
    return 0;
}
