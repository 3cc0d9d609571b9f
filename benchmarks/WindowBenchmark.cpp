// What the window costs at 200 updates a second, with the software renderer: processor time of the program,
// and how often the scene is drawn while the shown values move, stand still, and stay away.

#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "app/ConnectionStatus.h"
#include "bench/Bench.h"
#include "diagnostics/GroupsViewController.h"
#include "platform/real/RealPlatform.h"
#include "screens/NavigationController.h"
#include "screens/Stage.h"
#include "session/iTorvFeeder.h"
#include "vehicles/ProfileDocument.h"

namespace {

using namespace std::chrono_literals;

constexpr int rate = 200;
constexpr auto warmUp = 3s;
constexpr auto measured = 10s;
constexpr auto profile = ITORV_RESOURCE_DIR "/vehicle.json";

int fail(const std::string& why) {
    std::fprintf(stderr, "benchmark_window: %s\n", why.c_str());
    return 1;
}

void runFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// User and system time of a process so far; nothing if it has ended.
std::optional<double> processorSeconds(qint64 process) {
    QFile file{QStringLiteral("/proc/%1/stat").arg(process)};
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    const auto line = file.readAll();
    const auto fields = line.mid(line.lastIndexOf(')') + 2).split(' ');  // from the state on
    if (fields.size() < 13 || fields[0] == "Z") return std::nullopt;
    return static_cast<double>(fields[11].toLongLong() + fields[12].toLongLong()) /
           static_cast<double>(::sysconf(_SC_CLK_TCK));
}

/// Per cent of one core over the measured time; the loop turns meanwhile.
std::optional<double> loadOf(qint64 process) {
    const auto before = processorSeconds(process);
    runFor(measured);
    const auto after = processorSeconds(process);
    if (!before || !after) return std::nullopt;
    return (*after - *before) * 100 / std::chrono::duration<double>{measured}.count();
}

void printLoad(const char* what, double percent) {
    std::printf("%-52s %7.1f %% of one core   limit 25\n", what, percent);
}

/// The program as it is started by a user, and the bench beside it.
int measureProgram() {
    const auto folder = QCoreApplication::applicationDirPath();
    QProcess module;
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    module.start(folder + "/itorv-bench",
                 {"--rate", QString::number(rate), "--port", "0", "--profile", profile});
    if (!module.waitForReadyRead()) return fail("itorv-bench does not start");
    const auto port = module.readLine().trimmed().split(' ').last();
    program.start(folder + "/itorv", {"--offscreen", "--profile", profile, "--module", "127.0.0.1:" + port});
    if (!program.waitForStarted()) return fail("itorv does not start");
    runFor(warmUp);
    const auto load = loadOf(program.processId());
    const auto events = module.readAllStandardOutput();
    const bool connected = events.contains("handset connected") && !events.contains("handset gone");
    for (auto* process : {&program, &module}) {
        process->terminate();
        process->waitForFinished();
    }
    if (!load) return fail("itorv ended by itself: " + program.readAll().toStdString());
    if (!connected) return fail("itorv did not stay connected");
    printLoad("itorv as it starts, 200 frames a second", *load);
    return 0;
}

/// What the module does, one phase after the other; none takes back an earlier one.
struct Phase {
    const char* name;
    void (*begin)(bench::Bench&);
    const char* limit;
};

void holdAllValues(bench::Bench& module) {
    for (int aid = 0; aid < 255; ++aid) {
        const auto value = module.value(static_cast<std::uint8_t>(aid));
        if (!value.empty()) module.setValue(static_cast<std::uint8_t>(aid), value);
    }
}

constexpr std::array<Phase, 3> phases{{
    {"the values move", [](bench::Bench&) {}, "-"},
    {"200 frames a second, all values held", holdAllValues, "0"},
    {"the module is silent", [](bench::Bench& module) { module.setFault(bench::Fault::silent, {.at = 0ms}); },
     "0"},
}};

/// The live list in a window of this process, with the bench on a thread of it.
int measureLiveList() {
    bench::Bench module{{.rate = rate, .profile = profile}};
    if (const auto error = module.start()) return fail(*error);
    torv::RealPlatform platform;
    torv::Platform::install(&platform);
    std::string error;
    const auto vehicle = torv::vehicleFromFile(profile, error);
    if (!vehicle) return fail(error);
    const auto feeder = std::make_shared<torv::iTorvFeeder>(
        torv::ConnectionOptions{.module = torv::Endpoint{"127.0.0.1", module.port()}});
    torv::ConnectionStatus status{feeder};
    torv::NavigationController navigation{std::make_shared<torv::GroupsViewController>(*vehicle, feeder)};
    torv::Stage stage{navigation, &status};
    feeder->setFeeding(true);
    feeder->start();
    QQmlApplicationEngine engine;
    engine.setInitialProperties({{"stage", QVariant::fromValue(&stage)}});
    engine.load("qrc:/iTorv/Main.qml");
    if (engine.rootObjects().isEmpty()) return fail("the window could not be made");
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    int redraws = 0;
    QObject::connect(window, &QQuickWindow::frameSwapped, window, [&] { ++redraws; });

    for (const auto& phase : phases) {
        phase.begin(module);
        runFor(warmUp);
        if (!feeder->driver().connected()) return fail("there is no connection");
        redraws = 0;
        const auto framesBefore = module.statistics().framesSent;
        const auto load = loadOf(QCoreApplication::applicationPid());
        const auto frames = module.statistics().framesSent - framesBefore;
        if (&phase == &phases.front()) printLoad("live list and bench in one process, values moving", *load);
        std::printf("redraws in 10 s: %-38s %3d   limit %s   (%llu frames received)\n", phase.name, redraws,
                    phase.limit, static_cast<unsigned long long>(frames));
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const QTemporaryDir home;  // neither this nor the program touches the user's own data
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application{argc, argv};
    if (const int code = measureProgram(); code != 0) return code;
    return measureLiveList();
}
