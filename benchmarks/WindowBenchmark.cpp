// What the window costs at 200 updates a second, with the software renderer: processor time of the program,
// and of the second page while its gauges move and while they stand still.

#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "fakes/Application.h"
#include "support/Number.h"

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

void holdAllValues(bench::Bench& module) {
    for (int aid = 0; aid < 255; ++aid) {
        const auto value = module.value(static_cast<std::uint8_t>(aid));
        if (!value.empty()) module.setValue(static_cast<std::uint8_t>(aid), value);
    }
}

/// The second page's places, all filled.
void fillSecondPage(torv::UserDefaults& defaults) {
    defaults.setObjectForKey(torv::Number::fromInteger(78), "Diesel Pickup 6.7L_0_KEY");
    constexpr std::array sensors{7, 78, 8, 80, 16, 17, 82, 81, 30, 28};
    for (std::size_t i = 0; i < sensors.size(); ++i) {
        defaults.setObjectForKey(
            torv::Number::fromInteger(sensors[i]),
            "Diesel Pickup 6.7L_" + std::to_string(i == 0 ? 0 : 5) + "_" + std::to_string(i) + "_2_KEY");
    }
}

/// When a value of an AID first came out of the socket. The reading thread sees it, the main thread asks.
class Arrivals final : public torv::LinkMonitor {
public:
    using Clock = std::chrono::steady_clock;

    void expect(std::vector<std::uint8_t> bytes) {
        const std::scoped_lock lock{m_mutex};
        m_bytes = std::move(bytes);
        m_arrived.reset();
    }
    [[nodiscard]] std::optional<Clock::time_point> arrived() {
        const std::scoped_lock lock{m_mutex};
        return m_arrived;
    }
    void chunkReceived(std::span<const std::uint8_t> chunk, x2comResult) override {
        const auto now = Clock::now();
        const std::scoped_lock lock{m_mutex};
        if (m_arrived || m_bytes.empty()) return;
        if (std::search(chunk.begin(), chunk.end(), m_bytes.begin(), m_bytes.end()) != chunk.end())
            m_arrived = now;
    }

private:
    std::mutex m_mutex;
    std::vector<std::uint8_t> m_bytes;
    std::optional<Clock::time_point> m_arrived;
};

/// From the chunk that brings a value to the frame that shows it, on the first page's main dial. Values that
/// begin with `lowest` must not have come before.
void measureLatency(fakes::Application& app, bench::Bench& module, Arrivals& arrivals, const char* what,
                    int lowest) {
    constexpr std::uint8_t engineSpeed = 78;
    constexpr int samples = 100;
    std::vector<double> milliseconds;
    const auto gauge = app.first->droppableViews()[0]->gauge();
    int wanted = 0;
    const auto shown = QObject::connect(app.view(), &QQuickWindow::frameSwapped, app.view(), [&] {
        const auto arrived = arrivals.arrived();
        if (wanted == 0 || !arrived || gauge->value() != wanted) return;
        milliseconds.push_back(
            std::chrono::duration<double, std::milli>{Arrivals::Clock::now() - *arrived}.count());
        wanted = 0;
    });
    for (int i = 0; i < samples; ++i) {
        wanted = lowest + 31 * i;
        const int raw = wanted * 4;  // the profile's factor is a quarter
        const auto low = static_cast<std::uint8_t>(raw & 0xFF);
        const auto high = static_cast<std::uint8_t>(raw >> 8);
        arrivals.expect({engineSpeed, low, high});
        module.setValue(engineSpeed, {low, high});
        app.waitUntil([&] { return wanted == 0; }, 5s);
    }
    QObject::disconnect(shown);
    std::sort(milliseconds.begin(), milliseconds.end());
    if (milliseconds.empty()) return;
    std::printf("%-52s %7.1f ms, 95th %.1f ms of %zu   limits 25, 50\n", what,
                milliseconds[milliseconds.size() / 2], milliseconds[milliseconds.size() * 95 / 100],
                milliseconds.size());
}

struct Phase {
    double framesPerSecond = 0;
    double percent = 0;
    [[nodiscard]] double millisecondsPerFrame() const {
        return framesPerSecond > 0 ? percent * 10 / framesPerSecond : 0;
    }
};

/// The second page in a window of this process, with the bench on a thread of it.
int measureSecondPage() {
    bench::Bench module{{.rate = rate, .profile = profile}};
    if (const auto error = module.start()) return fail(*error);
    fakes::Application app{module, profile, fillSecondPage};
    if (!app.view()) return fail("the window could not be made");
    const auto arrivals = std::make_shared<Arrivals>();
    app.control->feeder()->driver().addMonitor(arrivals);  // the loop has not turned yet
    if (!app.waitUntilReady()) return fail("there is no connection");
    measureLatency(app, module, *arrivals, "from the socket to the frame, median", 700);
    app.control->beginRecording();
    measureLatency(app, module, *arrivals, "the same while the drive is recorded", 710);
    app.control->recorder().end();
    int frames = 0;
    QObject::connect(app.view(), &QQuickWindow::frameSwapped, app.view(), [&] { ++frames; });
    const auto opened = std::chrono::steady_clock::now();
    app.first->goToAlternate();
    frames = 0;
    app.waitUntil([&] { return frames > 0; });
    const std::chrono::duration<double, std::milli> opening = std::chrono::steady_clock::now() - opened;
    std::printf("%-52s %7.1f ms               limit 150\n", "the second page opens, to its first frame",
                opening.count());
    const auto measure = [&] {
        app.runFor(warmUp);
        frames = 0;
        const auto load = loadOf(QCoreApplication::applicationPid());
        return Phase{frames / std::chrono::duration<double>{measured}.count(), load.value_or(0)};
    };
    const auto moving = measure();
    std::printf("%-52s %7.1f frames/s, %4.1f %% of one core   limits 60, 50\n",
                "second page and bench, ten gauges moving", moving.framesPerSecond, moving.percent);
    holdAllValues(module);
    const auto still = measure();
    std::printf("%-52s %7.1f frames/s, %4.1f %% of one core   limit 0\n", "all values held",
                still.framesPerSecond, still.percent);
    // The same window, drawn anew as often though nothing in it changes.
    const auto again =
        QObject::connect(app.view(), &QQuickWindow::frameSwapped, app.view(), &QQuickWindow::update);
    app.view()->update();
    const auto redrawn = measure();
    QObject::disconnect(again);
    std::printf("%-52s %7.1f frames/s, %4.1f %% of one core\n", "the same, frames forced",
                redrawn.framesPerSecond, redrawn.percent);
    std::printf("%-52s %7.2f ms against %.2f: %.2f      limit 3\n", "processor time for each frame",
                moving.millisecondsPerFrame(), redrawn.millisecondsPerFrame(),
                moving.millisecondsPerFrame() / redrawn.millisecondsPerFrame());
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
    return measureSecondPage();
}
