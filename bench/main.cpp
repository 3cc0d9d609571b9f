#include <pthread.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <charconv>
#include <csignal>
#include <cstdio>

#include "Bench.h"
#include "ModuleState.h"

namespace {

constexpr int badArguments = 2;

struct BadArgument {
    std::string text;
};

template <typename Number>
Number numberOf(const QCommandLineParser& parser, const char* option, Number low, Number high) {
    const std::string text = parser.value(QLatin1String(option)).toStdString();
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || number < low || number > high) {
        throw BadArgument{"--" + std::string(option) + " needs a number from " + std::to_string(low) +
                          " to " + std::to_string(high) + ", not \"" + text + "\""};
    }
    return number;
}

QString defaultProfile() {
    const QString installed = QCoreApplication::applicationDirPath() + "/../share/itorv/vehicle.json";
    return QFileInfo::exists(installed) ? installed : QStringLiteral(ITORV_RESOURCE_DIR "/vehicle.json");
}

void addOptions(QCommandLineParser& parser) {
    parser.setApplicationDescription(
        "A tuning module on the bench: listens for a handset and drives its sensors.\n\n"
        "A fault strikes with a probability (--fault corrupt=0.05) or at a moment in seconds\n"
        "(--fault close@10); \":MILLISECONDS\" behind either says how long it lasts\n"
        "(--fault silent@5:2000). Writes of one AID go wrong with --fault stuck:AID and the like.");
    parser.addHelpOption();
    parser.addOptions({
        {"host", "Address to listen on.", "address", "127.0.0.1"},
        {"port", "Port to listen on, 0 for any free one.", "port", "2000"},
        {"rate", "Frames per second, 1 to 400.", "frames", "100"},
        {"seed", "Seed of the drive and of the faults.", "number", "1"},
        {"stand", "Stand still at this second of the drive.", "seconds"},
        {"replay", "Play this recording of a handset in place of the drive, once.", "file"},
        {"speed", "How much faster the recording is played, 0.1 to 100.", "number", "1"},
        {"profile", "Vehicle profile to serve.", "file"},
        {"fault", "Switch a fault on; may be given again.", "name=probability|name@seconds|name:AID"},
        {"list-faults", "List the faults and leave."},
        {"codes", "Trouble codes to report, such as P0123,U0158.", "codes"},
        {"delay-first", "Silence before the first frame.", "milliseconds", "0"},
        {"jitter", "Most that a frame is late.", "milliseconds", "0"},
        {"quiet", "Print nothing but the port."},
    });
}

bench::Options readOptions(const QCommandLineParser& parser) {
    constexpr std::int64_t hour = 3'600'000;
    bench::Options options;
    options.host = parser.value("host").toStdString();
    options.port = static_cast<std::uint16_t>(numberOf<int>(parser, "port", 0, 65535));
    options.rate = numberOf<int>(parser, "rate", 1, 400);
    options.seed = numberOf<std::uint64_t>(parser, "seed", 0, UINT64_MAX);
    if (parser.isSet("stand")) options.standsAt = numberOf<int>(parser, "stand", 0, 86'400);
    options.firstDelay = bench::Milliseconds(numberOf<std::int64_t>(parser, "delay-first", 0, hour));
    options.jitter = bench::Milliseconds(numberOf<std::int64_t>(parser, "jitter", 0, hour));
    options.profile = (parser.isSet("profile") ? parser.value("profile") : defaultProfile()).toStdString();
    options.replay = parser.value("replay").toStdString();
    options.speed = numberOf<double>(parser, "speed", 0.1, 100);
    for (const QString& text : parser.values("fault")) {
        if (const auto fault = bench::parseWriteFault(text.toStdString())) {
            options.writeFaults.push_back(*fault);
            continue;
        }
        const auto fault = bench::parseFault(text.toStdString());
        if (!fault) throw BadArgument{"not a fault: \"" + text.toStdString() + "\" (see --list-faults)"};
        options.faults.push_back(*fault);
    }
    for (const QString& code : parser.value("codes").split(',', Qt::SkipEmptyParts)) {
        if (!bench::troubleCodeBytes(code.toStdString())) {
            throw BadArgument{"not a trouble code: \"" + code.toStdString() + "\""};
        }
        options.troubleCodes.push_back(code.toStdString());
    }
    if (!parser.isSet("quiet")) {
        options.log = [](const std::string& line) {
            std::printf("%s\n", line.c_str());
            std::fflush(stdout);
        };
    }
    return options;
}

int complain(const std::string& text, int code) {
    std::fprintf(stderr, "itorv-bench: %s\n", text.c_str());
    return code;
}

int run(const QCommandLineParser& parser) {
    // Every thread inherits the mask, so the signals wait for the line that takes them.
    sigset_t endings;
    sigemptyset(&endings);
    sigaddset(&endings, SIGINT);
    sigaddset(&endings, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &endings, nullptr);

    bench::Bench module(readOptions(parser));
    if (const std::optional<std::string> error = module.start()) return complain(*error, badArguments);
    std::printf("listening on port %d\n", static_cast<int>(module.port()));
    std::fflush(stdout);
    int signal = 0;
    sigwait(&endings, &signal);
    module.stop();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("itorv-bench");
    QCommandLineParser parser;
    addOptions(parser);
    if (!parser.parse(QCoreApplication::arguments())) {
        return complain(parser.errorText().toStdString(), badArguments);
    }
    if (!parser.positionalArguments().isEmpty()) {
        return complain("unexpected argument: " + parser.positionalArguments().constFirst().toStdString(),
                        badArguments);
    }
    if (parser.isSet("help")) parser.showHelp(0);
    if (parser.isSet("list-faults")) {
        for (const bench::FaultName& fault : bench::faultNames) {
            std::printf("%-15s %s\n", std::string(fault.name).c_str(), std::string(fault.meaning).c_str());
        }
        std::puts("stuck:AID       acknowledge writes of this AID and keep the old value");
        std::puts("clamp:AID       take no more than the middle of the item's range");
        std::puts("refuse:AID      leave writes of this AID without an ack");
        return 0;
    }
    try {
        return run(parser);
    } catch (const BadArgument& bad) {
        return complain(bad.text, badArguments);
    }
}
