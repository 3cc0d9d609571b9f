// What a long table costs, with the software renderer: its opening, its scrolling, and what is left of it.
#include <unistd.h>

#include <QGuiApplication>
#include <QQuickItem>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <initializer_list>

#include "fakes/Application.h"
#include "screens/NavigationController.h"
#include "screens/TableViewController.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int rows = 300;
constexpr int settingsRow = 1;
constexpr auto measured = 3s;

enum Row { driveTrain, turboTimer, gear, plain };

/// A profile of that many settings, of all kinds of rows.
std::string profileText() {
    std::string settings = R"(
        {"aid": 226, "name": "Drive Train", "unit": "INCHES", "formatter": 8, "minValue": 20, "maxValue": 40,
         "options": ["Automatic", "Manual"], "optionValues": [3, 5], "options1": ["3.31", "4.10"],
         "optionValues1": [0, 1]},
        {"aid": 152, "name": "Turbo Timer", "unit": "SEC", "formatter": 7, "toggable": true, "minValue": 30,
         "maxValue": 600, "options": ["Time", "Heat"], "additionalUnit": "DEGF", "additionalMinValue": 300,
         "additionalMaxValue": 700},
        {"aid": 91, "name": "Gear", "unit": "RPM", "formatter": 5, "maxValue": 100,
         "options": ["Off", "On", "Tow"]})";
    for (int i = plain; i < rows; ++i) {
        settings += R"(,{"aid": )" + std::to_string(92 + i % 60) + R"(, "name": "Setting )" +
                    std::to_string(i) + R"(", "unit": "RPM", "formatter": )" +
                    (i % 2 == 0 ? "0" : R"(6, "toggable": true)") +
                    R"(, "multiplyFactor": 1, "minValue": 0, "maxValue": 9000})";
    }
    return R"({"vehicle": "Many Settings", "version": "1.0", "parameters": {"settings": [)" + settings +
           "]}}";
}

double residentMegabytes() {
    std::size_t size = 0;
    std::size_t resident = 0;
    std::ifstream{"/proc/self/statm"} >> size >> resident;
    return static_cast<double>(resident * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))) / 1e6;
}

QQuickItem* itemWith(const char* property, QQuickItem& root) {
    if (root.property(property).isValid()) return &root;
    for (auto* child : root.childItems()) {
        if (auto* found = itemWith(property, *child)) return found;
    }
    return nullptr;
}

int measure(const QString& folder) {
    const auto profile = folder.toStdString() + "/many.json";
    std::ofstream{profile} << profileText();
    bench::Bench module{{.rate = 200, .profile = ITORV_RESOURCE_DIR "/vehicle.json"}};
    if (module.start()) return std::fputs("the bench does not start\n", stderr), 1;
    fakes::Application app{module, profile, [](UserDefaults& defaults) {
                               // Stored already: nothing is to be written to the module.
                               defaults.setObjectForKey(archivedProfileDictionary({}),
                                                        "SETTINGS_Many Settings");
                           }};
    if (!app.view() || !app.waitUntilReady()) return std::fputs("there is no connection\n", stderr), 1;
    const auto menu = std::make_shared<NavigationController>(Screens{app.control}.mainMenu());
    app.page()->presentModalViewControllerAnimated(menu, false);
    app.runFor(1s);
    auto& table = *qobject_cast<TableViewController*>(menu->topViewController());
    int frames = 0;
    QObject::connect(app.view(), &QQuickWindow::frameSwapped, app.view(), [&] { ++frames; });
    /// Milliseconds to the first frame of the screen that the touch opens.
    const auto open = [&](const std::function<void()>& touch) {
        const auto depth = menu->depth();
        const auto begin = Clock::now();
        touch();
        app.waitUntil([&] { return menu->depth() > depth; });
        frames = 0;
        app.waitUntil([&] { return frames > 0; });
        const std::chrono::duration<double, std::milli> opening = Clock::now() - begin;
        return opening.count();
    };
    const auto openRow = [&](int row) { return open([&] { table.touchRow(0, row); }); };
    const auto close = [&] {
        while (auto* const alert = app.stage->alert()) {  // there is no way to the internet
            alert->touchButton(0);
            app.runFor(20ms);
        }
        const auto depth = menu->depth();
        menu->touchBack();
        app.waitUntil([&] { return menu->depth() < depth; });
        app.runFor(20ms);
    };
    /// Opens each screen that the settings lead to; the longest that one took.
    const auto openOthers = [&] {
        auto& settings = *qobject_cast<TableViewController*>(menu->topViewController());
        double longest = 0;
        for (const auto& touch : std::initializer_list<std::function<void()>>{
                 [&] { settings.touchRow(0, driveTrain); }, [&] { settings.touchRow(0, plain); },
                 [&] { settings.touchAccessory(0, turboTimer); }}) {
            longest = std::max(longest, open(touch));
            close();
        }
        return longest;
    };
    const auto tell = [](const char* what, double opening) {
        std::printf("%-52s %7.1f ms               limit 100\n", what, opening);
    };
    tell("a table of 300 rows opens, to its first frame", openRow(settingsRow));
    tell("drive train, value, or choice, the longest", openOthers());

    app.runFor(1s);
    auto* const list = itemWith("contentY", *app.view()->contentItem());
    if (!list) return std::fputs("there is no list\n", stderr), 1;
    const auto scroll = QObject::connect(app.view(), &QQuickWindow::frameSwapped, list, [&] {
        constexpr double step = 37;  // pixels
        const double end = list->property("contentHeight").toDouble() - list->height();
        list->setProperty("contentY", std::fmod(list->property("contentY").toDouble() + step, end));
    });
    frames = 0;
    app.view()->update();
    app.runFor(measured);
    QObject::disconnect(scroll);
    std::printf("%-52s %7.1f frames/s         limit 60\n", "it is scrolled, 1136 x 640",
                frames / std::chrono::duration<double>{measured}.count());
    close();

    double before = 0;
    constexpr int settled = 10;
    constexpr int rounds = 50;
    for (int round = 0; round < settled + rounds; ++round) {
        if (round == settled) before = residentMegabytes();
        for (int row = 0; row < table.numberOfRowsInSection(0); ++row) {
            openRow(row);
            if (row == settingsRow) openOthers();
            close();
        }
    }
    std::printf("%-52s %7.2f times (%.0f MB)   level\n",
                "memory after fifty openings of each screen, beside that before",
                residentMegabytes() / before, before);
    menu->dismissModalViewControllerAnimated(false);
    app.runFor(100ms);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    const QGuiApplication application{argc, argv};
    return measure(home.path());
}
