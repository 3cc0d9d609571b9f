// The one place where the application's parts are chosen and wired.
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QUrl>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "app/Demo.h"
#include "app/Display.h"
#include "app/Screens.h"
#include "app/SingleInstance.h"
#include "app/StartTimes.h"
#include "control/ConnectionStatus.h"
#include "control/iTorvAppDelegate.h"
#include "options/CommonOptions.h"
#include "platform/Log.h"
#include "platform/real/DesktopFileChooser.h"
#include "platform/real/LoopbackOnly.h"
#include "platform/real/MemoryPressure.h"
#include "platform/real/OnScreenKeyboard.h"
#include "platform/real/QuitSignals.h"
#include "platform/real/RealPlatform.h"
#include "platform/real/SystemLog.h"
#include "qml/MainWindow.h"
#include "screens/Image.h"
#include "screens/Stage.h"
#include "vehicles/ProfileDocument.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;

constexpr int badArguments = 2;
constexpr int screenshotFailed = 1;
constexpr int cannotDraw = 2;

struct Options {
    CommonOptions common;
    std::optional<std::string> url;
    QString screenshot;
    std::chrono::milliseconds after{2000};
    std::optional<QSize> size;
    Turn turn = Turn::automatic;
    bool fullScreen = false;
    bool software = false;
    bool logTimes = false;
    bool newInstance = false;
    bool openProfile = false;
    std::optional<Demo::Kind> demo;
};

int refuse(const std::string& why) {
    std::fprintf(stderr, "itorv: %s\n", why.c_str());
    return badArguments;
}

/// Before any Qt object, because the application object chooses the platform plugin.
void chooseOffscreen(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--offscreen") != 0) continue;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_QUICK_BACKEND", "software");
    }
}

bool asksForText(int argc, char** argv) {
    return std::any_of(argv + 1, argv + argc, [](const char* argument) {
        const std::array options{"-h", "--help", "--help-all", "-v", "--version"};
        return std::any_of(options.begin(), options.end(),
                           [&](const char* o) { return std::strcmp(argument, o) == 0; });
    });
}

std::optional<QSize> sizeFromText(const QString& text) {
    const auto parts = text.split('x');
    if (parts.size() != 2) return std::nullopt;
    const QSize size{parts[0].toInt(), parts[1].toInt()};
    const bool sensible =
        size.width() >= 100 && size.width() <= 8192 && size.height() >= 100 && size.height() <= 8192;
    return sensible ? std::optional{size} : std::nullopt;
}

/// Nothing when the arguments are in order; else why they are not.
std::optional<std::string> readArguments(const QCoreApplication& application, Options& options) {
    QCommandLineParser parser;
    parser.setApplicationDescription("Live values of the tuning module, and all that can be set in it.");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("file", "A tuning profile document to import.", "[FILE]");
    CommonOptions::addTo(parser, "Make this vehicle profile document the current vehicle.");
    parser.addOptions({
        {"offscreen", "Show no window; for pictures and tests."},
        {"size", "Size of the window in pixels (1136x640).", "WIDTHxHEIGHT"},
        {"turn",
         "Show landscape screens turned in an upright window: left, right or never; auto, which is usual, "
         "turns them right where the window fills the screen, and only there.",
         "WHICH", "auto"},
        {"full-screen", "Fill the screen."},
        {"screenshot", "Save a picture of the window (PNG) and end.", "FILE"},
        {"after", "Seconds until that picture is taken (2).", "SECONDS", "2"},
        {"software", "Let the processor draw the window; so it is where OpenGL can't be used."},
        {"new-instance", "Start beside an itorv that runs; both then want the link and the store."},
        {"demo",
         "Show a drive of a truck that is not there; nothing of it is kept. With faults, the link is "
         "lost once, after two minutes.",
         "drive|faults"},
        {"open-profile", "Let the user choose the tuning profile document to import."},
        {"log-times", "Log how long the first frame and the first value took."},
    });
    auto arguments = application.arguments();
    // Without a word it is the usual drive.
    arguments.replaceInStrings(QRegularExpression{QStringLiteral("^--demo$")},
                               QStringLiteral("--demo=drive"));
    if (!parser.parse(arguments)) return parser.errorText().toStdString();
    if (parser.isSet("help")) parser.showHelp(0);
    if (parser.isSet("version")) parser.showVersion();
    const auto words = parser.positionalArguments();
    if (words.size() > 1) return "there is no argument \"" + words[1].toStdString() + "\"";
    if (!words.isEmpty()) {
        const auto url = QUrl::fromUserInput(words.first(), QDir::currentPath(), QUrl::AssumeLocalFile);
        const bool missing = url.isLocalFile() && !QFileInfo::exists(url.toLocalFile());
        if (!url.isValid() || missing) return "there is no file \"" + words.first().toStdString() + "\"";
        options.url = url.toString().toStdString();
    }
    if (auto why = options.common.read(parser, CurlURLLoader{})) return why;
    options.screenshot = parser.value("screenshot");
    options.software = parser.isSet("software");
    options.logTimes = parser.isSet("log-times");
    options.fullScreen = parser.isSet("full-screen");
    options.newInstance = parser.isSet("new-instance");
    options.openProfile = parser.isSet("open-profile");
    if (options.openProfile && options.url) return "--open-profile asks for the file, and takes none";
    if (parser.isSet("demo")) {
        options.demo = Demo::kindFromText(parser.value("demo"));
        if (!options.demo) return "--demo takes nothing, or faults";
        if (parser.isSet("module") || parser.isSet("interface"))
            return "--demo has a module of its own, and takes no --module and no --interface";
    }
    const auto turn = turnFromText(parser.value("turn"));
    if (!turn) return "--turn takes auto, left, right or never";
    options.turn = *turn;
    bool isNumber = false;
    const double seconds = parser.value("after").toDouble(&isNumber);
    if (!isNumber || !(seconds >= 0) || seconds > 86400)
        return "--after takes a number of seconds from 0 to 86400";
    options.after = std::chrono::milliseconds{static_cast<int>(seconds * 1000)};
    if (parser.isSet("size")) {
        options.size = sizeFromText(parser.value("size"));
        if (!options.size) return "--size takes a width and a height from 100 to 8192, as in 1136x640";
    }
    return std::nullopt;
}

QStringList shownValues(const std::vector<std::unique_ptr<DroppableView>>& places) {
    QStringList values;
    for (const auto& place : places) {
        if (place->gauge()) values += place->gauge()->valueView().glyphs();
    }
    return values;
}

void takeScreenshotLater(RunLoop& loop, QQuickWindow& window, const Options& options) {
    loop.scheduleTimer(options.after, false, [&loop, &window, file = options.screenshot](Timer&) {
        const bool saved = window.grabWindow().save(file, "PNG");
        if (!saved) std::fprintf(stderr, "itorv: the picture could not be saved as %s\n", qPrintable(file));
        loop.quit(saved ? 0 : screenshotFailed);
    });
}

/// The mark of a capture that goes on, or why it has ended.
void tellOfCapture(const std::string& why, iTorvViewController& page, Stage& stage) {
    stage.setMark(QStringLiteral("Capture"), why.empty());
    if (why.empty()) return;
    page.showAlert(
        std::make_shared<AlertView>("Capture ended", QString::fromStdString(why), QStringList{"OK"}));
}

}  // namespace

int main(int argc, char** argv) {
    const auto begin = StartTimes::Clock::now();
    chooseOffscreen(argc, argv);
    if (asksForText(argc, argv)) {
        const QCoreApplication application{argc, argv};
        QCoreApplication::setApplicationName("itorv");
        QCoreApplication::setApplicationVersion(ITORV_VERSION);
        Options none;
        static_cast<void>(readArguments(application, none));  // shows what is asked for, and ends
    }
    chooseOnScreenKeyboard();
    const auto application = openDisplay(argc, argv);
    if (!application) return badArguments;
    QGuiApplication::setApplicationName("itorv");
    QGuiApplication::setApplicationDisplayName("iTorv");
    QGuiApplication::setDesktopFileName("itorv");
    QGuiApplication::setApplicationVersion(ITORV_VERSION);
    Options options;
    if (const auto why = readArguments(*application, options)) return refuse(*why);

    QCoreApplication::sendPostedEvents();  // the VNC platform begins to listen with its first event
    if (QGuiApplication::platformName() == "vnc" && !keepListenersOnLoopback()) {
        return refuse("the window can't be served by VNC on the loopback interface; is the port taken?");
    }
    startSystemLog("itorv", LogTerminal::yes);
    if (options.openProfile) {
        const auto chosen = DesktopFileChooser::choose(QStringLiteral("Open a tuning profile"));
        if (!chosen.error.empty()) return refuse(chosen.error);
        if (!chosen.file) return 0;
        options.url = QUrl::fromLocalFile(*chosen.file).toString().toStdString();
    }
    std::unique_ptr<Demo> demo;
    if (options.demo) {
        demo = std::make_unique<Demo>(*options.demo);
        if (const auto why = demo->start()) return refuse(*why);
        options.common.connection.module = demo->module();
    }
    SingleInstance instance{StandardResources{}.documentsDirectory()};
    if (!options.newInstance && !demo) {
        std::string why;
        const auto claim = instance.claim(options.url.has_value(), why);
        if (claim == SingleInstance::Claim::cameForward && !options.common.capture.empty())
            return refuse("an itorv runs already, and captures nothing of this; end it first");
        if (claim == SingleInstance::Claim::cameForward) return 0;
        if (claim == SingleInstance::Claim::refused) return refuse(why);
    }
    RealPlatform platform;
    Platform::install(&platform);
    const QuitSignals signals_{[&] { platform.runLoop().quit(); }};
    QObject::connect(application.get(), &QGuiApplication::lastWindowClosed,
                     [&] { platform.runLoop().quit(); });

    if (demo) Demo::prepare(platform.userDefaults());
    if (!options.common.profile.empty()) {
        std::string error;
        const auto vehicle = vehicleFromFile(options.common.profile, error);
        if (!vehicle) return refuse(error);
        VehicleDataSource::setCurrentVehicle(*vehicle);
        VehicleDataSource::saveVehicle(*vehicle);
    }

    for (const auto* picture :
         {"BG_BASE", "BG_CENTER", "BG_SELECTOR", "BTN_GEAR", "NEEDLE_LARGE", "NEEDLE_SMALL"}) {
        if (!imageNamed(picture))
            logLine("the picture " + std::string{picture} + " of the application is missing");
    }
    chooseRenderer(options.software);
    const auto control = std::make_shared<iTorvAppDelegate>();
    const MemoryPressure pressure{[&] { control->applicationDidReceiveMemoryWarning(); }};
    std::unique_ptr<ConnectionStatus> status;
    std::shared_ptr<iTorvViewController> firstPage;
    std::unique_ptr<Stage> stage;
    std::unique_ptr<MainWindow> mainWindow;
    std::shared_ptr<CaptureWriter> capture;
    std::string captureEnded;  // why; empty while it goes on
    if (!options.common.capture.empty()) {
        std::string error;
        const auto ended = [&](const std::string& why) {
            logLine(why);
            captureEnded = why;
            if (firstPage && stage) tellOfCapture(why, *firstPage, *stage);
        };
        capture = CaptureWriter::begin(options.common.capture, ended, error);
        if (!capture) return refuse(error);
    }
    control->applicationDidFinishLaunchingWithOptions(
        {.connection = options.common.connection, .url = options.url, .capture = capture},
        [&](const auto& whenShown) {
            status = std::make_unique<ConnectionStatus>(control->feeder());
            mainWindow = std::make_unique<MainWindow>();
            mainWindow->whenPainted([&, whenShown] {
                firstPage = Screens{control}.firstPage();
                stage = Screens{control}.stage(firstPage, status.get());
                if (demo) stage->setMark(QStringLiteral("Demo"), true);
                if (capture) tellOfCapture(captureEnded, *firstPage, *stage);
                mainWindow->show(*stage);
                whenShown();
                Screens{control}.presentFirst(*firstPage);
            });
        });
    auto* window = mainWindow->window();
    if (!window) return refuse("the window could not be made");
    QObject::connect(window, &QQuickWindow::sceneGraphError, window, [&](auto, const QString& why) {
        std::fprintf(stderr, "itorv: the window can't be drawn; --software may help: %s\n", qPrintable(why));
        platform.runLoop().quit(cannotDraw);
    });
    instance.serve({.comeForward =
                        [window](const QByteArray& token) {
                            // Read by Qt as it asks a Wayland compositor.
                            if (!token.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", token);
                            window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
                            window->raise();
                            window->requestActivate();
                        },
                    .mayEnd = [&](const auto& answer) { Screens{control}.askToEnd(firstPage.get(), answer); },
                    .end = [&] { platform.runLoop().quit(); }});
    if (options.size) window->resize(*options.size);
    if (options.fullScreen) window->showFullScreen();
    mainWindow->setTurn(options.turn);
    std::optional<StartTimes> times;
    if (options.logTimes) {
        times.emplace(begin, *window, control->feeder(),
                      [&] { return firstPage ? shownValues(firstPage->droppableViews()) : QStringList{}; });
    }
    if (!options.screenshot.isEmpty()) takeScreenshotLater(platform.runLoop(), *window, options);
    const int code = QGuiApplication::exec();
    control->applicationWillTerminate();
    return code;
}
