// Tuning profiles from a terminal, and a second start of the window.
#include <QTemporaryDir>
#include <chrono>
#include <fstream>
#include <thread>

#include "Programs.h"

namespace {

using namespace programs;

class TuningPrograms : public ProgramsWithModule {
protected:
    Result profiles(const QStringList& arguments) {
        return run("itorvctl", QStringList{"profiles"} + arguments + QStringList{"--module", address},
                   home.path());
    }
    QString document(const char* name, const char* members) {
        const auto file = home.filePath(name);
        std::ofstream{file.toStdString()} << R"({"profileName": "Tow", "vehicleName": "Diesel Pickup 6.7L", )"
                                          << members << "}";
        return file;
    }

    const QTemporaryDir home;
};

TEST_F(TuningPrograms, ProfilesAreMadePushedComparedAndHandedOn) {
    EXPECT_EQ(profiles({}).output, "  Default Profile\n");
    // What the file lacks, or holds in no form that can be taken, is what the module holds.
    EXPECT_EQ(
        profiles({"import",
                  document("tow.json", R"("settingsMap": {"42": "120", "43": 110, "44": [], "45": true})")})
            .code,
        0);
    EXPECT_EQ(profiles({"import", home.filePath("tow.json")}).code, 2) << "the name is taken";
    EXPECT_EQ(profiles({"import", home.filePath("tow.json"), "savedprofile"}).code, 2);
    EXPECT_EQ(profiles({"import", document("no.json", R"("settingsMap": 7)")}).code, 2);
    EXPECT_EQ(profiles({"import", "/no/such/file"}).code, 2);
    EXPECT_EQ(profiles({"diff", "Tow", "--live"}).output,
              "Fueling 800                   120 %             100 %\n"
              "Fueling 1200                  110 %             100 %\n");
    for (const auto& [fault, words] : std::vector<std::pair<bench::WriteFault, std::string>>{
             {bench::WriteFault::stuck, "wanted 110 %, found 100 %"},
             {bench::WriteFault::clamp, "wanted 110 %, found 100 %"},
             {bench::WriteFault::refuse, "wanted 110 %, not acknowledged, found 100 %"}}) {
        module->setWriteFault(43, fault);
        const auto pushed = profiles({"activate", "Tow"});
        EXPECT_EQ(pushed.code, 4);
        EXPECT_EQ(pushed.output, "Fueling 1200                  " + words + "\n");
    }
    const auto lines = profiles({"activate", "Tow", "--json"}).output;
    EXPECT_NE(lines.find(R"("fault":"notAcknowledged")"), std::string::npos) << lines;
    EXPECT_NE(lines.find(R"("asFoundMissing":false)"), std::string::npos) << lines;
    EXPECT_EQ(module->value(42), bench::Bytes{120});
    module->setWriteFault(43, bench::WriteFault::none);
    EXPECT_EQ(profiles({"activate", "Tow"}).code, 0);
    EXPECT_EQ(module->value(43), bench::Bytes{110});
    const auto list = profiles({}).output;
    EXPECT_NE(list.find("* Tow\n"), std::string::npos) << list;
    const auto found = list.find("  As found 20");
    ASSERT_NE(found, std::string::npos) << list;
    const auto first = QString::fromStdString(list.substr(found + 2, list.find('\n', found) - found - 2));
    EXPECT_EQ(profiles({"diff", first, "Tow", "--json"}).output.substr(0, 22), R"({"aid":42,"name":"Fuel)");
    const auto copy = home.filePath("copy.json");
    EXPECT_EQ(profiles({"export", "Tow", copy, "--json"}).output,
              R"({"name":"Tow","file":")" + copy.toStdString() + "\"}\n");
    EXPECT_EQ(profiles({"import", copy, "Tow 2", "--json"}).output,
              "{\"name\":\"Tow 2\",\"imported\":true}\n");
    EXPECT_EQ(profiles({"diff", "Tow", "Tow 2"}).output, "");
    EXPECT_EQ(profiles({"show", "Tow 2"}).output.substr(0, 36), "Fueling 800                   120 %\n");
    EXPECT_EQ(profiles({"delete", "Tow", "--json"}).output, "{\"name\":\"Tow\",\"deleted\":true}\n");
    EXPECT_EQ(profiles({"activate", "Tow"}).code, 2);
}

TEST_F(TuningPrograms, ADamagedListIsToldAndANewOneIsMadeWhereItIsWanted) {
    ASSERT_EQ(profiles({"import", document("tow.json", R"("settingsMap": {"42": "120"})")}).code, 0);
    const auto list = home.filePath("itorv/data.sqlite3").toStdString();
    ASSERT_TRUE(std::filesystem::exists(list));
    std::ofstream{list} << std::string(5000, '!');
    EXPECT_EQ(profiles({}).code, -1) << "it ends with the reason";
    for (int i = 0; i < 2; ++i) {
        const auto told = profiles({});
        EXPECT_EQ(told.code, 1);
        EXPECT_NE(told.error.find(list), std::string::npos) << told.error;
    }
    EXPECT_EQ(profiles({"show", "Tow", "--new-list"}).code, 2);
    EXPECT_EQ(profiles({"list", "--new-list"}).output, "  Default Profile\n  Tow\n");
    EXPECT_EQ(profiles({"show", "Tow"}).code, 0);
}

/// At any moment of a pass, of an import and of a delete: what was said to be saved is there.
TEST_F(TuningPrograms, KilledAtAnyMomentNothingThatWasSavedIsGone) {
    const auto file = document("tow.json", R"("settingsMap": {"42": "120"})");
    ASSERT_EQ(profiles({"import", file}).code, 0);
    const auto values = profiles({"show", "Tow"}).output;
    const auto killAfter = [&](const QStringList& arguments, int milliseconds, bool gently = false) {
        QProcess process;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_DATA_HOME", home.path());
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationDirPath() + "/itorvctl",
                      QStringList{"profiles"} + arguments + QStringList{"--module", address});
        if (!process.waitForFinished(milliseconds)) gently ? process.terminate() : process.kill();
        process.waitForFinished();
        return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    };
    bool isActive = false;
    for (int moment = 0; moment < 12; ++moment) {
        killAfter({"activate", "Tow"}, 60 + moment * 60);
        isActive = isActive || profiles({}).output.find("* Tow\n") != std::string::npos;
        isActive = killAfter({"activate", "Tow"}, 60 + moment * 60, true) || isActive;
        EXPECT_EQ(profiles({}).output.find("* Tow\n") != std::string::npos, isActive) << moment;
        EXPECT_EQ(profiles({"show", "Tow"}).output, values) << moment;
        const bool done = killAfter({"import", file, "Other"}, 40 + moment * 60);
        const bool listed = profiles({}).output.find("  Other\n") != std::string::npos;
        EXPECT_TRUE(listed || !done) << moment;
        if (listed) {
            EXPECT_EQ(profiles({"show", "Other"}).code, 0) << moment;
        }
        killAfter({"delete", "Other"}, 10 + moment * 10);
        profiles({"delete", "Other"});
    }
}

/// A window that is there once it has asked the module for something.
class TwoStarts : public TuningPrograms {
protected:
    void start(QProcess& process, const QStringList& arguments = {}) {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_DATA_HOME", home.path());
        if (!bus.isEmpty()) environment.insert("DBUS_SESSION_BUS_ADDRESS", bus);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationDirPath() + "/itorv",
                      QStringList{"--offscreen", "--module", address} + arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    bool waitForConnection(unsigned count) {
        for (int i = 0; i < 2000 && module->statistics().connections < count; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds{5});
        return module->statistics().connections >= count;
    }

    QString bus;
};

TEST_F(TwoStarts, WithoutABusTheSecondEndsWithASentenceAndAKilledOneLeavesNoLock) {
    QProcess first;
    start(first);
    ASSERT_TRUE(waitForConnection(1));
    QProcess second;
    start(second);
    ASSERT_TRUE(second.waitForFinished(20000));
    EXPECT_EQ(second.exitCode(), 2);
    EXPECT_EQ(second.readAllStandardError(),
              "itorv: itorv runs already; end it first, or use --new-instance\n");
    first.kill();
    ASSERT_TRUE(first.waitForFinished(20000));
    QProcess third;
    start(third);
    ASSERT_TRUE(waitForConnection(2));
    third.terminate();
    ASSERT_TRUE(third.waitForFinished(20000));
    EXPECT_EQ(third.exitCode(), 0);
}

TEST_F(TwoStarts, OverTheBusTheSecondBringsTheFirstForwardOrTakesOverWithAFile) {
    QProcess daemon;
    daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
    ASSERT_TRUE(daemon.waitForReadyRead(10000));
    bus = QString::fromUtf8(daemon.readLine().trimmed());
    QProcess first;
    start(first);
    ASSERT_TRUE(waitForConnection(1));
    first.waitForFinished(2500);  // the replay has ended
    QProcess second;
    start(second);
    ASSERT_TRUE(second.waitForFinished(20000));
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.state(), QProcess::Running);
    QProcess third;
    const auto picture = home.filePath("picture.png");
    start(third, {document("tow.json", R"("settingsMap": {})"), "--screenshot", picture, "--after", "2"});
    ASSERT_TRUE(first.waitForFinished(20000));
    EXPECT_EQ(first.exitCode(), 0);
    ASSERT_TRUE(third.waitForFinished(20000));
    EXPECT_EQ(third.exitCode(), 0) << third.readAllStandardError().toStdString();
    daemon.kill();
    daemon.waitForFinished();
}

}  // namespace
