#pragma once

#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <functional>

namespace fakes {

/// Weston without a screen, with a seat, on a socket of its own; it ends with this.
class Compositor final {
public:
    static bool isInstalled() { return QFile::exists(ITORV_WESTON) && QFile::exists(ITORV_WESTON_SEAT); }

    /// The size is in points, of so many pixels each.
    Compositor(QSize size, int scale, const QString& shell) {
        mkfifo(touches().toUtf8().constData(), 0600);
        auto own = environment();
        own.insert("ITORV_TOUCHES", touches());
        m_weston.setProcessEnvironment(own);
        m_weston.setStandardErrorFile(folder.filePath("weston.log"));
        m_weston.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_weston.start(
            ITORV_WESTON,
            {"--no-config", "--backend=headless-backend.so", "--shell=" + shell,
             QStringLiteral("--modules=") + ITORV_WESTON_SEAT, "--socket=" + socket(), "--use-pixman",
             "--debug", "--idle-time=0", "--log=" + folder.filePath("weston.log"),
             QStringLiteral("--width=%1").arg(size.width()), QStringLiteral("--height=%1").arg(size.height()),
             QStringLiteral("--scale=%1").arg(scale)});
    }
    ~Compositor() { end(m_weston); }
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    bool isUp() {
        return waitUntil(m_weston, [&] { return QFile::exists(socketFile()); });
    }
    [[nodiscard]] QString socketFile() const { return folder.filePath(socket()); }
    /// For programs that are to be shown.
    [[nodiscard]] QProcessEnvironment environment() const {
        auto variables = QProcessEnvironment::systemEnvironment();
        variables.insert("XDG_RUNTIME_DIR", folder.path());
        variables.insert("XDG_DATA_HOME", folder.path());
        variables.insert("XDG_PICTURES_DIR", folder.filePath("pictures"));
        variables.insert("WAYLAND_DISPLAY", socket());
        variables.insert("QT_QPA_PLATFORM", "wayland");
        return variables;
    }
    void touch(QPointF point) const {
        QFile pipe{touches()};  // for reading too, or this would wait for weston where that has ended
        if (pipe.open(QFile::ReadWrite | QFile::Unbuffered))
            pipe.write(QStringLiteral("%1 %2\n").arg(point.x()).arg(point.y()).toUtf8());
    }
    /// All that the screen would show, in pixels.
    [[nodiscard]] QImage picture() const {
        QDir pictures{folder.filePath("pictures")};
        pictures.removeRecursively();
        pictures.mkpath(".");
        QProcess program;
        program.setProcessEnvironment(environment());
        program.setWorkingDirectory(pictures.path());
        program.start("weston-screenshooter", QStringList{});
        program.waitForFinished();
        const auto files = pictures.entryList({"*.png"});
        return files.isEmpty() ? QImage{} : QImage{pictures.filePath(files.first())};
    }
    /// Looks again and again, until the condition holds, the process has ended or a minute is over.
    static bool waitUntil(QProcess& process, const std::function<bool()>& condition) {
        QElapsedTimer time;
        time.start();
        while (!condition()) {
            process.waitForFinished(20);
            if (process.state() == QProcess::NotRunning || time.hasExpired(60000)) return false;
        }
        return true;
    }
    static void end(QProcess& process) {
        process.terminate();
        if (!process.waitForFinished(10000)) process.kill();
        process.waitForFinished();
    }

    const QTemporaryDir folder;

private:
    static QString socket() { return "itorv-test"; }
    [[nodiscard]] QString touches() const { return folder.filePath("touches"); }

    QProcess m_weston;
};

}  // namespace fakes
