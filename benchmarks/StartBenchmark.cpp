// How long the program takes from its start to the first frame and to the first value, and what memory it
// then holds, beside an empty Qt Quick window. Both are started by turns on the software renderer; their
// files are in the system's cache.

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <array>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "Timing.h"
#include "bench/Bench.h"

namespace {

constexpr int rounds = 10;
constexpr int waitMilliseconds = 20000;
constexpr double limit = 1.5;

int fail(const std::string& why) {
    std::fprintf(stderr, "benchmark_start: %s\n", why.c_str());
    return 1;
}

/// Resident kilobytes of a process.
double residentOf(qint64 process) {
    QFile file{QStringLiteral("/proc/%1/status").arg(process)};
    if (!file.open(QIODevice::ReadOnly)) return 0;
    for (const auto& line : file.readAll().split('\n'))
        if (line.startsWith("VmRSS:")) return line.mid(6).chopped(2).trimmed().toDouble();
    return 0;
}

struct Moment {
    double milliseconds = 0;  // from before the process was made
    double kilobytes = 0;
};

/// One start of a program, up to the last of the words it is to say.
class Start final {
public:
    Start(const QString& program, const QStringList& arguments) {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(QCoreApplication::applicationDirPath() + '/' + program, arguments);
    }
    ~Start() {
        m_process.kill();
        m_process.waitForFinished();
    }
    Start(const Start&) = delete;
    Start& operator=(const Start&) = delete;

    [[nodiscard]] std::optional<Moment> momentOf(const char* words) {
        while (!m_said.contains(words)) {
            if (!m_process.waitForReadyRead(waitMilliseconds)) return std::nullopt;
            m_said += m_process.readAll();
        }
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - m_begin;
        return Moment{taken.count(), residentOf(m_process.processId())};
    }
    [[nodiscard]] std::string said() const { return m_said.toStdString(); }

private:
    const std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    QProcess m_process;
    QByteArray m_said;
};

struct Samples {
    void add(const Moment& moment) {
        milliseconds.push_back(moment.milliseconds);
        kilobytes.push_back(moment.kilobytes);
    }

    std::vector<double> milliseconds;
    std::vector<double> kilobytes;
};

void print(const char* what, double own, double other, const char* unit) {
    std::printf("%-46s %7.1f %s, empty window %6.1f %s: %5.2f times   limit %.1f\n", what, own, unit, other,
                unit, own / other, limit);
}

}  // namespace

int main(int argc, char** argv) {
    const QTemporaryDir home;  // the user's own data is left alone
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QCoreApplication application{argc, argv};
    constexpr auto profile = ITORV_RESOURCE_DIR "/vehicle.json";
    bench::Bench module{{.rate = 200, .profile = profile}};
    if (const auto error = module.start()) return fail(*error);
    const QStringList arguments{"--offscreen", "--log-times", "--module",
                                QStringLiteral("127.0.0.1:%1").arg(module.port())};
    Samples empty;
    Samples frame;
    Samples value;
    // The first round, which fills caches and store, does not count.
    for (int round = -1; round < rounds; ++round) {
        Start window{"empty_window", {}};
        const auto emptyFrame = window.momentOf("first frame");
        if (!emptyFrame) return fail("the empty window does not come up: " + window.said());
        Start program{"itorv", arguments};
        const auto firstFrame = program.momentOf("first frame");
        const auto firstValue = program.momentOf("first value");
        if (!firstFrame || !firstValue) return fail("itorv does not come up: " + program.said());
        if (round < 0) continue;
        empty.add(*emptyFrame);
        frame.add(*firstFrame);
        value.add(*firstValue);
    }
    const double time = timing::median(empty.milliseconds);
    const double memory = timing::median(empty.kilobytes) / 1024;
    const double valueTime = timing::median(value.milliseconds);
    print("first frame, time", timing::median(frame.milliseconds), time, "ms");
    print("first frame, resident memory", timing::median(frame.kilobytes) / 1024, memory, "MB");
    print("first value, time", valueTime, time, "ms");
    print("first value, resident memory", timing::median(value.kilobytes) / 1024, memory, "MB");
    return 0;
}
