// The update server as it is in the field: itorv-profiles makes the folder, a web server serves it, well or
// badly, and the real loader fetches from it.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "fakes/FakePlatform.h"
#include "platform/Reachability.h"
#include "platform/real/CurlURLLoader.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;
namespace fs = std::filesystem;

constexpr int longest = 30000;  // ms, for a program to start or end

/// The tests with itorv-profiles.
class WithPrograms : public testing::Test {
protected:
    void SetUp() override {
        if (qEnvironmentVariableIsSet("ITORV_EMULATED")) {
            GTEST_SKIP() << "an emulated program can start no other of its kind";
        }
    }
};
using UpdateServer = WithPrograms;
using ProfilesTool = WithPrograms;

/// What it says on standard error, behind its exit code.
std::string profiles(const QStringList& arguments) {
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + "/itorv-profiles", arguments);
    EXPECT_TRUE(process.waitForFinished(longest));
    return std::to_string(process.exitCode()) + ' ' + process.readAllStandardError().toStdString();
}

TEST_F(UpdateServer, LeavesTheVehiclesUsableWhateverItAnswers) {
    qputenv("no_proxy", "*");
    const QTemporaryDir folder;
    for (const auto& file : fs::directory_iterator{fs::path{ITORV_RESOURCE_DIR} / "profiles"})
        fs::copy(file.path(), folder.path().toStdString());
    EXPECT_EQ(profiles({folder.path(), "--base-url", "http://host"}), "0 ");
    QProcess server;
    server.start("python3", {ITORV_RESOURCE_DIR "/../tests/vehicles/server.py", folder.path()});
    while (!server.canReadLine() && server.waitForReadyRead(longest)) {
    }
    const auto base = "http://127.0.0.1:" + server.readLine().trimmed().toStdString();

    fakes::FakePlatform platform;
    platform.network.flags = Reachability::reachable;
    static_cast<void>(VehicleDataSource::storedVehicles());
    const auto before = platform.defaults.entries;
    CurlURLLoader loader{{.time = std::chrono::seconds{2}, .bytes = 1U << 20U}};
    const struct {
        std::string path;
        std::size_t vehicles;
        const char* log;
    } rows[]{
        {"/slow", 1, "timed out"},
        {"/cut", 1, "could not be fetched: transfer closed"},
        {"/404", 1, "answered with the status 404"},
        {"/500", 1, "answered with the status 500"},
        {"/round", 1, "could not be fetched: "},
        {"/endless", 1, "larger than 1 MiB"},
        {"/passwd", 1, "could not be fetched: Protocol \"file\""},
        {"/latin", 1, "is not UTF-8"},
        {"/itorvv2/update.json", 3, ""},
    };
    for (const auto& [path, vehicles, log] : rows) {
        SCOPED_TRACE(path);
        platform.log.assign(1, "");
        platform.loader.replies.push_back(loader.load(base + path));
        EXPECT_EQ(VehicleDataSource::vehicles().size(), vehicles);
        EXPECT_NE(platform.log.back().find(log), std::string::npos) << platform.log.back();
        EXPECT_EQ(platform.defaults.entries == before, vehicles == 1);
    }
    server.closeWriteChannel();
    EXPECT_TRUE(server.waitForFinished(longest));
}

TEST(URLLoader, TakesWebAddressesAndNothingElse) {
    const CurlURLLoader loader;
    for (const auto* good : {"https://host", "http://host:8080/folder", "http://[::1]:80", "http://[::1]"})
        EXPECT_TRUE(loader.accepts(good)) << good;
    for (const auto* bad : {"", "host", "ftp://host", "http://", "http://:80", "http://a b",
                            "http://host:99999", "http://host:x", "file:///etc/passwd", "httpx://host"})
        EXPECT_FALSE(loader.accepts(bad)) << bad;
    // A setting that the library does not take, as an older one does not: nothing is fetched without it.
    const auto reply = CurlURLLoader{}.load("http://host/" + std::string(9U << 20U, 'a'));
    EXPECT_FALSE(reply.body);
    EXPECT_NE(reply.error.find("bad argument"), std::string::npos) << reply.error;
}

// The tool.

const std::string good =
    R"({"vehicle": "Truck", "version": "1.10", "url": "http://host/a.json", "parameters": {
 "powerLevel": {"aid": 4, "formatter": 3},
 "sensors": [
  {"aid": 12, "name": "Boost", "formatter": 0, "multiplyFactor": 0.1, "minValue": 0, "maxValue": 60, "warningRule": 1, "warningValue": 40, "minmax": "high"},
  {"aid": 13, "name": "Gear", "formatter": 2, "minValue": 0, "maxValue": 9, "category": "Box_0"}],
 "settings": [
  {"aid": 91, "name": "Brake", "formatter": 5, "options": ["Off", "On", "Auto"], "toggable": false},
  {"aid": 226, "name": "Train", "formatter": 8, "options": ["A", "B"], "optionValues": ["0", "1"], "options1": ["C"], "optionValues1": ["7"]}],
 "tuning": [{"name": "Timing", "type": "equalizer", "default": 0, "low": 0, "high": 5, "resolution": 1, "items": [
  {"aid": 60, "name": "Idle", "formatter": 0, "multiplyFactor": 1, "minValue": 0, "maxValue": 5}]}]}})";

TEST_F(ProfilesTool, NamesEachFaultAndItsPlace) {
    const struct {
        std::string part;
        std::string instead;
        std::string line;  ///< begins with this, behind the file's name
    } rows[]{
        {"\"aid\": 12, ", "", "parameters.sensors[0].aid: is missing"},
        {"\"aid\": 12", "\"aid\": 255", "parameters.sensors[0].aid: is \"255\" and must be from 1 to 254"},
        {"\"aid\": 12", "\"aid\": 60",
         "parameters.tuning[0].items[0].aid: the AID \"60\" is already at parameters.sensors[0]"},
        {"\"formatter\": 3", "\"formatter\": 11",
         "parameters.powerLevel.formatter: is \"11\" and must be from 0 to 10"},
        {"0.1", "0", "parameters.sensors[0].multiplyFactor: must be there and not 0"},
        {"\"formatter\": 2", "\"formatter\": 6",
         "parameters.sensors[1].formatter: takes 3 bytes, and AID 13 has 1 byte"},
        {"\"multiplyFactor\": 1,", "\"multiplyFactor\": 0.01,",
         "parameters.tuning[0].items[0].maxValue: is too much: AID 60 has 1 byte and carries at most 2.55"},
        {"[\"0\", \"1\"]", "[\"0\"]",
         "parameters.settings[1].optionValues: has 1 elements and options has 2"},
        {"\"tuning\": [", "\"tuning\": [7, ", "parameters.tuning[0]: must be an object"},
        {"1.10", "1", "version: is \"1\" and must be two whole numbers"},
        {"http://host/a.json", "http://host:99999/a.json", "url: is \"http://host:99999/a.json\""},
        {"http://host/a.json", "file:///etc/passwd", "url: is \"file:///etc/passwd\" and must be an address"},
        {"\"Truck\"", "\"\xE9\"", "line 1, column 14: "},
        {good, std::string(5000, '['), "line 1, column 513: Nested too deep"},
        {good, std::string(50U << 20U, ' '), "is larger than 16 MiB"},
    };
    const QTemporaryDir folder;
    const auto file = folder.filePath("a.json").toStdString();
    for (const auto& [part, instead, line] : rows) {
        SCOPED_TRACE(line);
        auto text = good;
        std::ofstream{file, std::ios::binary} << text.replace(text.find(part), part.size(), instead);
        const auto error = profiles({folder.path()});
        EXPECT_TRUE(error.starts_with("1 " + file + ": " + line)) << error;
        EXPECT_EQ(std::count(error.begin(), error.end(), '\n'), 1) << error;
        EXPECT_FALSE(fs::exists(folder.filePath("update.json").toStdString()));
    }
}

TEST_F(ProfilesTool, AcceptsEveryProfileThatShips) {
    EXPECT_EQ(profiles({ITORV_RESOURCE_DIR "/profiles", "--check"}), "0 ");
}

}  // namespace
