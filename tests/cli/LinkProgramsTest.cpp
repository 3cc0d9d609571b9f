// What goes over the link, from the terminal: captures, checks, and the names that completion wants.
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <map>
#include <sstream>

#include "cli/Programs.h"

namespace {

using namespace programs;

/// By their "finding", or by another member.
std::map<std::string, QJsonObject> objects(const std::string& output, const char* member) {
    std::map<std::string, QJsonObject> all;
    std::istringstream lines{output};
    for (std::string line; std::getline(lines, line);) {
        const auto object = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        if (object.contains(member)) all.emplace(object[member].toVariant().toString().toStdString(), object);
    }
    return all;
}

TEST_F(ProgramsWithModule, CheckGivesAVerdictAndPutsBackWhatItTried) {
    const auto check = [this](const QStringList& more) {
        return run("itorvctl", QStringList{"check", "--json", "--for", "2", "--module", address} + more);
    };
    auto result = check({});
    // A machine that is busy with other tests may be too slow for a frame now and then, or late with an
    // answer.
    for (int again = 0; again < 8 && result.code != 0; ++again)
        result = check({});
    EXPECT_EQ(result.code, 0) << result.output;
    for (const auto& [rule, finding] : objects(result.output, "finding"))
        EXPECT_TRUE(finding["remark"].toBool()) << result.output;  // this machine may be busy
    EXPECT_TRUE(objects(result.output, "passed").contains("true"));
    EXPECT_EQ(objects(result.output, "subject").size(), 10U);
    EXPECT_EQ(objects(result.output, "subject")["Module"]["verdict"].toString(), "ok");

    const auto turning = check({"--try-writes"});
    EXPECT_EQ(turning.code, 2);
    EXPECT_NE(turning.error.find("the engine is running"), std::string::npos) << turning.error;
    const auto before = module->value(95);
    module->setWriteFault(42, bench::WriteFault::stuck);
    module->setWriteFault(55, bench::WriteFault::clamp);
    module->setWriteFault(43, bench::WriteFault::refuse);
    result = check({"--try-writes", "--force"});
    EXPECT_EQ(result.code, 5) << result.error;
    auto findings = objects(result.output, "finding");
    ASSERT_TRUE(findings.contains("not-kept")) << result.output;
    EXPECT_EQ(findings["not-kept"]["count"].toInt(), 2) << result.output;
    ASSERT_TRUE(findings.contains("missing-ack")) << result.output;
    EXPECT_EQ(findings["missing-ack"]["frame"].toString().left(4), "032b") << "a write of AID 43";
    EXPECT_TRUE(!findings.contains("not-sent-back") || findings["not-sent-back"]["remark"].toBool())
        << result.output;
    EXPECT_TRUE(objects(result.output, "passed").contains("false"));
    EXPECT_EQ(module->value(95), before);

    module->setFault(bench::Fault::refuse, {.probability = 1});
    result = run("itorvctl", {"check", "--timeout", "4", "--module", address});
    EXPECT_EQ(result.code, 3);
    EXPECT_NE(result.output.find("no  Connection    refused. "), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("finding refused: the connection is refused"), std::string::npos)
        << result.output;
    EXPECT_EQ(result.output.find("docs/link.md"), std::string::npos)
        << "no verdict on a module that is not there";
}

TEST_F(ProgramsWithModule, ACaptureIsReadBackWithTheNamesOfTheVehicle) {
    const QTemporaryDir folder;
    const auto file = folder.filePath("drive.pcapng");
    module->setFault(bench::Fault::corrupt, {.probability = 0.2});
    const auto live =
        run("itorvctl", {"frames", "--json", "--for", "1", "--module", address, "--capture", file});
    EXPECT_EQ(live.code, 0) << live.error;
    const auto kept = run("itorvctl", {"frames", "--json", file});
    EXPECT_EQ(kept.code, 0) << kept.error;
    // The same frames in the same order; the one received last is only in the file.
    std::istringstream liveLines{live.output};
    std::istringstream keptLines{kept.output};
    std::size_t same = 0;
    std::map<std::string, std::string> before;
    for (std::string line, other; std::getline(liveLines, line);) {
        const auto shown = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        if (shown["direction"].toString() != "received") continue;
        QJsonObject stored;
        do {
            ASSERT_TRUE(std::getline(keptLines, other)) << line;
            stored = QJsonDocument::fromJson(QByteArray::fromStdString(other)).object();
        } while (stored["direction"].toString() != "received");
        EXPECT_EQ(stored["bytes"], shown["bytes"]);
        EXPECT_EQ(stored["frame"], shown["frame"]);
        EXPECT_EQ(stored["result"].toString() == "4 bad CRC", shown["result"].toString() == "4 bad CRC");
        ++same;
    }
    EXPECT_GT(same, 100U);
    EXPECT_NE(kept.output.find("Engine Speed"), std::string::npos);
    EXPECT_NE(kept.output.find("\"note\":\"session up\""), std::string::npos);

    const auto refused = [&](const QStringList& arguments) { return run("itorvctl", arguments); };
    EXPECT_EQ(refused({"get", "78", "--module", address, "--capture", file}).code, 2)
        << "it is there already";
    EXPECT_EQ(refused({"vehicles", "--capture", folder.filePath("none")}).code, 2) << "there is no link";
    EXPECT_EQ(refused({"frames", folder.filePath("none")}).code, 2);
    EXPECT_EQ(refused({"frames", ITORV_RESOURCE_DIR "/vehicle.json"}).code, 2);
    EXPECT_EQ(refused({"frames", file, "--for", "1"}).code, 2);
}

TEST(Names, AreListedALineEach) {
    const QTemporaryDir home;
    const auto names = [&](const char* kind) { return run("itorvctl", {"names", kind}, home.path()).output; };
    EXPECT_NE(names("settings").find("Shift Light\n"), std::string::npos);
    EXPECT_NE(names("sensors").find("Boost\n"), std::string::npos);
    EXPECT_EQ(names("profiles"), "");
    EXPECT_EQ(run("itorvctl", {"names", "gears"}, home.path()).code, 2);
}

}  // namespace
