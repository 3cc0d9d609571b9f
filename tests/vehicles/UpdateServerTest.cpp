// The update server as it is in the field: itorv-profiles makes the folder, a web server serves it, well or
// badly, and the real loader fetches from it.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "fakes/FakePlatform.h"
#include "platform/real/CurlURLLoader.h"
#include "support/FileContents.h"
#include "support/Reachability.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;
namespace fs = std::filesystem;

constexpr int longest = 30000;  // ms, for a program to start or end

struct Result {
    int code = -1;
    std::string output;
    std::string error;
};

Result profiles(const QStringList& arguments) {
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + "/itorv-profiles", arguments);
    EXPECT_TRUE(process.waitForFinished(longest));
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput().toStdString(), process.readAllStandardError().toStdString()};
}

class Folder {
public:
    [[nodiscard]] fs::path path() const { return m_folder.path().toStdString(); }
    [[nodiscard]] QString text() const { return m_folder.path(); }
    void write(const std::string& name, const std::string& content) const {
        std::ofstream{path() / name, std::ios::binary} << content;
    }
    void takeExamples() const {
        for (const auto& file : fs::directory_iterator{fs::path{ITORV_RESOURCE_DIR} / "profiles"})
            fs::copy(file.path(), path());
    }
    [[nodiscard]] std::string read(const std::string& name) const {
        std::string error;
        return contentsOfFile(path() / name, error).value_or(error);
    }

private:
    QTemporaryDir m_folder;
};

/// The fakes, but for the loader, which is the real one with smaller limits.
class LoopbackPlatform final : public Platform {
public:
    LoopbackPlatform() {
        m_fakes.network.flags = Reachability::reachable;
        Platform::install(this);
    }

    [[nodiscard]] RunLoop& runLoop() override { return m_fakes.loop; }
    [[nodiscard]] UserDefaults& userDefaults() override { return m_fakes.defaults; }
    [[nodiscard]] ByteStreamFactory& streams() override { return base().streams(); }
    [[nodiscard]] NetworkInterfaces& networkInterfaces() override { return m_fakes.network; }
    [[nodiscard]] URLLoader& urlLoader() override { return m_loader; }
    [[nodiscard]] Resources& resources() override { return base().resources(); }
    [[nodiscard]] MailComposer& mailComposer() override { return m_fakes.mail; }
    [[nodiscard]] std::unique_ptr<WorkQueue> makeWorkQueue(const std::string& name) override {
        return base().makeWorkQueue(name);
    }

    [[nodiscard]] auto& entries() { return m_fakes.defaults.entries; }
    [[nodiscard]] std::vector<std::string>& log() { return m_fakes.log; }

private:
    [[nodiscard]] Platform& base() { return m_fakes; }

    fakes::FakePlatform m_fakes;
    CurlURLLoader m_loader{{.time = std::chrono::seconds{2}, .bytes = 1U << 20U}};
};

class UpdateServerTest : public testing::Test {
protected:
    UpdateServerTest() {
        qputenv("no_proxy", "*");
        m_folder.takeExamples();
        m_server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_server.start("python3", {ITORV_RESOURCE_DIR "/../tests/vehicles/server.py", m_folder.text()});
        while (!m_server.canReadLine() && m_server.waitForReadyRead(longest)) {
        }
        m_base = "http://127.0.0.1:" + m_server.readLine().trimmed().toStdString();
        const auto made =
            profiles({m_folder.text(), "--base-url", QString::fromStdString(m_base + "/itorvv2")});
        EXPECT_EQ(made.code, 0) << made.error;
        VehicleDataSource::setUpdateServer(m_base);
    }
    ~UpdateServerTest() override {
        VehicleDataSource::setUpdateServer(VehicleDataSource::defaultUpdateServer);
        m_server.closeWriteChannel();
        EXPECT_TRUE(m_server.waitForFinished(longest));
    }

    [[nodiscard]] bool logged(std::string_view part) {
        return std::any_of(platform.log().begin(), platform.log().end(),
                           [&](const std::string& text) { return text.find(part) != std::string::npos; });
    }

    LoopbackPlatform platform;
    std::string m_base;

private:
    Folder m_folder;
    QProcess m_server;
};

TEST_F(UpdateServerTest, ServesWhatTheToolHasMade) {
    auto vehicles = VehicleDataSource::vehicles();
    ASSERT_EQ(vehicles.size(), 3U);
    EXPECT_EQ(vehicles[0].name(), "Diesel Pickup 6.7L");
    EXPECT_EQ(vehicles[1].name(), "Diesel Van 2.8L");
    EXPECT_EQ(vehicles[2].name(), "Gas Pickup 6.2L V8");
    for (auto& vehicle : std::span{vehicles}.subspan(1)) {
        EXPECT_TRUE(vehicle.info().empty());
        ASSERT_TRUE(VehicleDataSource::updateVehicle(vehicle));
        EXPECT_TRUE(vehicle.hasAID(8));
        EXPECT_EQ(vehicle.settings().size(), 6U);
        EXPECT_EQ(vehicle.version(), "1.0");
        EXPECT_EQ(vehicle.DTC(), "YES");
        EXPECT_EQ(VehicleDataSource::storedVehicles().back().info().document(), vehicle.info().document());
    }
    EXPECT_EQ(VehicleDataSource::vehicles().size(), 3U);
}

TEST_F(UpdateServerTest, LeavesTheVehiclesUsableWhateverItAnswers) {
    const auto stored = VehicleDataSource::storedVehicles();
    auto& entries = platform.entries();
    const auto before = entries;
    const struct {
        std::string base;
        bool answers;
        const char* log;
    } rows[]{
        {m_base + "/slow", false, "timed out"},
        {m_base + "/cut", false, "could not be fetched: transfer closed"},
        {m_base + "/404", false, "answered with the status 404"},
        {m_base + "/500", false, "answered with the status 500"},
        {m_base + "/endless", false, "larger than 1 MiB"},
        {m_base + "/announced", false, "larger than 1 MiB"},
        {m_base + "/loop", false, "could not be fetched: Maximum (5) redirects"},
        {m_base + "/passwd", false, "could not be fetched: Protocol \"file\""},
        {m_base + "/latin", true, "is not UTF-8"},
        {m_base + "/text", true, "is no list of vehicles"},
        {"file:///etc/passwd#", false, "could not be fetched: Protocol \"file\""},
        {"/etc/passwd", false, "could not be fetched"},
        {"no address at all", false, "could not be fetched"},
        {"http://127.0.0.1:1", false, "could not be fetched"},
        {"", false, "could not be fetched"},
    };
    for (const auto& [base, answers, log] : rows) {
        SCOPED_TRACE(base);
        entries = before;
        platform.log().clear();
        VehicleDataSource::setUpdateServer(base);
        const auto begin = std::chrono::steady_clock::now();
        const auto vehicles = VehicleDataSource::vehicles();
        ASSERT_EQ(vehicles.size(), 1U);
        EXPECT_EQ(vehicles.front().info().document(), stored.front().info().document());
        EXPECT_EQ(entries, before);
        EXPECT_TRUE(logged(log)) << testing::PrintToString(platform.log());

        auto vehicle = vehicles.front();
        vehicle.setUrl(base + "/profile.json");
        EXPECT_EQ(VehicleDataSource::updateVehicle(vehicle), answers);
        EXPECT_EQ(vehicle.info().empty(), answers) << "what is no profile empties it";
        EXPECT_EQ(vehicle.name(), stored.front().name());
        EXPECT_EQ(entries == before, !answers);
        EXPECT_EQ(VehicleDataSource::storedVehicles().size(), 1U);
        EXPECT_FALSE(VehicleDataSource::currentVehicle().sensors().empty());
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds{15});
    }
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

TEST(ProfilesTool, NamesEachFaultAndItsPlace) {
    const struct {
        std::string part;
        std::string instead;
        std::string line;  ///< begins with this, behind the file's name
    } rows[]{
        {"\"aid\": 12, ", "", "parameters.sensors[0].aid: is missing"},
        {"\"aid\": 12", "\"aid\": \"12\"", "parameters.sensors[0].aid: must be a whole number"},
        {"\"aid\": 12", "\"aid\": 12.5", "parameters.sensors[0].aid: must be a whole number"},
        {"\"aid\": 12", "\"aid\": 255", "parameters.sensors[0].aid: is \"255\" and must be from 1 to 254"},
        {"\"aid\": 12", "\"aid\": 9", "parameters.sensors[0].aid: 9 is taken by the heartbeat"},
        {"\"aid\": 12", "\"aid\": 60",
         "parameters.tuning[0].items[0].aid: the AID \"60\" is already at parameters.sensors[0]"},
        {"\"aid\": 12", "\"aid\": 221", "parameters.sensors[0].formatter: must be 8 for an AID from 220"},
        {"\"aid\": 226", "\"aid\": 92", "parameters.settings[1].formatter: 8 takes 6 bytes"},
        {"\"aid\": 13", "\"aid\": 152",
         "parameters.sensors[1].aid: 152 is the setting with two modes and belongs"},
        {"\"formatter\": 5", "\"formatter\": 6",
         "parameters.settings[0].formatter: 91 is the three-way setting"},
        {", \"Auto\"", "",
         "parameters.settings[0].options: 91 is the three-way setting and needs options: 3"},
        {"\"formatter\": 3", "\"formatter\": 11",
         "parameters.powerLevel.formatter: is \"11\" and must be from 0 to 10"},
        {"\"formatter\": 3", "\"formatter\": 2",
         "parameters.powerLevel.formatter: 2 can't be used for the power level"},
        {"0.1", "0", "parameters.sensors[0].multiplyFactor: must be there and not 0"},
        {"0.1", "1e400", "parameters.sensors[0].multiplyFactor: is \"1e400\""},
        {"\"minValue\": 0, \"maxValue\": 60", "\"minValue\": 60, \"maxValue\": 60",
         "parameters.sensors[0].minValue: must be below"},
        {"\"minmax\"", "\"minMaks\"",
         "parameters.sensors[0].minMaks: is no key of a sensor; is \"minmax\" meant?"},
        {"\"warningRule\": 1", "\"warningRule\": 5", "parameters.sensors[0].warningRule: is \"5\""},
        {", \"warningValue\": 40", "", "parameters.sensors[0].warningValue: is missing"},
        {"\"high\"}", "\"top\"}", "parameters.sensors[0].minmax: is \"top\" and must be one of high low"},
        {"\"Gear\"", "\"Boost\"",
         "parameters.sensors[1].name: the name \"Boost\" is already at parameters.sensors[0].name"},
        {"\"Gear\"", "\"%42oost\"", "parameters.sensors[1].name: the name \"Boost\" is already"},
        {"\"Gear\"", "\"100%\"", "parameters.sensors[1].name: has a percent sign"},
        {"\"Gear\"", "\"\"", "parameters.sensors[1].name: must not be empty"},
        {"\"Gear\"", "null", "parameters.sensors[1].name: must be a text"},
        {"Box_0", "Box", "parameters.sensors[1].category: is \"Box\" and must be a topic and a row"},
        {"Box_0", "Box_1", "parameters.sensors[1].category: the rows of \"Box\" must be numbered"},
        {"[\"0\", \"1\"]", "[\"0\"]",
         "parameters.settings[1].optionValues: has 1 elements and options has 2"},
        {"[\"0\", \"1\"]", "[0, \"1\"]", "parameters.settings[1].optionValues[0]: must be a text"},
        {"[\"0\", \"1\"]", "[\"0\", \"256\"]",
         "parameters.settings[1].optionValues[1]: must be a text with a whole"},
        {"[\"0\", \"1\"]", "[\"0\", \"0\"]",
         "parameters.settings[1].optionValues[1]: \"0\" is in the list twice"},
        {"\"toggable\": false", "\"toggable\": 0", "parameters.settings[0].toggable: must be true or false"},
        {"\"toggable\"", "\"category\"", "parameters.settings[0].category: has no effect in a setting"},
        {"\"name\": \"Brake\"", "\"name\": \"Brake\", \"maxValue\": 256",
         "parameters.settings[0].maxValue: is outside"},
        {"\"name\": \"Idle\"", "\"name\": \"Idle\", \"offset\": -4",
         "parameters.tuning[0].items[0].offset: must be 0 here"},
        {"\"maxValue\": 5}", "\"maxValue\": 6}",
         "parameters.tuning[0].items[0]: minValue and maxValue must lie"},
        {"\"equalizer\"", "\"graph\"",
         "parameters.tuning[0].type: is \"graph\" and must be one of list equalizer"},
        {"\"resolution\": 1", "\"resolution\": 0", "parameters.tuning[0].resolution: must be above 0"},
        {"\"default\": 0", "\"default\": 9", "parameters.tuning[0].default: must be from low to high"},
        {"\"tuning\": [", "\"tuning\": [7, ", "parameters.tuning[0]: must be an object"},
        {"1.10", "1", "version: is \"1\" and must be two whole numbers"},
        {"1.10", "1.2.3", "version: is \"1.2.3\" and must be two whole numbers"},
        {"http://host/a.json", "file:///etc/passwd", "url: is \"file:///etc/passwd\" and must be an address"},
        {"\"url\": \"http://host/a.json\", ", "", "url: is missing"},
        {"\"vehicle\": \"Truck\"", "\"vehicle\": \"Truck\", \"DTC\": \"yes\"",
         "DTC: is \"yes\" and must be one of YES NO"},
        {"\"vehicle\": \"Truck\"", "\"a\\nb\": 1, \"vehicle\": \"Truck\"", "a?b: is no key of the document"},
        {"\"vehicle\": \"Truck\", ", "", "vehicle: is missing"},
        {"\"Truck\"", "\"\xE9\"", "line 1, column 14: "},
        {"\"sensors\"", "\"sensors\" 7, \"x\"", "line 3, column 12: "},
        {good, "[]", "a profile is an object"},
        {good, std::string(5000, '['), "line 1, column 513: Nested too deep"},
        {good, std::string(50U << 20U, ' '), "is larger than 16 MiB"},
        {good, "", ""},
    };
    const Folder folder;
    for (const auto& [part, instead, line] : rows) {
        SCOPED_TRACE(line);
        auto text = good;
        const auto at = text.find(part);
        ASSERT_NE(at, std::string::npos);
        folder.write("a.json", text.replace(at, part.size(), instead));
        const auto result = profiles({folder.text()});
        EXPECT_EQ(result.code, 1);
        EXPECT_TRUE(result.error.starts_with((folder.path() / "a.json").string() + ": " + line))
            << result.error;
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
        EXPECT_EQ(result.output, "");
        EXPECT_FALSE(fs::exists(folder.path() / "update.json"));
    }
}

TEST(ProfilesTool, WritesTheManifestOrNothing) {
    const Folder folder;
    folder.write("a truck.json", good);
    folder.write("update.json", "the old one");
    folder.write("notes.txt", "{");
    EXPECT_EQ(profiles({folder.text(), "--check"}).output, "1 profile checked\n");
    EXPECT_EQ(folder.read("update.json"), "the old one");
    EXPECT_EQ(profiles({folder.text()}).output, "1 profile in update.json\n");
    EXPECT_EQ(folder.read("update.json"),
              "[\n  {\n    \"vehicle\" : \"Truck\",\n    \"url\" : \"http://host/a.json\",\n"
              "    \"version\" : \"1.10\",\n    \"DTC\" : \"NO\"\n  }\n]\n");
    EXPECT_EQ(profiles({"--base-url", "https://h/v/", folder.text()}).code, 0);
    EXPECT_NE(folder.read("update.json").find("\"https://h/v/a%20truck.json\""), std::string::npos);

    folder.write("b.json", good);
    const auto twice = profiles({folder.text()});
    EXPECT_EQ(twice.code, 1);
    EXPECT_NE(twice.error.find("b.json: vehicle: \"Truck\" is already in "), std::string::npos)
        << twice.error;
    EXPECT_NE(twice.error.find("b.json: url: "), std::string::npos) << twice.error;
    fs::remove(folder.path() / "b.json");
    fs::create_directory(folder.path() / "c.json");
    EXPECT_NE(profiles({folder.text()}).error.find("c.json: is not a file"), std::string::npos);
    fs::remove(folder.path() / "c.json");

    const auto old = folder.read("update.json");
    fs::create_directories(folder.path() / "update.json.new");
    const auto blocked = profiles({folder.text()});
    EXPECT_EQ(blocked.code, 1);
    EXPECT_NE(blocked.error.find("update.json.new: "), std::string::npos) << blocked.error;
    EXPECT_EQ(folder.read("update.json"), old);
}

TEST(ProfilesTool, AcceptsEveryProfileThatShips) {
    const Folder folder;
    folder.takeExamples();
    fs::copy(fs::path{ITORV_RESOURCE_DIR} / "vehicle.json", folder.path());
    const auto result = profiles({folder.text(), "--check"});
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, "3 profiles checked\n");
}

TEST(ProfilesTool, RefusesBadArgumentsInOneLine) {
    const Folder empty;
    const struct {
        QStringList arguments;
        int code;
    } rows[]{
        {{}, 2},
        {{"/no such folder"}, 2},
        {{ITORV_RESOURCE_DIR "/vehicle.json"}, 2},
        {{empty.text(), "another"}, 2},
        {{empty.text(), "--sing"}, 2},
        {{empty.text(), "--base-url"}, 2},
        {{empty.text(), "--base-url", "ftp://host"}, 2},
        {{empty.text(), "--base-url", "http://"}, 2},
        {{empty.text()}, 1},
    };
    for (const auto& [arguments, code] : rows) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const auto result = profiles(arguments);
        EXPECT_EQ(result.code, code);
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    EXPECT_EQ(profiles({"--help"}).code, 0);
}

}  // namespace
