// Recordings from a terminal: they outlast kills, come back on the bench bit for bit, leave no half files,
// and other programs read them.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <map>
#include <random>
#include <set>
#include <thread>

#include "Programs.h"
#include "datalog/RecordingExport.h"
#include "datalog/RecordingWriter.h"
#include "datalog/Recordings.h"
#include "fakes/FakePlatform.h"
#include "support/FileContents.h"

namespace {

using namespace programs;
using namespace std::chrono_literals;
using torv::AID;
using torv::RecordingReader;
using Clock = std::chrono::steady_clock;

/// Other numbers by hand: ITORV_KILLS=1000.
int kills() {
    bool isNumber = false;
    const int told = qEnvironmentVariableIntValue("ITORV_KILLS", &isNumber);
    return isNumber ? told : ITORV_USUAL_KILLS;
}

std::string contentsOf(const std::filesystem::path& file) {
    std::string error;
    return torv::contentsOfFile(file, error).value_or(error);
}

class RecordingPrograms : public ProgramsWithModule {
protected:
    static constexpr int atOnce = 10;

    [[nodiscard]] std::filesystem::path file(const std::string& name) const {
        return home.filePath(QString::fromStdString(name)).toStdString();
    }
    static QString text(const std::filesystem::path& path) { return QString::fromStdString(path.string()); }
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
    static bool waitFor(const std::filesystem::path& path) {
        for (int i = 0; i < 1000 && !std::filesystem::exists(path); ++i)
            std::this_thread::sleep_for(10ms);
        return std::filesystem::exists(path);
    }
    static std::unique_ptr<QProcess> started(const QString& program, const QStringList& arguments) {
        auto process = std::make_unique<QProcess>();
        process->start(program, arguments);
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }
    static QString itorvctl() { return QCoreApplication::applicationDirPath() + "/itorvctl"; }
    /// So many programs one beside the other, each killed at a moment of its own once it has begun.
    static void killEach(int count, std::chrono::milliseconds longest,
                         const std::function<QStringList(int)>& arguments,
                         const std::function<void(int)>& untilBegun, const std::function<void(int)>& look) {
        std::mt19937 random{5};
        for (int first = 0; first < count; first += atOnce) {
            const int end = std::min(first + atOnce, count);
            std::vector<std::unique_ptr<QProcess>> running;
            for (int i = first; i < end; ++i)
                running.push_back(started(itorvctl(), arguments(i)));
            std::multimap<Clock::time_point, int> moments;
            for (int i = first; i < end; ++i) {
                untilBegun(i);
                moments.emplace(
                    Clock::now() + std::chrono::milliseconds{static_cast<int>(random() % 100000)} % longest,
                    i);
            }
            for (const auto& [moment, i] : moments) {
                std::this_thread::sleep_until(moment);
                auto& process = *running[static_cast<std::size_t>(i - first)];
                process.kill();
                process.waitForFinished();
                look(i);
            }
        }
    }
    /// Two sensors, the second with every other value; numbers that end in .5.
    void makeDrive(const std::filesystem::path& drive, int count) {
        torv::RecordedSensor load;
        load.aid = 8;
        load.name = "Load, \"hot\"";
        load.unit = "PSI";
        load.minmax = "both";
        load.decimaldigits = 1;
        auto boost = load;
        boost.aid = 9;
        boost.name = "Boost";
        std::string error;
        auto writer = torv::RecordingWriter::begin(
            drive, {.name = "Long", .vehicle = "Truck", .begun = {}, .sensors = {load, boost}}, error);
        ASSERT_TRUE(writer) << error;
        std::vector<torv::RecordedValue> values;
        for (int i = 0; i < count; ++i) {
            values.push_back({8, 5ms * i, torv::WallTime{5ms * i}, i + 0.5, torv::AV{}});
            if (i % 2 == 0) values.push_back({9, 5ms * i, torv::WallTime{5ms * i}, -i - 0.5, torv::AV{}});
        }
        ASSERT_EQ(writer->append(values, {}), std::nullopt);
        writer->end();
    }

    const QTemporaryDir home;
};

TEST_F(RecordingPrograms, AKillCostsASecondAtTheMost) {
    std::vector<std::unique_ptr<bench::Bench>> modules;
    for (int i = 0; i < atOnce; ++i) {
        modules.push_back(std::make_unique<bench::Bench>(bench::Options{
            .rate = 100, .profile = std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json"}));
        ASSERT_EQ(modules.back()->start().value_or(""), "");
    }
    const auto nameOf = [this](int i) { return file("drive-" + std::to_string(i)); };
    killEach(
        kills(), 1300ms,
        [&](int i) {
            const auto port = modules[static_cast<std::size_t>(i % atOnce)]->port();
            return QStringList{"record", text(nameOf(i)), "--module", "127.0.0.1:" + QString::number(port)};
        },
        [&](int i) { ASSERT_TRUE(waitFor(nameOf(i))); },
        [&](int i) {
            const auto killed = torv::wallNow();
            EXPECT_FALSE(RecordingReader::isOpen(nameOf(i)));
            const auto reader = open(nameOf(i));
            ASSERT_TRUE(reader);
            EXPECT_FALSE(reader->hasEnded());
            EXPECT_GT(reader->drive().begun + reader->length() + 1s, killed) << i;
        });
}

TEST_F(RecordingPrograms, OneThatAnotherProgramWritesIsListedAndStays) {
    fakes::FakePlatform platform;
    std::filesystem::remove_all(torv::recordingsFolder());
    const auto name = torv::newRecordingFile();
    const auto recorder = started(itorvctl(), {"record", text(name), "--module", address});
    ASSERT_TRUE(waitFor(name));
    const auto begun = Clock::now();
    while (torv::recordings().at(0).length < 1s && Clock::now() - begun < 20s)
        std::this_thread::sleep_for(20ms);
    EXPECT_TRUE(open(name));
    EXPECT_EQ(torv::renameRecording(name, "Hill"), "");
    EXPECT_EQ(torv::recordings().at(0).name, "Hill");
    EXPECT_GE(torv::recordings().at(0).length, 1s);
    EXPECT_EQ(torv::removeRecording(name), "It is being recorded, or read.");
    ::kill(static_cast<pid_t>(recorder->processId()), SIGTERM);
    recorder->waitForFinished();
    EXPECT_EQ(recorder->exitCode(), 0);
    EXPECT_EQ(open(name)->drive().name, "Hill");
    EXPECT_TRUE(open(name)->hasEnded());
    EXPECT_EQ(torv::removeRecording(name), "");
}

TEST_F(RecordingPrograms, ComesBackOnTheBenchBitForBit) {
    const auto first = file("first");
    EXPECT_EQ(run("itorvctl", {"record", text(first), "--module", address, "--for", "2"}, home.path()).code,
              0);
    const auto player = started(QCoreApplication::applicationDirPath() + "/itorv-bench",
                                {"--replay", text(first), "--speed", "2", "--port", "0", "--quiet"});
    ASSERT_TRUE(player->waitForReadyRead(10000));
    const auto port = player->readLine().trimmed().split(' ').last();
    const auto second = file("second");
    EXPECT_EQ(
        run("itorvctl", {"record", text(second), "--module", "127.0.0.1:" + port, "--for", "2"}, home.path())
            .code,
        0);
    player->kill();
    player->waitForFinished();
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
    const auto cut = file("cut");
    std::filesystem::copy_file(first, cut);
    std::filesystem::resize_file(cut, std::filesystem::file_size(cut) / 2);
    const std::pair<std::filesystem::path, const char*> refusals[] = {
        {std::filesystem::path{ITORV_RESOURCE_DIR} / "vehicle.json", "is no recording"},
        {cut, "can't be read"}};
    for (const auto& [path, why] : refusals) {
        const auto refused = run("itorv-bench", {"--replay", text(path), "--port", "0"});
        EXPECT_EQ(refused.code, 2);
        EXPECT_NE(refused.error.find(why), std::string::npos) << refused.error;
    }
}

TEST_F(RecordingPrograms, AnExportIsWholeOrNotThere) {
    const auto drive = file("drive");
    makeDrive(drive, 60000);
    const auto name = text(drive);
    const auto whole = run("itorvctl", {"export", name});
    EXPECT_EQ(std::ranges::count(whole.output, '\n'), 60001);
    const auto outputOf = [this](int i) { return file("out-" + std::to_string(i % atOnce)); };
    int half = 0;
    killEach(
        kills(), 600ms,
        [&](int i) {
            return QStringList{"export", name, text(outputOf(i))};
        },
        [](int) {},
        [&](int i) {
            half += std::filesystem::remove(outputOf(i).string() + ".part") ? 1 : 0;
            if (!std::filesystem::exists(outputOf(i))) return;
            EXPECT_TRUE(contentsOf(outputOf(i)) == whole.output);
            std::filesystem::remove(outputOf(i));
        });
    EXPECT_GT(half, 0);
    EXPECT_EQ(run("itorvctl", {"export", name, home.path() + "/none/out.csv"}).code, 1);
    EXPECT_EQ(run("itorvctl", {"export", name, "--format", "xls"}).code, 2);
    EXPECT_EQ(run("itorvctl", {"export", name, name}).code, 2) << "the recording itself";
    EXPECT_TRUE(open(drive));
    EXPECT_EQ(run("itorvctl", {"export", home.path() + "/none"}).code, 2);
    EXPECT_EQ(run("itorvctl", {"record", name, "--module", address}).code, 2) << "it is there already";

    // What is no file is written to, and still there afterwards.
    const auto pipe = file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const int end = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const auto exporter = started(itorvctl(), {"export", name, text(pipe)});
    std::string received;
    for (bool runs = true; runs;) {
        runs = !exporter->waitForFinished(5) && exporter->state() != QProcess::NotRunning;
        std::array<char, 65536> piece{};
        for (ssize_t size = 0; (size = ::read(end, piece.data(), piece.size())) > 0;)
            received.append(piece.data(), static_cast<std::size_t>(size));
    }
    ::close(end);
    EXPECT_EQ(exporter->exitCode(), 0);
    EXPECT_TRUE(received == whole.output);
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    if (std::filesystem::is_character_file("/dev/full")) {
        const auto link = file("full");
        std::filesystem::create_symlink("/dev/full", link);
        EXPECT_EQ(run("itorvctl", {"export", name, text(link)}).code, 1);
        EXPECT_TRUE(std::filesystem::is_symlink(link));
    }
}

/// The output of a program that reads cells and writes them with these signs between.
constexpr char cellEnd = '\x1f';
constexpr char rowEnd = '\x1e';

TEST_F(RecordingPrograms, AnExportLoadsElsewhereAndItsMemoryStaysTheSame) {
    constexpr int count = 500;
    const auto drive = file("drive");
    makeDrive(drive, count);
    const auto row = [](std::initializer_list<std::string> cells) {
        std::string line;
        for (const auto& cell : cells)
            line += (line.empty() ? "" : std::string(1, cellEnd)) + cell;
        return line + rowEnd;
    };
    std::string head = row({"time", "Load, \"hot\" (PSI)", "Boost (PSI)"});
    std::string cells;
    std::string logged;
    for (int i = 0; i < count; ++i) {
        const auto wall = [](int number) { return torv::WallTime{5ms * number}; };
        const auto number = std::to_string(i) + ".5";
        cells += row({torv::isoText(wall(i)), number, i % 2 == 0 ? "-" + number : ""});
        const bool more = i < count / 2;  // of the second sensor: rows line up by number
        logged += row({torv::logTimeText(wall(i)), number, more ? torv::logTimeText(wall(2 * i)) : "",
                       more ? "-" + std::to_string(2 * i) + ".5" : ""});
    }
    const auto read = [](const QString& program, const QStringList& arguments) {
        const auto process = started(program, arguments);
        process->waitForFinished();
        return process->readAllStandardOutput().toStdString();
    };
    const auto python = [&](const QString& csv, int from) {
        return read("python3", {"-c",
                                "import csv, sys\n"
                                "rows = list(csv.reader(open(sys.argv[1], newline='')))\n"
                                "for row in rows[int(sys.argv[2]):]:\n"
                                "    sys.stdout.write('\\x1f'.join(row) + '\\x1e')",
                                csv, QString::number(from)});
    };
    const auto separators = QStringLiteral(".separator %1 %2").arg(QChar{cellEnd}).arg(QChar{rowEnd});
    const auto sqlite = [&](const QStringList& load) {
        return read("sqlite3", QStringList{":memory:"} + load + QStringList{separators, "SELECT * FROM t"});
    };
    const auto csv = home.filePath("one.csv");
    const auto log = home.filePath("log.csv");
    ASSERT_EQ(run("itorvctl", {"export", text(drive), csv}).code, 0);
    ASSERT_EQ(run("itorvctl", {"export", text(drive), log, "--format", "log"}).code, 0);
    EXPECT_TRUE(python(csv, 0) == head + cells);
    EXPECT_TRUE(python(log, 1) == logged);  // its names have no quotes
    EXPECT_TRUE(sqlite({".mode csv", ".import \"" + csv + "\" t", ".headers on", ".mode list"}) ==
                head + cells);
    EXPECT_TRUE(sqlite({"CREATE TABLE t (a, b, c, d)", ".import --csv --skip 1 \"" + log + "\" t"}) ==
                logged);

#ifndef __SANITIZE_ADDRESS__  // which keeps what is freed for a while
    // In kilobytes, as the system counts it for a program of its own.
    const auto peak = [&](int values, const QString& format) {
        const auto measured = file("long-" + std::to_string(values));
        if (!std::filesystem::exists(measured)) makeDrive(measured, values);
        return std::stol(
            read("python3", {"-c",
                             "import resource, subprocess, sys\n"
                             "subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, check=True)\n"
                             "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)",
                             itorvctl(), "export", text(measured), "--format", format}));
    };
    for (const auto& format : torv::recordingFormats) {
        const auto name = QString::fromUtf8(format.name.data(), static_cast<qsizetype>(format.name.size()));
        EXPECT_LT(peak(200000, name), peak(20000, name) + 4000) << format.name;
    }
#endif
}

}  // namespace
