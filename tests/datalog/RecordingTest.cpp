#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <random>
#include <sstream>

#include "control/iTorvAppDelegate.h"
#include "datalog/CurveSeries.h"
#include "datalog/RecordingExport.h"
#include "datalog/RecordingWriter.h"
#include "datalog/Recordings.h"
#include "fakes/FakePlatform.h"
#include "fakes/Frames.h"
#include "fakes/FreshEngine.h"
#include "vehicles/VehicleDataSource.h"

namespace {

using namespace torv;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

Vehicle truck(const char* name) {
    const auto sensor = [](int aid, const char* title, const char* unit) {
        return Dictionary{{"aid", Number::fromInteger(aid)},
                          {"name", title},
                          {"unit", unit},
                          {"formatter", Number::fromInteger(0)},
                          {"multiplyFactor", Number::fromInteger(1)},
                          {"minmax", aid == 9 ? "off" : "high"}};
    };
    Vehicle vehicle;
    vehicle.setName(name);
    vehicle.setInfo(ProfileInfo{Dictionary{
        {"parameters", Dictionary{{"sensors", Array{sensor(10, "Boost, \"hot\"", "PSI"),
                                                    sensor(8, "Load", "none"), sensor(9, "Spare", "V")}}}}}});
    return vehicle;
}

class RecordingTest : public testing::Test {
protected:
    RecordingTest() {
        fakes::freshenEngine();
        fs::remove_all(recordingsFolder());
        VehicleDataSource::setCurrentVehicle(truck("Truck"));
        app = std::make_shared<iTorvAppDelegate>();
        app->applicationDidFinishLaunchingWithOptions({}, [](const auto&) {});
        for (int i = 0; i < 3; ++i)
            feed(10, 1);
    }
    ~RecordingTest() override { app->applicationWillTerminate(); }

    void feed(std::uint8_t aid, std::uint8_t value) {
        platform.stream().feed(fakes::frame({0x13, aid, value}));
        platform.stream().feed(fakes::frame({0x13, 200, 1}));  // no sensor; it brings the one before it in
        platform.loop.runWork();
    }
    static std::string text(const fs::path& file, RecordingFormat::Kind kind) {
        std::string error;
        const auto reader = RecordingReader::open(file, error);
        std::string all = error;
        if (reader)
            all += exportRecording(*reader, kind, [&all](std::string_view piece) {
                all += piece;
                return true;
            });
        return all;
    }
    /// As a graph does, whatever stands in it.
    static void lookAt(const fs::path& file) {
        std::string error;
        const auto reader = RecordingReader::open(file, error);
        if (!reader) return;
        const TimeSpan whole{0, std::chrono::duration<double>(reader->length()).count()};
        for (const auto& sensor : reader->drive().sensors) {
            CurveSeries series;
            auto rows = reader->valuesOf(sensor.aid);
            DriveTime last{};
            while (const auto row = rows.next()) {
                EXPECT_LE(last, row->time);
                last = row->time;
                series.append(std::chrono::duration<double>(row->time).count(), row->value.value_or(0));
            }
            for (const auto& span : {whole, series.span()}) {
                for (const auto& column : series.columns(span, 100))
                    EXPECT_LE(column.column, 101U);
                EXPECT_LE(series.samples(span).size(), series.size());
                static_cast<void>(series.summary(span));
            }
        }
    }
    static std::vector<int> values(const fs::path& file, AID aid) {
        std::string error;
        const auto reader = RecordingReader::open(file, error);
        EXPECT_EQ(error, "");
        std::vector<int> found;
        if (!reader) return found;
        auto rows = reader->valuesOf(aid);
        while (const auto row = rows.next())
            found.push_back(row->bytes.bytes()[0]);
        return found;
    }

    fakes::FakePlatform platform;
    std::shared_ptr<iTorvAppDelegate> app;
};

TEST_F(RecordingTest, KeepsWhatComesWhateverThePagesShow) {
    app->feeder()->setFeeding(false);
    feed(10, 5);  // before it began
    ASSERT_EQ(app->beginRecording(), std::nullopt);
    const auto file = app->recorder().file();
    for (const auto value : std::vector<std::uint8_t>{7, 7, 9}) {
        feed(10, value);  // at one moment of the virtual clock
    }
    platform.loop.runFor(600ms);
    EXPECT_EQ(values(file, 10), (std::vector<int>{7, 7, 9}));
    feed(9, 3);  // half a second after the last batch
    EXPECT_EQ(values(file, 9), (std::vector<int>{3}));
    feed(8, 3);
    EXPECT_EQ(values(file, 8), (std::vector<int>{}));  // not yet
    EXPECT_EQ(removeRecording(file), "It is being recorded, or read.");

    // As a kill leaves it: what the disk has, without an end.
    const fs::path copy = testing::TempDir() + "killed";
    for (const auto* part : {"", "-wal"})
        fs::copy_file(file.string() + part, copy.string() + part, fs::copy_options::overwrite_existing);
    EXPECT_EQ(values(copy, 10), (std::vector<int>{7, 7, 9}));

    // Another vehicle is another recording.
    app->setCurrentVehicle(truck("Van"));
    EXPECT_EQ(values(file, 8), (std::vector<int>{3}));
    EXPECT_FALSE(fs::exists(file.string() + "-wal"));
    EXPECT_TRUE(app->recorder().isRecording());
    platform.stream().lose();
    platform.loop.runFor(1s);
    app->recorder().end();
    auto all = recordings();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].vehicle, "Van");
    EXPECT_EQ(all[1].vehicle, "Truck");
    std::string error;
    const auto events = RecordingReader::open(all[0].file, error)->events();
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[1].text, "link is lost");
    EXPECT_GT(events[1].time, 0s);
    EXPECT_EQ(renameRecording(all[0].file, "Hill climb"), "");
    EXPECT_EQ(recordings()[0].name, "Hill climb");
    EXPECT_EQ(removeRecording(all[0].file), "");
    // What was begun a while ago and has no name yet has been left; but not while somebody has it open.
    const auto left = recordingsFolder() / "left.itorv-drive.new";
    const auto young = recordingsFolder() / "young.itorv-drive.new";
    fs::copy_file(all[1].file, left);
    fs::copy_file(all[1].file, young);
    sqlite3* holder = nullptr;
    sqlite3_open(left.c_str(), &holder);
    sqlite::run(holder, "PRAGMA journal_mode = WAL; SELECT * FROM sqlite_master");
    fs::last_write_time(left, fs::file_time_type::clock::now() - 1h);
    EXPECT_EQ(recordings().size(), 1U);
    EXPECT_TRUE(fs::exists(left));
    sqlite3_close(holder);
    fs::last_write_time(left, fs::file_time_type::clock::now() - 1h);
    EXPECT_EQ(recordings().size(), 1U);
    EXPECT_FALSE(fs::exists(left));
    EXPECT_TRUE(fs::exists(young));
}

TEST_F(RecordingTest, ARunningTimeIsSecondsAndWordsAreNoNumber) {
    const auto sensor = [](int aid, const char* name, int formatter) {
        return Dictionary{{"aid", Number::fromInteger(aid)},
                          {"name", name},
                          {"unit", aid == 11 ? "" : "tSEC"},
                          {"formatter", Number::fromInteger(formatter)},
                          {"multiplyFactor", Number::fromInteger(1)}};
    };
    Vehicle vehicle;
    vehicle.setInfo(ProfileInfo{Dictionary{
        {"parameters", Dictionary{{"sensors", Array{sensor(185, "Run time", 10), sensor(11, "Switch", 1),
                                                    sensor(12, "Since start", 0)}}}}}});
    const fs::path file = testing::TempDir() + "times";
    fs::remove(file);
    ASSERT_EQ(app->recorder().begin(file, vehicle, "One"), std::nullopt);
    platform.stream().feed(fakes::frame({0x16, 185, 12, 0, 34, 56}));
    feed(11, 1);
    platform.loop.suspend(1h);  // counts, though no timer goes on
    feed(12, 7);
    app->recorder().end();
    const auto lines = text(file, RecordingFormat::Kind::jsonLines);
    for (const auto* part : {R"("name":"Run time","value":45296,"unit":"SEC")",
                             R"("name":"Switch","value":null)", R"("value":7,"unit":"SEC")"})
        EXPECT_NE(lines.find(part), std::string::npos) << lines;
    std::string error;
    const auto reader = RecordingReader::open(file, error);
    EXPECT_GE(reader->length(), 1h);
    EXPECT_EQ(text(file, RecordingFormat::Kind::oneTimeAxis).find("time,Run time (SEC),Switch,"), 0U);
}

TEST_F(RecordingTest, LinksThatAreBackBeforeAnyoneLooksAreNotedAllTheSame) {
    ASSERT_EQ(app->beginRecording(), std::nullopt);
    const auto file = app->recorder().file();
    for (int loss = 0; loss < 2; ++loss) {
        platform.stream().lose();
        platform.loop.runWork();
        for (int i = 0; i < 3; ++i)
            feed(10, 1);
        EXPECT_TRUE(app->feeder()->driver().connected());
    }
    platform.loop.runFor(1600ms);
    platform.stream().lose();
    platform.loop.runWork();
    app->recorder().end();  // sees the last loss itself
    std::string error;
    std::string texts;
    for (const auto& event : RecordingReader::open(file, error)->events())
        texts += event.text + ",";
    EXPECT_EQ(texts, "recording begins,link is lost,link is back,link is lost,link is back,link is lost,");
}

TEST_F(RecordingTest, AFullDiskEndsItWithOneSentence) {
    std::vector<std::string> told;
    app->recorder().setFailed([&](const std::string& why) { told.push_back(why); });
    ASSERT_EQ(app->beginRecording(), std::nullopt);
    const auto file = app->recorder().file();
    feed(10, 5);
    platform.loop.runFor(600ms);
    const auto usual = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit little{64, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &little);
    for (int i = 0; i < 3; ++i) {
        feed(10, 6);
        platform.loop.runFor(600ms);
    }
    const rlimit much{RLIM_INFINITY, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &much);
    std::signal(SIGXFSZ, usual);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(told[0].ends_with("), so the recording has ended; what was recorded is kept.")) << told[0];
    EXPECT_FALSE(app->recorder().isRecording());
    EXPECT_EQ(values(file, 10), (std::vector<int>{5}));
    ASSERT_EQ(app->beginRecording(), std::nullopt);  // the next one may have room

    // Also where the writing fails while the recording is being ended.
    feed(10, 6);
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &little);
    app->recorder().end();
    setrlimit(RLIMIT_FSIZE, &much);
    std::signal(SIGXFSZ, usual);
    EXPECT_EQ(told.size(), 2U);

    // As SQLite itself says it: with databases that have room for a few pages alone.
    const auto limit = [](sqlite3* database, char**, const sqlite3_api_routines*) {
        return sqlite3_exec(database, "PRAGMA max_page_count = 9", nullptr, nullptr, nullptr);
    };
    int (*const fewPages)(sqlite3*, char**, const sqlite3_api_routines*) = limit;
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(fewPages));
    ASSERT_EQ(app->beginRecording(), std::nullopt);
    for (int i = 0; i < 2000; ++i)
        feed(10, 6);
    app->recorder().end();
    sqlite3_reset_auto_extension();
    EXPECT_EQ(told.back(), "The disk is full, so the recording has ended; what was recorded is kept.");
}

TEST_F(RecordingTest, ExportsByteForByte) {
    const fs::path file = testing::TempDir() + "exported";
    fs::remove(file);
    RecordedDrive drive{.name = "One", .vehicle = "Truck", .begun = WallTime{}, .sensors = {}};
    for (const auto& sensor : truck("Truck").sensors())
        drive.sensors.push_back(recordedSensor(sensor));
    std::string error;
    auto writer = RecordingWriter::begin(file, drive, error);
    ASSERT_TRUE(writer) << error;
    EXPECT_FALSE(RecordingWriter::begin(file, drive, error));
    const auto value = [](AID aid, int milliseconds, std::optional<double> shown) {
        const std::chrono::milliseconds time{milliseconds};
        return RecordedValue{aid, time, WallTime{time}, shown, AV{}};
    };
    const std::vector values{value(10, 1, 13.2), value(8, 1, 4),      value(8, 1, 5),
                             value(10, 7, 14),   value(9, 9, -0.125), value(9, 12, std::nullopt),
                             value(8, 20, 6)};
    const std::vector<RecordedEvent> events{{2ms, WallTime{2ms}, "link is lost"}};
    EXPECT_EQ(writer->append(values, events), std::nullopt);
    writer->end();

    const auto stamp = [](int ms) {
        return "1970-01-01T00:00:00." + std::string(ms < 10 ? "00" : "0") + std::to_string(ms) + "Z";
    };
    EXPECT_EQ(text(file, RecordingFormat::Kind::oneTimeAxis),
              "time,\"Boost, \"\"hot\"\" (PSI)\",Load (none),Spare (V)\r\n" + stamp(1) + ",13.2,4,\r\n" +
                  stamp(1) + ",,5,\r\n" + stamp(7) + ",14,,\r\n" + stamp(9) + ",,,-0.125\r\n" + stamp(12) +
                  ",,,\r\n" + stamp(20) + ",,6,\r\n");
    const auto local = [](int ms) { return logTimeText(WallTime{std::chrono::milliseconds{ms}}); };
    EXPECT_EQ(text(file, RecordingFormat::Kind::dataLog),
              "Timestamp,Boost, \"hot\",Timestamp,Load\n" + local(1) + ",13," + local(1) + ",4\n" + local(7) +
                  ",14," + local(1) + ",5\n,," + local(20) + ",6\n");
    EXPECT_EQ(text(file, RecordingFormat::Kind::jsonLines).substr(0, 94),
              "{\"time\":\"" + stamp(1) +
                  "\",\"aid\":10,\"name\":\"Boost, \\\"hot\\\"\",\"value\":13.2,\"unit\":\"PSI\"}");
    EXPECT_NE(text(file, RecordingFormat::Kind::jsonLines).find("\"event\":\"link is lost\""),
              std::string::npos);
}

TEST_F(RecordingTest, WhatIsNoRecordingOrDamagedIsSaid) {
    const fs::path file = testing::TempDir() + "damaged";
    const auto refusal = [&] {
        std::string error;
        return RecordingReader::open(file, error) ? "" : error.substr(file.string().size());
    };
    fs::remove(file);
    EXPECT_EQ(refusal(), " is not there.");
    std::ofstream{file} << "no database, and not a short one: " << std::string(2000, 'x');
    EXPECT_EQ(refusal(), " is no recording.");
    fs::remove(file);
    sqlite3* other = nullptr;
    sqlite3_open(file.c_str(), &other);
    sqlite::run(other, "CREATE TABLE FIELDS (ID INTEGER)");
    sqlite3_close(other);
    EXPECT_EQ(refusal(), " is no recording.");
    fs::remove(file);

    ASSERT_EQ(app->recorder().begin(file, truck("Truck"), "One"), std::nullopt);
    for (int i = 0; i < 400; ++i)
        feed(static_cast<std::uint8_t>(8 + i % 3), static_cast<std::uint8_t>(i));
    app->recorder().end();
    std::ifstream stream{file, std::ios::binary};
    const std::string whole{std::istreambuf_iterator<char>{stream}, {}};
    ASSERT_GT(whole.size(), 8192U);
    std::mt19937 random{3};
    int said = 0;
    for (int run = 0; run < 200; ++run) {
        auto bytes = whole;
        if (run % 2 == 0) bytes.resize(random() % bytes.size());
        for (int i = 0; i < 40 && run % 2 != 0; ++i)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        std::ofstream{file, std::ios::binary | std::ios::trunc} << bytes;
        const auto exported = text(file, RecordingFormat::Kind::oneTimeAxis);
        said += exported.ends_with("\r\n") ? 0 : 1;
        lookAt(file);
        for (const auto* part : {"-wal", "-shm", "-journal"})
            fs::remove(file.string() + part);
    }
    EXPECT_GT(said, 100);  // each file that is cut, for one
    std::ofstream{file, std::ios::binary | std::ios::trunc} << whole;
    sqlite3_open(file.c_str(), &other);
    sqlite::run(other, "INSERT INTO sensors (aid, name) VALUES (255, 'no AID'), (-1, 'nor this')");
    std::string error;
    EXPECT_EQ(RecordingReader::open(file, error)->drive().sensors.size(), 3U);
    sqlite::run(other, "PRAGMA user_version = 2");
    sqlite3_close(other);
    EXPECT_EQ(refusal(), " was made by a newer version of iTorv.");
}

}  // namespace
