// The programs as a person runs them, bad arguments first.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "Programs.h"
#include "platform/StoredKeys.h"
#include "platform/real/SqliteUserDefaults.h"
#include "vehicles/SettingValueStore.h"

namespace {

using namespace programs;

TEST(Programs, BadArgumentsGetOneLineAndTheCodeTwo) {
    const QTemporaryDir folder;
    const auto file = [&](const char* name, const std::string& text) {
        const auto path = folder.filePath(name);
        std::ofstream{path.toStdString()} << text;
        return path;
    };
    const auto broken = file("broken.json", "{\n  \"vehicle\": 01\n}");
    const auto list = file("list.json", "[]");
    const auto deep = file("deep.json", std::string(600, '['));
    const auto pipe = folder.filePath("pipe");
    ASSERT_EQ(mkfifo(pipe.toUtf8().constData(), 0600), 0);
    const std::vector<std::pair<QString, QStringList>> rows{
        {"itorvctl", {}},
        {"itorvctl", {"fly"}},
        {"itorvctl", {"get"}},
        {"itorvctl", {"get", "255"}},
        {"itorvctl", {"get", "-1"}},
        {"itorvctl", {"get", "x"}},
        {"itorvctl", {"set", "95", "fast"}},
        {"itorvctl", {"set", "95", "99999"}},
        {"itorvctl", {"set", "95", "-5"}},
        {"itorvctl", {"set", "4", "3"}},
        {"itorvctl", {"set", "2", "3"}},
        {"itorvctl", {"set", "78", "700"}},
        {"itorvctl", {"set", "4", "3", "--force"}},
        {"itorvctl", {"set", "0", "3", "--force"}},
        {"itorvctl", {"set", "78", "700", "--force", "--store"}},
        {"itorvctl", {"set", "42", "100", "--store"}},
        {"itorvctl", {"get", "42", "--store"}},
        {"itorvctl", {"defaults", "--json"}},
        {"itorvctl", {"codes", "P0123"}},
        {"itorvctl", {"codes", "--yes"}},
        {"itorvctl", {"codes", "clear"}},
        {"itorvctl", {"watch", "--interface", "nowhere"}},
        {"itorvctl", {"watch", "--module", "127.0.0.1:70000"}},
        {"itorvctl", {"watch", "--module", "nowhere"}},
        {"itorvctl", {"watch", "--timeout", "soon"}},
        {"itorvctl", {"watch", "--profile", "/no such file"}},
        {"itorvctl", {"watch", "--profile", "/"}},
        {"itorvctl", {"watch", "--profile", list}},
        {"itorvctl", {"watch", "--profile", pipe}},
        {"itorvctl", {"watch", "--profile", deep}},
        {"itorvctl", {"--sing"}},
        {"itorv", {"--offscreen", "--module", "1.2.3.4:0"}},
        {"itorv", {"--offscreen", "--after", "never"}},
        {"itorv", {"--offscreen", "--interface", "nowhere"}},
        {"itorv", {"--offscreen", "--size", "0x0"}},
        {"itorv", {"--offscreen", "--profile", broken}},
        {"itorv", {"--offscreen", "what", "else"}},
        {"itorv-bench", {"--port", "65536"}},
        {"itorv-bench", {"--port", "0", "--fault", "stuck:255"}},
    };
    for (const auto& [program, arguments] : rows) {
        SCOPED_TRACE((program + " " + arguments.join(' ')).toStdString());
        const auto result = run(program, arguments);
        EXPECT_EQ(result.code, 2);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    const auto named = run("itorvctl", {"watch", "--profile", broken}).error;
    EXPECT_NE(named.find("broken.json: line 2, column"), std::string::npos) << named;
    EXPECT_NE(named.find("Leading 0 disallowed in number"), std::string::npos) << named;
}

TEST(Programs, WithoutADisplayItorvSaysSoAndWithoutOpenGLItGoesOn) {
    const QTemporaryDir folder;
    const auto start = [&](const QStringList& variables, const QStringList& arguments) {
        const QStringList none{"QT_QPA_PLATFORM=", "DISPLAY=", "WAYLAND_DISPLAY=", "QT_QUICK_BACKEND=",
                               "XDG_RUNTIME_DIR=" + folder.path()};
        return run("itorv", arguments, folder.path(), none + variables);
    };
    const std::pair<QString, const char*> rows[]{
        {"DISPLAY=", "itorv: there is no display; "},
        {"WAYLAND_DISPLAY=nobody", "itorv: no display can be used with WAYLAND_DISPLAY=nobody ("},
        {"QT_QPA_PLATFORM=nonsense", "itorv: no display can be used with QT_QPA_PLATFORM=nonsense ("},
    };
    for (const auto& [variable, sentence] : rows) {
        const auto result = start({variable}, {});
        EXPECT_EQ(result.code, 2) << result.error;
        EXPECT_TRUE(result.error.starts_with(sentence)) << result.error;
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    const auto file = folder.filePath("picture.png");
    for (const bool software : {false, true}) {
        QFile::remove(file);
        const auto result =
            start({"QT_QPA_PLATFORM=offscreen"},
                  QStringList{"--screenshot", file, "--after", "0"} + QStringList(software, "--software"));
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_EQ(result.error.find("OpenGL can't be used here") == std::string::npos, software);
        EXPECT_FALSE(QImage{file}.isNull());
    }
}

TEST(Programs, VehiclesAreListedUpdatedAndUsed) {
    const QTemporaryDir home;
    const QTemporaryDir served;
    QProcess server;
    server.start("python3", {ITORV_RESOURCE_DIR "/../tests/vehicles/server.py", served.path()});
    while (!server.canReadLine() && server.waitForReadyRead(30000)) {
    }
    const QString address = "http://127.0.0.1:" + server.readLine().trimmed();
    QFile::copy(ITORV_RESOURCE_DIR "/profiles/diesel-van.json", served.filePath("van.json"));
    ASSERT_EQ(run("itorv-profiles", {served.path(), "--base-url", address + "/itorvv2"}).error, "");
    const QString van = "Diesel Van 2.8L";
    const QString silent = "http://127.0.0.1:1";
    const struct {
        QStringList words;
        QString home;
        int code;
        const char* output;  ///< is somewhere in it, or in the one line of the error
    } rows[]{
        {{"vehicles"}, home.path(), 0, "remote    Diesel Van 2.8L  version 1.0  not downloaded"},
        {{"vehicles", "--json"},
         home.path(),
         0,
         R"({"place":"remote","name":"Diesel Van 2.8L","version":"1)"},
        {{"vehicles", "--update-server", silent}, home.path(), 4, "could not be asked"},
        {{"vehicles", "update", van, "--update-server", silent}, home.path(), 4, "could not be asked"},
        {{"vehicles", "use", van}, home.path(), 2, "no vehicle \"Diesel Van 2.8L\" is stored"},
        {{"vehicles", "update", "Nobody"}, home.path(), 2, "there is no vehicle \"Nobody\""},
        {{"vehicles", "update", van}, "/proc/nowhere", 1, "could not be stored"},
        {{"vehicles", "update", van}, home.path(), 0, "stored    Diesel Van 2.8L  version 1.0"},
        {{"vehicles", "use", van}, home.path(), 0, "is the current vehicle"},
        {{"vehicles"}, home.path(), 0, "current   Diesel Van 2.8L"},
        {{"vehicles"}, home.path(), 0, "stored    Diesel Pickup 6.7L"},
        {{"defaults"}, home.path(), 0, "current_vehicle\nvehicles\n"},
        {{"defaults", "get", "current_vehicle"}, home.path(), 0, "iTorv vehicles 1\n{\"name\":\"Diesel Van"},
        {{"defaults", "get", "nothing"}, home.path(), 2, "nothing is stored under \"nothing\""},
        {{"defaults", "set", "speed", "-5"}, home.path(), 0, ""},
        {{"defaults", "get", "speed"}, home.path(), 0, "-5\n"},
        {{"defaults"}, "/proc/nowhere", 1, "what is stored can't be read"},
        {{"defaults", "get", "speed"}, "/proc/nowhere", 1, "what is stored under \"speed\" can't be read"},
        {{"defaults", "set", "way unreadable 1", "5"}, home.path(), 0, ""},
        {{"defaults", "get", "way"}, home.path(), 1, "can't be read"},
        {{"vehicles", "--update-server", "http://"}, home.path(), 2, "takes an address"},
    };
    for (const auto& [words, data, code, output] : rows) {
        SCOPED_TRACE(words.join(' ').toStdString());
        const auto result = run("itorvctl", QStringList{"--update-server", address} + words, data);
        EXPECT_EQ(result.code, code);
        EXPECT_NE((code == 0 ? result.output : result.error).find(output), std::string::npos)
            << result.output << result.error;
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), code == 0 ? 0 : 1);
    }
    server.closeWriteChannel();
    EXPECT_TRUE(server.waitForFinished(30000));
}

TEST_F(ProgramsWithModule, GetSetWatchAndFrames) {
    const auto set = run("itorvctl", {"set", "95", "3200", "--module", address});
    EXPECT_EQ(set.code, 0);
    EXPECT_EQ(set.output, "Shift Light set to 3200 RPM: acknowledged\n");
    EXPECT_EQ(run("itorvctl", {"get", "95", "--module", address}).output, "Shift Light: 3200 RPM\n");
    const auto object =
        QJsonDocument::fromJson(run("itorvctl", {"get", "95", "--json", "--module", address}).output.c_str())
            .object();
    EXPECT_EQ(object["aid"].toInt(), 95);
    EXPECT_EQ(object["raw"].toString(), "800c0000");
    EXPECT_EQ(object["unit"].toString(), "RPM");

    const auto watch = run("itorvctl", {"watch", "--json", "--for", "1", "--module", address});
    EXPECT_EQ(watch.code, 0);
    std::istringstream lines{watch.output};
    std::set<int> seen;
    for (std::string line; std::getline(lines, line);) {
        const auto update = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        for (const auto* key : {"aid", "name", "raw", "value", "unit", "warning", "ms"}) {
            ASSERT_TRUE(update.contains(key)) << line;
        }
        seen.insert(update["aid"].toInt());
    }
    EXPECT_EQ(seen.size(), 41U);

    const auto frames = run("itorvctl", {"frames", "--for", "1", "--module", address});
    EXPECT_NE(frames.output.find("push A"), std::string::npos);
    EXPECT_NE(frames.output.find("complete"), std::string::npos);

    module->setFault(bench::Fault::dropResponse, {.probability = 1});
    const auto unread = run("itorvctl", {"set", "226", "32", "--module", address});
    EXPECT_EQ(unread.code, 1);  // codes that it could not read would be lost
    module->clearFaults();
    EXPECT_EQ(module->value(226)[1], 0);
    module->setFault(bench::Fault::dropAck, {.probability = 1});
    EXPECT_EQ(run("itorvctl", {"set", "95", "3300", "--module", address}).code, 1);
    module->setFault(bench::Fault::mute, {.probability = 1});
    module->dropConnections();
    const auto mute = run("itorvctl", {"get", "95", "--timeout", "0.5", "--module", address});
    EXPECT_EQ(mute.code, 3);
    EXPECT_NE(mute.error.find("answers, and sends no values"), std::string::npos) << mute.error;
    module->stop();
    const auto refused = run("itorvctl", {"get", "95", "--timeout", "0.5", "--module", address});
    EXPECT_EQ(refused.code, 3);
    EXPECT_NE(refused.error.find("refuses the connection"), std::string::npos) << refused.error;
}

TEST(Programs, ADemoLeavesTheUsersStoresAlone) {
    const QTemporaryDir home;
    const auto picture = home.filePath("demo.png");
    const QTemporaryDir stores;
    const auto shown =
        run("itorv", {"--demo", "--offscreen", "--screenshot", picture, "--after", "2"}, stores.path());
    EXPECT_EQ(shown.code, 0) << shown.error;
    EXPECT_TRUE(std::filesystem::exists(picture.toStdString()));
    EXPECT_TRUE(std::filesystem::is_empty(stores.path().toStdString()));
    EXPECT_EQ(run("itorv", {"--demo=storm", "--offscreen"}).code, 2);
    EXPECT_EQ(run("itorv", {"--demo", "--module", "127.0.0.1:1", "--offscreen"}).code, 2);
}

TEST_F(ProgramsWithModule, CodesAreReadAndCleared) {
    module->setTroubleCodes({"P0299", "U0158", "P1234"});
    const QStringList read{"codes", "--module", address};
    const auto lines = run("itorvctl", read);
    EXPECT_EQ(lines.code, 0) << lines.error;
    EXPECT_EQ(lines.output,
              "P0299 - Turbocharger or supercharger A: underboost\nU0158 - Head-up display: no "
              "communication\nP1234 - No Info\n");
    const auto object = run("itorvctl", read + QStringList{"--json"}).output;
    EXPECT_EQ(object.find(R"({"code":"P0299","text":"Turbo)"), 0U) << object;
    const QStringList clear{"codes", "clear", "--yes", "--module", address};
    module->setValue(26, {0});
    EXPECT_EQ(run("itorvctl", clear).code, 1);
    module->setValue(26, {1});
    // The module tells it once, and a program that falls behind on a busy machine may lose a frame.
    auto cleared = run("itorvctl", clear);
    for (int again = 0; again < 2 && cleared.code != 0; ++again)
        cleared = run("itorvctl", clear);
    EXPECT_EQ(cleared.output, "The trouble codes are cleared.\n");
    EXPECT_EQ(run("itorvctl", read).output, "The module reports no trouble codes.\n");
    module->setTroubleCodes(std::vector<std::string>(13, "P0299"));
    const auto cut = run("itorvctl", read);
    EXPECT_EQ(cut.code, 1);
    EXPECT_NE(cut.error.find("13 codes, and 2 of them"), std::string::npos) << cut.error;
}

TEST_F(ProgramsWithModule, SetSaysWhatBecomesOfItAndStoresWhatItIsTold) {
    const QTemporaryDir home;
    const auto file = home.path() + "/itorv/defaults.sqlite";
    const auto set = [&](const QStringList& words) {
        const auto result = run("itorvctl", QStringList{"set", "--module", address} + words, home.path());
        EXPECT_EQ(result.code, 0) << result.error;
        return result;
    };
    const auto cut = set({"95", "3250.5"});
    EXPECT_EQ(cut.output, "Shift Light set to 3250 RPM (cut from 3250.5): acknowledged\n");
    EXPECT_NE(cut.error.find("nothing is stored for this vehicle"), std::string::npos) << cut.error;
    EXPECT_EQ(set({"95", "3300", "--store"}).error, "");
    EXPECT_EQ(set({"95", "3300"}).error, "");
    EXPECT_NE(set({"95", "3400"}).error.find("another value is stored"), std::string::npos);
    const auto item = set({"42", "110", "--json"});
    EXPECT_NE(item.error.find("back to its own value"), std::string::npos) << item.error;
    EXPECT_EQ(QJsonDocument::fromJson(item.output.c_str())["value"].toString(), "110");
    EXPECT_EQ(set({"78", "700", "--force"}).error, "");
    {
        torv::SqliteUserDefaults store{file.toStdString()};
        const torv::ProfileDictionary values{{42, torv::AV::forAID(42, bench::Bytes{120})}};
        store.setObjectForKey("Tow", torv::activeProfileKey);
        store.setObjectForKey(torv::archivedProfileDictionary(values), "Tow");
    }
    EXPECT_NE(set({"42", "110"}).error.find("another value is stored"), std::string::npos);
    EXPECT_EQ(set({"42", "110", "--store"}).error, "");
    EXPECT_EQ(set({"43", "90", "--store"}).error, "");
    set({"42", "130"});
    const QTemporaryDir pictures;
    run("itorv",
        {"--offscreen", "--screenshot", pictures.filePath("x.png"), "--after", "2", "--module", address},
        home.path());
    EXPECT_EQ(module->value(95), (bench::Bytes{3300 % 256, 3300 / 256}));
    EXPECT_EQ(module->value(42), bench::Bytes{110});
}

TEST_F(ProgramsWithModule, SettingsAndWarningsChangeAsOnTheirScreens) {
    const QTemporaryDir home;
    const auto ctl = [&](QStringList arguments) {
        return run("itorvctl", arguments + QStringList{"--module", address}, home.path());
    };
    EXPECT_EQ(ctl({"settings", "set", "turbo timer", "on"}).code, 2);  // nothing is stored yet
    {
        torv::SqliteUserDefaults store{home.path().toStdString() + "/itorv/defaults.sqlite"};
        const torv::ProfileDictionary values{{152, torv::AV::forAID(152, std::vector<std::uint8_t>{0, 45})},
                                             {226, torv::AV::forAID(226, std::vector<std::uint8_t>{6})}};
        store.setObjectForKey(torv::archivedProfileDictionary(values), "SETTINGS_Diesel Pickup 6.7L");
        ASSERT_TRUE(store.synchronize());
    }
    for (const auto& [name, value, text] : std::vector<std::tuple<QString, QString, std::string>>{
             {"turbo timer", "ON", "Turbo Timer set to 45 SEC, on, Run for a Time"},
             {"152", "run to an egt", "Turbo Timer set to 300 ºF, on, Run to an EGT"},
             {"Drive Train", "4.10", "Drive Train set to 0.0 INCHES, 6-Speed Automatic, 4.10"},
             {"Drive Train", "33.5", "Drive Train set to 33.5 INCHES, 6-Speed Automatic, 4.10"}}) {
        const auto done = ctl({"settings", "set", name, value});
        EXPECT_EQ(done.code, 0) << done.error;
        EXPECT_EQ(done.output, text + ": acknowledged, and stored\n");
    }
    for (const auto& bad : {QStringList{"152", "200"}, QStringList{"152", "often"}, QStringList{"226", "99"},
                            QStringList{"Nothing", "1"}, QStringList{"Shift Light", "3000"}})
        EXPECT_EQ(ctl(QStringList{"settings", "set"} + bad).code, 2) << bad.join(u' ').toStdString();
    module->setValue(152, {0, 77, 0});
    const auto list = ctl({"settings"});
    EXPECT_NE(list.output.find("300 ºF, on, Run to an EGT"), std::string::npos);
    EXPECT_NE(list.output.find("the module has 77 SEC, off, Run for a Time"), std::string::npos);
    EXPECT_NE(list.output.find("the same in the module"), std::string::npos);

    EXPECT_EQ(ctl({"warnings", "boost", "33"}).output, "Boost                     on   33 PSI\n");
    EXPECT_EQ(ctl({"warnings", "Boost", "off"}).code, 0);
    EXPECT_EQ(ctl({"warnings", "Boost", "off"}).output, "Boost                     off  33 PSI\n");
    EXPECT_EQ(ctl({"warnings", "Boost", "999"}).code, 2);

    const auto defaults = [&](const QStringList& arguments) {
        return run("itorvctl", QStringList{"defaults"} + arguments, home.path()).error;
    };
    EXPECT_NE(defaults({"set", "Diesel Pickup 6.7L_4_KEY", "8"}).find("from its next start on"),
              std::string::npos);
    EXPECT_EQ(defaults({"set", "Tow", "no profile"}), "");
    EXPECT_EQ(defaults({"set", "savedprofile", "Tow"}), "");
    EXPECT_EQ(defaults({}),
              "itorvctl: what is stored under \"Tow\", the active tuning profile, can't be read\n");
    EXPECT_TRUE(ctl({"settings"}).error.starts_with("itorvctl: The values of the active tuning profile"));
    for (const auto* key : {"SETTINGS_Diesel Pickup 6.7L", "SETTINGS_Another", "vehicles", "current_vehicle"})
        EXPECT_LE(defaults({"set", key, "damaged"}).size(), 100U);
    const auto told = defaults({});
    for (const auto* key : {"SETTINGS_Diesel Pickup 6.7L", "SETTINGS_Another", "vehicles", "current_vehicle"})
        EXPECT_NE(told.find("stored under \"" + std::string{key} + "\" can't be read"), std::string::npos)
            << told;
    const auto refused = ctl({"settings", "set", "152", "on"});
    EXPECT_EQ(refused.code, 2);
    EXPECT_TRUE(refused.error.starts_with("itorvctl: The chosen vehicle can't be read.")) << refused.error;
    EXPECT_NE(refused.error.find("is not known"), std::string::npos);
}

TEST_F(ProgramsWithModule, BesideAnotherHandsetItLeavesTheModuleToThat) {
    QProcess other;
    other.setStandardOutputFile(QProcess::nullDevice());
    other.start(QCoreApplication::applicationDirPath() + "/itorvctl", {"watch", "--module", address});
    const auto runs = [&] {
        const auto before = module->statistics().framesSent;
        for (int i = 0; i < 1000 && module->statistics().framesSent < before + 50; ++i)
            other.waitForFinished(10);
        return other.state() == QProcess::Running && module->statistics().framesSent >= before + 50;
    };
    ASSERT_TRUE(runs());
    const auto result = run("itorvctl", {"get", "95", "--timeout", "60", "--module", address});
    EXPECT_EQ(result.code, 3);
    EXPECT_NE(result.error.find("another handset may have it"), std::string::npos) << result.error;
    EXPECT_TRUE(runs());
    EXPECT_EQ(module->statistics().connections, 5U);  // each of the two in vain, and taken back
    other.kill();
    other.waitForFinished();
}

/// Lines say it on the other stream, a table on a terminal at each value.
TEST_F(ProgramsWithModule, WatchTellsThatTheModuleHasGone) {
    const auto command = QCoreApplication::applicationDirPath() + "/itorvctl watch --module " + address;
    const std::pair<QStringList, std::vector<const char*>> rows[]{
        {{"sh", "-c", "exec " + command}, {" RPM", " is lost; trying again\n", " is there again\n"}},
        {{"script", "-qefc", command, "/dev/null"},
         {"RPM         \033[0m", "RPM         old\033[0m", "RPM         \033[0m"}},
    };
    for (const auto& [start, words] : rows) {
        SCOPED_TRACE(start.front().toStdString());
        QProcess watch;
        watch.setProcessChannelMode(QProcess::MergedChannels);
        watch.start(start.front(), start.mid(1));
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (i == 1) module->stop();
            const auto why = i == 2 ? module->start() : std::nullopt;
            EXPECT_EQ(why.value_or(""), "");
            QByteArray said;
            for (int turn = 0; turn < 2000 && !said.contains(words[i]); ++turn) {
                watch.waitForReadyRead(10);
                said += watch.readAll();
            }
            EXPECT_TRUE(said.contains(words[i])) << words[i] << said.right(500).toStdString();
        }
        watch.terminate();
        EXPECT_TRUE(watch.waitForFinished());
    }
}

/// What can't be kept is said in one line, and the values run all the same.
TEST_F(ProgramsWithModule, WithoutAPlaceForTheStoreValuesStillRun) {
    for (const bool diskIsFull : {true, false}) {
        const QTemporaryDir folder;
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_DATA_HOME", diskIsFull ? folder.path() : "/proc/no such folder");
        process.setProcessEnvironment(environment);
        if (diskIsFull) {
            process.setChildProcessModifier([] {
                const rlimit nothing{0, 0};
                setrlimit(RLIMIT_FSIZE, &nothing);
                signal(SIGXFSZ, SIG_IGN);
            });
        }
        process.start(QCoreApplication::applicationDirPath() + "/itorvctl",
                      {"get", "4", "--verbose", "--module", address});
        ASSERT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_EQ(process.readAllStandardError().count("choices"), 1);
    }
    // Nor is a handset without its store a new one: the module keeps what it has.
    ASSERT_EQ(run("itorvctl", {"set", "95", "3200", "--module", address}).code, 0);
    run("itorv",
        {"--offscreen", "--screenshot", QTemporaryDir{}.filePath("x.png"), "--after", "1.5", "--module",
         address},
        "/proc/no such folder");
    EXPECT_EQ(module->value(95)[0] + module->value(95)[1] * 256, 3200);
}

/// Moments by what the module has sent; without acks, in the midst of an exchange.
TEST_F(ProgramsWithModule, ASignalEndsTheWindowAtAnyMoment) {
    for (const auto frames : {0U, 1U, 3U, 4U, 20U, 100U, 300U}) {
        for (const double lost : {0, 1}) {
            SCOPED_TRACE(std::to_string(frames) + (lost > 0 ? " without acks" : ""));
            module->setFault(bench::Fault::dropAck, {.probability = lost});
            const QTemporaryDir home;
            qputenv("XDG_DATA_HOME", home.path().toUtf8());
            const auto before = module->statistics().framesSent;
            QProcess process;
            process.start(QCoreApplication::applicationDirPath() + "/itorv",
                          {"--offscreen", "--module", address});
            for (int i = 0; i < 6000 && module->statistics().framesSent < before + frames; ++i)
                process.waitForFinished(5);
            ASSERT_TRUE(process.waitForStarted());
            process.terminate();
            ASSERT_TRUE(process.waitForFinished(20000));
            // Before it listens to signals, this one ends it as any other program.
            const bool early = frames == 0 && process.exitStatus() == QProcess::CrashExit;
            EXPECT_EQ(process.exitCode(), early ? SIGTERM : 0)
                << process.readAllStandardError().toStdString();
        }
    }
}

TEST_F(ProgramsWithModule, TheWindowTakesItsPictureAndEnds) {
    const QTemporaryDir folder;
    const auto file = folder.filePath("picture.png");
    // On a machine that is busy with its disk the first value takes a while.
    Result result;
    for (const auto* after : {"3", "20"}) {
        result = run("itorv", {"--offscreen", "--log-times", "--size", "640x360", "--screenshot", file,
                               "--after", after, "--module", address});
        if (result.error.find("first value after ") != std::string::npos) break;
    }
    EXPECT_EQ(result.code, 0) << result.error;
    const auto frame = result.error.find("first frame after ");
    EXPECT_LT(frame, result.error.find("first value after ")) << result.error;
    EXPECT_NE(result.error.find("first value after "), std::string::npos) << result.error;
    EXPECT_EQ(QImage{file}.size(), (QSize{640, 360}));
    EXPECT_EQ(run("itorv", {"--offscreen", "--screenshot", "/no/such/folder/x.png", "--after", "0",
                            "--module", address})
                  .code,
              1);
}

}  // namespace
