// What the data log costs: its CSV beside the formatting alone, recording beside none, and the graph of an
// hour.
#include <sys/resource.h>

#include <QGuiApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "datalog/DataLogCsv.h"
#include "datalog/RecordingWriter.h"
#include "datalog/Recordings.h"
#include "datalog/screens/GraphViewController.h"
#include "datalog/screens/RecordingsViewController.h"
#include "fakes/Application.h"
#include "screens/NavigationController.h"
#include "support/TextNumbers.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int hourValues = 720'000;

template <class Work>
double milliseconds(Work&& work) {
    const auto begin = Clock::now();
    work();
    return Milliseconds{Clock::now() - begin}.count();
}

double medianOf(std::vector<double> numbers) {
    std::ranges::sort(numbers);
    return numbers[numbers.size() / 2];
}

/// The screen's export of 20 sensors with 10,000 samples each, beside formatting and keeping the same texts.
void measureCsv() {
    constexpr int sensors = 20;
    DataLog log;
    const auto begun = DataLog::Clock::now();
    for (int i = 0; i < static_cast<int>(DataLog::sampleLimit) * sensors; ++i)
        log.record(i % sensors, static_cast<float>(i % 977) / 7, begun + i * 250us);
    std::vector<double> ratios;
    std::vector<double> times;
    for (int run = 0; run < 7; ++run) {
        std::string text;
        times.push_back(milliseconds([&] {
            std::vector<DataLogColumn> columns;
            for (AID aid = 0; aid < sensors; ++aid) {
                columns.push_back(
                    {"Sensor", 1,
                     [&log, aid, next = std::size_t{0}]() mutable -> std::optional<LoggedSample> {
                         if (next >= log.sampleCount(aid)) return std::nullopt;
                         const auto sample = log.sample(aid, next++);
                         return LoggedSample{static_cast<double>(sample.value), wallTime(sample.time)};
                     }});
            }
            writeDataLogCsv(columns, [&text](std::string_view piece) {
                text += piece;
                return true;
            });
        }));
        std::string same;
        const double bare = milliseconds([&] {
            for (std::size_t i = 0; i < DataLog::sampleLimit; ++i) {
                for (AID aid = 0; aid < sensors; ++aid) {
                    const auto sample = log.sample(aid, i);
                    same += logTimeText(wallTime(sample.time));
                    same += ',';
                    same += fixedText(static_cast<double>(sample.value), 1);
                    same += aid + 1 < sensors ? ',' : '\n';
                }
            }
        });
        ratios.push_back(times.back() / bare);
    }
    std::printf("%-52s %7.2f times (%.0f ms)   limit 2\n",
                "CSV of 20 x 10,000 samples, beside its bytes alone", medianOf(ratios), medianOf(times));
}

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// A link without a window, with and without a recording by turns.
void measureRecording(fakes::Application& app) {
    constexpr auto turn = 4s;
    std::vector<double> with;
    std::vector<double> without;
    for (int i = 0; i < 10; ++i) {
        const bool records = i % 2 == 0;
        if (records) app.control->beginRecording();
        const double before = processorSeconds();
        app.runFor(turn);
        (records ? with : without).push_back((processorSeconds() - before) / 4 * 100);
        app.control->recorder().end();
    }
    std::printf("%-52s %7.1f %% of a core (%.1f and %.1f)   limit 3\n",
                "recording at 200 frames a second costs", medianOf(with) - medianOf(without), medianOf(with),
                medianOf(without));
}

std::filesystem::path makeHour(int sensors) {
    RecordedDrive drive{.name = "An hour", .vehicle = "Truck", .begun = wallNow(), .sensors = {}};
    for (int i = 0; i < sensors; ++i) {
        RecordedSensor sensor;
        sensor.aid = i;
        sensor.name = "Sensor " + std::to_string(i);
        sensor.unit = "PSI";
        sensor.decimaldigits = 1;
        drive.sensors.push_back(sensor);
    }
    std::string error;
    auto file = newRecordingFile();
    auto writer = RecordingWriter::begin(file, drive, error);
    std::vector<RecordedValue> second;
    for (int i = 0; writer && i < hourValues; ++i) {
        const auto time = i * 5ms;
        second.push_back({i % sensors, time, drive.begun + time,
                          std::sin(i / 9000.0) * 40 + static_cast<double>(i * 7919LL % 101) / 10, AV{}});
        if (second.size() < 2000 && i + 1 < hourValues) continue;
        static_cast<void>(writer->append(second, {}));
        second.clear();
    }
    if (writer) writer->end();
    return file;
}

/// Of an hour with so many sensors; the same number of values in all.
void measureGraph(fakes::Application& app, int sensors) {
    const auto file = makeHour(sensors);
    const auto stack = std::make_shared<NavigationController>(Screens{app.control}.mainMenu());
    app.first->presentModalViewControllerAnimated(stack, false);
    app.runFor(1s);
    int frames = 0;
    const auto counting =
        QObject::connect(app.view(), &QQuickWindow::frameSwapped, app.view(), [&] { ++frames; });
    const double opening = milliseconds([&] {
        showRecording(*stack->topViewController(), file);
        app.waitUntil([&] { return stack->depth() == 2; });
        frames = 0;
        app.waitUntil([&] { return frames > 0; });
    });
    std::printf("a recording of an hour with %2d sensors opens to its first curves in %.1f ms   limit 300\n",
                sensors, opening);
    auto& graph = dynamic_cast<GraphViewController&>(*stack->topViewController());
    for (std::size_t sensor = 0; sensor < GraphViewController::mostCurves; ++sensor)
        graph.setShown(sensor, true);
    app.runFor(500ms);
    int step = 0;
    double span = 0;
    const auto drag = QObject::connect(app.view(), &QQuickWindow::frameSwapped, &graph,
                                       [&] { graph.step(step++ % 200 < 100 ? 0.003 : -0.003); });
    for (const double steps : {1.0, 8.0, 6.0, 6.0}) {
        graph.zoom(284, steps);
        span = graph.visible().span().length();
        frames = 0;
        app.runFor(2s);
        std::printf("%-40s %9.1f s %7.1f frames/s         limit 60\n", "six curves of it are dragged, over",
                    span, frames / 2.0);
    }
    QObject::disconnect(drag);
    QObject::disconnect(counting);
    app.first->dismissModalViewControllerAnimated(false);
    app.runFor(500ms);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    const QGuiApplication application{argc, argv};
    measureCsv();
    const std::filesystem::path profile = ITORV_RESOURCE_DIR "/vehicle.json";
    bench::Bench module{{.rate = 200, .profile = profile}};
    if (module.start()) return std::fputs("the bench does not start\n", stderr), 1;
    fakes::Application app{module, profile};
    if (!app.view() || !app.waitUntilReady()) return std::fputs("there is no connection\n", stderr), 1;
    measureRecording(app);
    for (const int sensors : {20, 6})
        measureGraph(app, sensors);
    return 0;
}
