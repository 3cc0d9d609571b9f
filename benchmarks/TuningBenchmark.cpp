// What tuning costs: a pass beside a bare client at the same module, seeding, a long list, and the equalizer.
#include <QGuiApplication>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <chrono>
#include <cstdio>
#include <fstream>

#include "bench/FrameCodec.h"
#include "fakes/Application.h"
#include "screens/NavigationController.h"
#include "tuning/Activation.h"
#include "tuning/ProfileEditor.h"
#include "tuning/ProfileList.h"
#include "tuning/screens/CustomTuningViewController.h"
#include "tuning/screens/EqualizerViewController.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int rate = 200;
constexpr std::size_t profiles = 500;
constexpr int bands = 60;

/// A client that does nothing else: as many writes and reads, each with its answer, in milliseconds. A
/// handset takes a frame once the next one has come (its buffers change places with each); `lags` does that
/// too.
double bareClient(std::uint16_t port, const std::vector<AID>& aids, bool lags) {
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    if (!socket.waitForConnected(5000)) return 0;
    socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    bench::FrameStream stream;
    const auto exchange = [&](const bench::Frame& frame, bench::FrameType answer) {
        const auto bytes = bench::encode(frame);
        socket.write(reinterpret_cast<const char*>(bytes.data()), static_cast<qint64>(bytes.size()));
        socket.flush();
        bool answered = false;
        while (socket.waitForReadyRead(5000)) {
            const auto chunk = socket.readAll();
            if (answered) return;
            for (const auto& came : stream.feed({reinterpret_cast<const std::uint8_t*>(chunk.data()),
                                                 static_cast<std::size_t>(chunk.size())}))
                answered = answered || came.type == bench::typeByte(answer);
            if (answered && !lags) return;
        }
    };
    const auto begin = Clock::now();
    for (const AID aid : aids) {
        const auto byte = static_cast<std::uint8_t>(aid);
        bench::Frame write{bench::typeByte(bench::FrameType::write), {}};
        bench::appendItem(write.payload, {byte, bench::Bytes(bench::valueWidth(byte), 1)});
        exchange(write, bench::FrameType::ack);
        exchange({bench::typeByte(bench::FrameType::request), {byte}}, bench::FrameType::response);
    }
    return Milliseconds{Clock::now() - begin}.count();
}

/// The pass of a handset that has no window to draw, in milliseconds.
double passWithoutWindow(bench::Bench& module, const Vehicle& vehicle, const std::vector<AID>& aids) {
    RealPlatform platform;
    Platform::install(&platform);
    fakes::freshenEngine();
    ConnectionOptions options;
    options.module = Endpoint{"127.0.0.1", module.port()};
    const auto feeder = std::make_shared<iTorvFeeder>(options);
    feeder->start();
    double time = 0;
    if (fakes::waitUntil(
            platform.runLoop(), [&] { return feeder->requestValueForAID(aids.front()); }, 10s)) {
        const auto begin = Clock::now();
        const auto report = Activation{feeder, vehicle}.push(
            "Measured", [](std::size_t, std::size_t, std::size_t) {}, [] { return false; });
        time = report.total == aids.size() ? Milliseconds{Clock::now() - begin}.count() : 0;
    }
    feeder->removeAllReaders();
    Platform::install(nullptr);
    return time;
}

TorvAttributeGroup manyBands() {
    TorvAttributeGroup group;
    group.name = "Many";
    group.lowValue = 50;
    group.highValue = 150;
    group.defaultValue = 100;
    for (int i = 0; i < bands; ++i) {
        TorvAttribute item;
        item.name = std::to_string(800 + 50 * i);
        item.minValue = 50;
        item.maxValue = 150;
        item.warningvaluelow = 60;
        item.warningvaluehigh = 140;
        group.items.push_back(item);
    }
    return group;
}

int measure() {
    const std::filesystem::path profile = ITORV_RESOURCE_DIR "/vehicle.json";
    bench::Bench module{{.rate = rate, .profile = profile}};
    if (module.start()) return std::fputs("the bench does not start\n", stderr), 1;
    std::vector<AID> aids;
    double drawn = 0;
    Vehicle driven;
    {
        fakes::Application app{module, profile};
        if (!app.view() || !app.waitUntilReady()) return std::fputs("there is no connection\n", stderr), 1;
        const auto& vehicle = app.control->currentVehicle();
        driven = vehicle;
        for (const auto& item : vehicle.tuningItems())
            aids.push_back(item.aid);

        ProfileEditor editor{"Measured", vehicle, app.control->feeder()};
        auto begin = Clock::now();
        editor.seed();
        std::printf("%-52s %7.1f ms               limit 50\n", "a profile of 40 items is seeded",
                    Milliseconds{Clock::now() - begin}.count());
        begin = Clock::now();
        Activation{app.control->feeder(), vehicle}.push(
            "Measured", [](std::size_t, std::size_t, std::size_t) {}, [] { return false; });
        drawn = Milliseconds{Clock::now() - begin}.count();

        {
            ProfileList list;
            for (std::size_t i = 0; i < profiles; ++i)
                list.add("Profile " + std::to_string(i));
        }
        int frames = 0;
        QObject::connect(app.view(), &QQuickWindow::frameSwapped, app.view(), [&] { ++frames; });
        const auto stack = std::make_shared<NavigationController>(Screens{app.control}.mainMenu());
        app.page()->presentModalViewControllerAnimated(stack, false);
        app.runFor(1s);
        begin = Clock::now();
        qobject_cast<TableViewController*>(stack->topViewController())->touchRow(0, 3);
        app.waitUntil([&] { return stack->depth() == 2; });
        frames = 0;
        app.waitUntil([&] { return frames > 0; });
        std::printf("%-52s %7.1f ms               limit 150\n",
                    "the list of 500 profiles opens, to its first frame",
                    Milliseconds{Clock::now() - begin}.count());

        const auto equalizer = EqualizerViewController::initForSettingGroupWithValues(
            manyBands(),
            std::vector<AVFormatterData>(bands, {.flags = 0, .value = "100", .additionalData = {}}));
        stack->pushViewControllerAnimated(equalizer, false);
        app.runFor(1s);
        auto& knob = *equalizer->knobs()[3];
        knob.beginTracking(10, knob.handleCenter());
        int step = 0;
        const auto drag = QObject::connect(app.view(), &QQuickWindow::frameSwapped, equalizer.get(),
                                           [&] { knob.continueTracking(20 + step++ * 7 % 150); });
        frames = 0;
        knob.continueTracking(30);
        app.runFor(3s);
        QObject::disconnect(drag);
        std::printf("%-52s %7.1f frames/s         limit 60\n", "a handle of 60 bands is dragged, 1136 x 640",
                    frames / 3.0);
        stack->dismissModalViewControllerAnimated(false);
        app.runFor(100ms);
    }
    const double pass = passWithoutWindow(module, driven, aids);
    const double bare = bareClient(module.port(), aids, true);
    const double quick = bareClient(module.port(), aids, false);
    std::printf("%-52s %7.2f times (%.0f ms)   limit 1.1\n", "a pass over 40 items, beside a bare client",
                pass / bare, bare);
    std::printf("%-52s %7.2f times\n", "the same while the window draws live gauges", drawn / bare);
    std::printf("%-52s %7.2f times (%.0f ms)\n", "beside one that does not wait for the next frame",
                pass / quick, quick);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    const QGuiApplication application{argc, argv};
    return measure();
}
