// Recordings from a terminal: they outlast kills, come back on the bench bit for bit, and leave no half
// files.
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <fstream>
#include <map>
#include <random>
#include <thread>

#include "Programs.h"
#include "datalog/RecordingExport.h"
#include "datalog/RecordingWriter.h"

namespace {

using namespace programs;
using namespace std::chrono_literals;
using torv::AID;
using torv::RecordingReader;

/// More of them by hand: ITORV_KILLS=200.
int kills() {
    bool isNumber = false;
    const int told = qEnvironmentVariableIntValue("ITORV_KILLS", &isNumber);
    return isNumber ? told : 8;
}

class RecordingPrograms : public ProgramsWithModule {
protected:
    [[nodiscard]] std::filesystem::path file(const char* name) const {
        return home.filePath(name).toStdString();
    }
    static std::optional<RecordingReader> open(const std::filesystem::path& path) {
        std::string error;
        auto reader = RecordingReader::open(path, error);
        EXPECT_EQ(error, "");
        return reader;
    }
    static std::vector<std::vector<std::uint8_t>> bytesOf(const RecordingReader& reader, AID aid) {
        std::vector<std::vector<std::uint8_t>> all;
        auto rows = reader.valuesOf(aid);
        while (const auto row = rows.next())
            all.emplace_back(row->bytes.bytes().begin(), row->bytes.bytes().end());
        return all;
    }
    /// Runs while `sleep`, then dies.
    static void kill(const QStringList& arguments, std::chrono::milliseconds sleep,
                     const std::filesystem::path& waitFor = {}) {
        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + "/itorvctl", arguments);
        EXPECT_TRUE(process.waitForStarted());
        for (int i = 0; i < 1000 && !waitFor.empty() && !std::filesystem::exists(waitFor); ++i)
            std::this_thread::sleep_for(10ms);
        std::this_thread::sleep_for(sleep);
        process.kill();
        process.waitForFinished();
    }

    const QTemporaryDir home;
};

TEST_F(RecordingPrograms, AKillCostsASecondAtTheMost) {
    std::mt19937 random{5};
    for (int i = 0; i < kills(); ++i) {
        const auto name = file(("drive-" + std::to_string(i)).c_str());
        kill({"record", QString::fromStdString(name.string()), "--module", address},
             std::chrono::milliseconds{random() % 1800}, name);
        const auto killed = torv::wallNow();
        EXPECT_FALSE(RecordingReader::isOpen(name));
        const auto reader = open(name);
        ASSERT_TRUE(reader);
        EXPECT_FALSE(reader->hasEnded());
        EXPECT_GT(reader->drive().begun + reader->length() + 1s, killed) << i;
    }
}

TEST_F(RecordingPrograms, ComesBackOnTheBenchBitForBit) {
    const auto first = file("first");
    EXPECT_EQ(
        run("itorvctl", {"record", QString::fromStdString(first.string()), "--module", address, "--for", "2"},
            home.path())
            .code,
        0);
    bench::Bench player{{.rate = 10,
                         .profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json",
                         .replay = first,
                         .speed = 2}};
    ASSERT_EQ(player.start().value_or(""), "");
    const auto second = file("second");
    EXPECT_EQ(run("itorvctl",
                  {"record", QString::fromStdString(second.string()), "--module",
                   "127.0.0.1:" + QString::number(player.port()), "--for", "2"},
                  home.path())
                  .code,
              0);
    const auto recorded = open(first);
    const auto replayed = open(second);
    ASSERT_TRUE(recorded && replayed);
    std::size_t count = 0;
    for (const auto& sensor : recorded->drive().sensors) {
        const auto all = bytesOf(*recorded, sensor.aid);
        const auto again = bytesOf(*replayed, sensor.aid);
        // The session begins with the third chunk, so that the first values may be missing.
        ASSERT_LE(again.size(), all.size());
        EXPECT_LE(all.size() - again.size(), 3U) << sensor.name;
        EXPECT_TRUE(std::equal(again.rbegin(), again.rend(), all.rbegin())) << sensor.name;
        count += again.size();
    }
    EXPECT_GT(count, 500U);
    EXPECT_LT(replayed->length(), recorded->length());  // twice as fast
    bench::Bench refusing{{.profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json",
                           .replay = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json"}};
    EXPECT_NE(refusing.start().value_or("").find("is no recording"), std::string::npos);
}

TEST_F(RecordingPrograms, AnExportIsWholeOrNotThere) {
    const auto drive = file("drive");
    std::string error;
    torv::RecordedSensor load;
    load.aid = 8;
    load.name = "Load";
    auto writer = torv::RecordingWriter::begin(
        drive, {.name = "Long", .vehicle = "Truck", .begun = {}, .sensors = {load}}, error);
    ASSERT_TRUE(writer) << error;
    std::vector<torv::RecordedValue> values;
    values.reserve(60000);
    for (int i = 0; i < 60000; ++i)
        values.push_back({8, 5ms * i, torv::WallTime{5ms * i}, i / 7.0, torv::AV{}});
    ASSERT_EQ(writer->append(values, {}), std::nullopt);
    writer->end();
    const auto name = QString::fromStdString(drive.string());
    const auto whole = run("itorvctl", {"export", name});
    EXPECT_EQ(std::ranges::count(whole.output, '\n'), 60001);
    std::mt19937 random{9};
    const auto output = file("out.csv");
    for (int i = 0; i < kills(); ++i) {
        kill({"export", name, QString::fromStdString(output.string())},
             std::chrono::milliseconds{random() % 150});
        if (!std::filesystem::exists(output)) continue;
        std::ifstream stream{output, std::ios::binary};
        EXPECT_EQ((std::string{std::istreambuf_iterator<char>{stream}, {}}), whole.output);
        std::filesystem::remove(output);
    }
    EXPECT_EQ(run("itorvctl", {"export", name, home.path() + "/none/out.csv"}).code, 1);
    EXPECT_EQ(run("itorvctl", {"export", name, "/dev/full"}).code, 1);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    EXPECT_EQ(run("itorvctl", {"export", name, "--format", "xls"}).code, 2);
    EXPECT_EQ(run("itorvctl", {"export", name, name}).code, 2) << "the recording itself";
    EXPECT_TRUE(open(drive));
    EXPECT_EQ(run("itorvctl", {"export", home.path() + "/none"}).code, 2);
    EXPECT_EQ(run("itorvctl", {"record", name, "--module", address}).code, 2) << "it is there already";
    // As other programs read it.
    const auto read = [](const QString& program, const QStringList& arguments) {
        QProcess process;
        process.start(program, arguments);
        process.waitForFinished();
        return process.readAllStandardOutput().trimmed().toStdString();
    };
    const auto csv = home.filePath("whole.csv");
    EXPECT_EQ(run("itorvctl", {"export", name, csv}).code, 0);
    EXPECT_EQ(read("python3", {"-c",
                               "import csv, sys; r = list(csv.reader(open(sys.argv[1], newline='')));"
                               "print(len(r), r[0], {len(x) for x in r})",
                               csv}),
              "60001 ['time', 'Load'] {2}");
    EXPECT_EQ(read("sqlite3", {":memory:", ".mode csv", ".import " + csv + " t",
                               "SELECT count(*), max(\"Load\" + 0) > 8571 FROM t"}),
              "60000,1");
}

}  // namespace
