#include <QCoreApplication>
#include <array>
#include <cstdio>

#include "Arguments.h"
#include "Commands.h"
#include "platform/real/QuitSignals.h"
#include "platform/real/RealPlatform.h"
#include "platform/real/SystemLog.h"
#include "vehicles/ProfileDocument.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;

struct Row {
    itorvctl::Command command;
    int (*run)(itorvctl::Handset&, const itorvctl::Arguments&);
};
constexpr std::array<Row, 9> rows{{
    {itorvctl::Command::watch, &itorvctl::watch},
    {itorvctl::Command::get, &itorvctl::get},
    {itorvctl::Command::set, &itorvctl::set},
    {itorvctl::Command::frames, &itorvctl::frames},
    {itorvctl::Command::record, &itorvctl::record},
    {itorvctl::Command::check, &itorvctl::check},
    {itorvctl::Command::codes, &itorvctl::codes},
    {itorvctl::Command::settings, &itorvctl::settings},
    {itorvctl::Command::profiles, &itorvctl::profiles},
}};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application{argc, argv};
    QCoreApplication::setApplicationName("itorvctl");
    QCoreApplication::setApplicationVersion(ITORV_VERSION);
    std::string error;
    const auto arguments = itorvctl::readArguments(QCoreApplication::arguments(), error);
    if (!arguments) {
        itorvctl::complain(error);
        return itorvctl::badArguments;
    }
    startSystemLog("itorvctl", arguments->verbose ? LogTerminal::yes : LogTerminal::no);
    RealPlatform platform;
    Platform::install(&platform);
    if (arguments->command == itorvctl::Command::vehicles) return itorvctl::vehicles(*arguments);
    if (arguments->command == itorvctl::Command::defaults) return itorvctl::defaults(*arguments);
    if (arguments->command == itorvctl::Command::exportRecording)
        return itorvctl::exportRecording(*arguments);
    if (arguments->command == itorvctl::Command::frames && !arguments->words.empty())
        return itorvctl::capturedFrames(*arguments);
    auto vehicle = arguments->common.profile.empty() ? std::optional{VehicleDataSource::currentVehicle()}
                                                     : vehicleFromFile(arguments->common.profile, error);
    if (!vehicle) {
        itorvctl::complain(error);
        return itorvctl::badArguments;
    }
    if (arguments->command == itorvctl::Command::warnings) return itorvctl::warnings(*vehicle, *arguments);
    if (arguments->command == itorvctl::Command::names) return itorvctl::names(*vehicle, *arguments);
    itorvctl::Handset handset{*arguments, std::move(*vehicle)};
    // Only now: the commands above turn no loop, and a signal may end them at any moment.
    const QuitSignals signals_{[&] { handset.interrupt(); }};
    if (!arguments->common.capture.empty() && !handset.capture(arguments->common.capture, error)) {
        itorvctl::complain(error);
        return itorvctl::badArguments;
    }
    for (const auto& [command, run] : rows) {
        if (command != arguments->command) continue;
        const int code = run(handset, *arguments);
        if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
        itorvctl::complain("the output could not be written");
        return itorvctl::noAnswer;
    }
    return itorvctl::badArguments;
}
