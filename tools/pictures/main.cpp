// Takes the documentation's pictures: the dashboards in their states, on a module on the bench.
//   itorv-pictures FOLDER [WIDTHxHEIGHT]
// Without a size they are taken in four, each in a folder of its own, for one's own eyes.
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>
#include <cstdio>

#include "Gallery.h"
#include "datalog/screens/GraphViewController.h"
#include "diagnostics/screens/GroupsViewController.h"
#include "fakes/Application.h"
#include "screens/NavigationController.h"
#include "support/Number.h"
#include "vehicles/UntakenSettings.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;

constexpr auto vehicle = "Diesel Pickup 6.7L";

void place(UserDefaults& defaults, const char* key, int aid) {
    defaults.setObjectForKey(Number::fromInteger(aid), std::string{vehicle} + key);
}

void prepare(UserDefaults& defaults) {
    struct Placement {
        const char* key;
        int aid;
    };
    for (const auto& [key, aid] :
         {Placement{"_0_KEY", 78}, {"_4_KEY", 8},      {"_3_KEY", 80},     {"_2_KEY", 7},
          {"_1_KEY", 10},          {"_0_0_2_KEY", 7},  {"_5_1_2_KEY", 14}, {"_5_2_2_KEY", 16},
          {"_5_3_2_KEY", 17},      {"_5_4_2_KEY", 10}, {"_5_5_2_KEY", 11}, {"_5_6_2_KEY", 13},
          {"_5_7_2_KEY", 12},      {"_5_8_2_KEY", 82}, {"_5_9_2_KEY", 8},  {"_6_0_3_KEY", 22},
          {"_6_1_3_KEY", 34},      {"_6_2_3_KEY", 35}, {"_6_3_3_KEY", 78}, {"_6_4_3_KEY", 81},
          {"_6_5_3_KEY", 30},      {"_6_6_3_KEY", 28}, {"_6_7_3_KEY", 20}, {"_6_8_3_KEY", 32}}) {
        place(defaults, key, aid);
    }
}

/// What the program ends with.
int take(const QString& folder, QSize size) {
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    const std::filesystem::path profile = ITORV_RESOURCE_DIR "/vehicle.json";
    bench::Bench module{{.rate = 200, .profile = profile}};
    if (const auto error = module.start()) return std::fprintf(stderr, "%s\n", error->c_str()), 1;
    fakes::Application app{module, profile, prepare, size};
    const auto save = [&](const char* name) {
        app.runFor(1500ms);
        const auto file = folder + "/" + name + ".png";
        if (!app.view()->grabWindow().save(file))
            std::fprintf(stderr, "%s can't be saved\n", qPrintable(file));
    };
    app.waitUntilReady();
    app.control->beginRecording();
    app.runFor(6s);
    save("first-page");
    // On a phone that is held upright: the page turned, and the live list as it is.
    const auto usual = app.view()->size();
    app.view()->resize(720, 1440);
    app.window->setTurn(Turn::right);
    save("phone-page");
    const auto phone = std::make_shared<NavigationController>(Screens{app.control}.mainMenu());
    app.page()->presentModalViewControllerAnimated(phone, true);
    phone->pushViewControllerAnimated(
        std::make_shared<GroupsViewController>(app.control->currentVehicle(), app.control->feeder()), false);
    save("phone-live-list");
    phone->dismissModalViewControllerAnimated(true);
    app.window->setTurn(Turn::automatic);
    app.view()->resize(usual);
    app.runFor(600ms);
    QTest::keyClick(app.view(), Qt::Key_Space);
    save("picker");
    app.drag(82, {app.page()->stageLeft() + 380, 60}, false);
    save("dragging");
    app.release({app.page()->stageLeft() + 240, 280});
    app.runFor(200ms);
    QTest::keyClick(app.view(), Qt::Key_Down);
    module.setValue(12, {5});  // oil pressure, on no gauge of this page
    module.setValue(8, {55});  // boost, on a gauge
    save("warning");
    QTest::keyClick(app.view(), Qt::Key_Right);
    save("second-page");
    QTest::keyClick(app.view(), Qt::Key_Space);
    save("second-picker");
    QTest::keyClick(app.view(), Qt::Key_Space);
    app.runFor(600ms);
    QTest::keyClick(app.view(), Qt::Key_Right);
    save("third-page");
    const auto gallery = std::make_shared<pictures::Gallery>();
    const auto stack = std::make_shared<NavigationController>(gallery);
    app.page()->presentModalViewControllerAnimated(stack, true);
    save("table");
    const auto few = gallery->names;
    for (int i = 0; i < 30; ++i)
        gallery->names.push_back(QStringLiteral("Profile %1").arg(i));
    gallery->reloadData();
    save("table-search");
    gallery->names = few;
    gallery->reloadData();
    gallery->setEditing(true);
    gallery->touchDeleteMark(pictures::Gallery::deletable, 1);
    for (int i = 0; i < 11; ++i)
        QTest::keyClick(app.view(), Qt::Key_Down);
    save("table-delete");
    gallery->setEditing(false);
    stack->showAlert(std::make_shared<AlertView>("Value out of range",
                                                 "The value you typed is out of range. Please use values "
                                                 "between 2800 and 3600.",
                                                 QStringList{"Cancel", "OK"}));
    save("alert");
    stack->alert()->touchButton(0);
    gallery->setLoading(true);
    save("loading");
    stack->dismissModalViewControllerAnimated(true);
    const Screens screens{app.control};
    screens.presentConnection(*app.stage);
    save("connection");
    app.stage->top()->dismissModalViewControllerAnimated(true);
    const auto menu = std::make_shared<NavigationController>(screens.mainMenu());
    app.page()->presentModalViewControllerAnimated(menu, true);
    save("menu");
    auto& table = *dynamic_cast<TableViewController*>(menu->topViewController());
    const auto open = [&](int row) {
        table.touchRow(0, row);
        app.runFor(600ms);
        return dynamic_cast<TableViewController*>(menu->topViewController());
    };
    const auto touch = [&](TableViewController* screen, int row, const char* name) {
        screen->touchRow(0, row);
        save(name);
        QTest::keyClick(app.view(), Qt::Key_Escape);
        app.runFor(600ms);
    };
    auto* const settings = open(1);
    save("settings");
    settings->touchRow(0, 0);
    save("drive-train");
    auto* const train = dynamic_cast<TableViewController*>(menu->topViewController());
    touch(train, 0, "drive-train-picker");
    touch(train, 2, "tire-size");
    menu->touchBack();
    app.runFor(600ms);
    touch(settings, 9, "typed-value");
    settings->touchAccessory(0, 1);
    save("picker-of-two");
    menu->touchBack();
    app.runFor(600ms);
    menu->touchBack();
    app.runFor(600ms);
    touch(open(2), 0, "typed-limit");
    save("sensor-warnings");
    menu->touchBack();
    app.runFor(600ms);
    UntakenSettings::note(app.control->currentVehicle(), app.control->currentVehicle().settings()[2].aid,
                          false);
    open(1);
    save("settings-not-taken");
    menu->touchBack();
    app.runFor(600ms);
    open(0);
    save("vehicle-setup");
    if (auto* const alert = app.stage->alert()) alert->touchButton(0);
    app.runFor(600ms);
    save("vehicle-setup-list");
    menu->touchBack();
    app.runFor(600ms);
    open(3);
    menu->topViewController()->rightBarButton()->touch();
    app.runFor(600ms);
    for (const char key : {'T', 'o', 'w', ' ', 'h', 'a', 'u', 'l'})
        QTest::keyClick(app.view(), key);
    save("profile-name");
    menu->topViewController()->rightBarButton()->touch();
    app.runFor(600ms);
    auto* const editor = dynamic_cast<TableViewController*>(menu->topViewController());
    save("profile");
    touch(editor, 0, "equalizer");
    editor->touchRow(1, 0);
    save("equalizer-timing");
    menu->touchBack();
    app.runFor(600ms);
    editor->rightBarButton()->touch();
    app.runFor(600ms);
    save("custom-tuning");
    auto* const profiles = dynamic_cast<TableViewController*>(menu->topViewController());
    profiles->touchRow(0, profiles->numberOfRowsInSection(0) - 1);
    save("activate");
    module.setWriteFault(45, bench::WriteFault::stuck);
    module.setWriteFault(60, bench::WriteFault::refuse);
    module.setValue(45, {77});
    if (auto* const alert = app.stage->alert()) alert->touchButton(1);
    app.waitUntil([&] { return menu->depth() == 3; });
    save("not-taken");
    menu->popToRootViewControllerAnimated(false);
    module.setTroubleCodes({"P0299", "P0087", "P2463", "P20EE", "P0671", "P0401", "P2563", "P1234", "U0101",
                            "P0307", "P011C", "P0480"});
    auto* const codes = open(6);
    const auto press = [&](int button) {
        if (auto* const alert = app.stage->alert()) alert->touchButton(button);
    };
    save("codes-menu");
    codes->touchRow(0, 0);
    save("codes-question");
    press(1);
    app.waitUntil([&] { return menu->depth() == 3; });
    save("codes");
    dynamic_cast<TableViewController*>(menu->topViewController())->touchRow(0, 10);
    save("codes-text");
    menu->popToRootViewControllerAnimated(false);
    auto* const again = open(6);
    module.setFault(bench::Fault::silent, {.at = 0ms, .lasts = 30s});
    again->touchRow(0, 0);
    app.runFor(300ms);
    press(1);
    save("codes-reading");
    app.waitUntil([&] { return menu->depth() == 3; }, 40s);
    save("codes-old");
    menu->touchBack();
    app.runFor(600ms);
    module.clearFaults();
    again->touchRow(0, 1);
    app.runFor(300ms);
    press(1);
    app.runFor(300ms);
    save("codes-engine");
    press(1);
    app.runFor(300ms);
    save("codes-clearing");
    app.waitUntil([&] { return app.stage->alert() != nullptr; });
    save("codes-cleared");
    press(0);
    menu->touchBack();
    app.runFor(600ms);
    auto* const log = open(4);
    save("data-log");
    app.control->recorder().end();
    app.control->beginRecording();
    log->toolbarItems().value(1).value<BarButtonItem*>()->touch();
    app.runFor(600ms);
    auto* const list = dynamic_cast<TableViewController*>(menu->topViewController());
    save("recordings");
    list->touchAccessory(0, 1);
    save("recording");
    menu->touchBack();
    app.runFor(600ms);
    list->touchRow(0, 1);
    app.runFor(600ms);
    auto* const graph = dynamic_cast<GraphViewController*>(menu->topViewController());
    graph->point(300);
    save("graph");
    for (const std::size_t sensor : {4U, 5U, 6U})
        graph->setShown(sensor, true);
    graph->zoom(200, 4);
    save("graph-six");
    graph->zoom(200, 14);
    save("graph-near");
    graph->rightBarButtons().value(1).value<BarButtonItem*>()->touch();
    save("graph-sensors");
    menu->popToRootViewControllerAnimated(false);
    menu->dismissModalViewControllerAnimated(true);
    module.stop();
    app.runFor(4s);
    save("link-lost");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application{argc, argv};
    if (argc < 2 || argv[1][0] == '-')
        return std::fprintf(stderr, "itorv-pictures FOLDER [WIDTHxHEIGHT]\n"), 2;
    const auto folder = QString::fromLocal8Bit(argv[1]);
    const auto sizeOf = [](const QString& text) {
        return QSize{text.section(u'x', 0, 0).toInt(), text.section(u'x', 1, 1).toInt()};
    };
    if (argc > 2) return take(folder, sizeOf(QString::fromLocal8Bit(argv[2])));
    for (const auto* size : {"568x320", "1024x768", "1920x1080", "640x1136"}) {
        const auto own = folder + "/" + size;
        if (!QDir{}.mkpath(own)) return std::fprintf(stderr, "%s can't be made\n", qPrintable(own)), 1;
        if (const int failed = take(own, sizeOf(size))) return failed;
    }
    return 0;
}
