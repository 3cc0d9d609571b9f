#include "app/Display.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QQuickWindow>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/Log.h"

namespace torv {
namespace {

constexpr int noDisplay = 2;
constexpr std::array displayVariables{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};

void refuse(const std::string& why) {
    std::fprintf(stderr, "itorv: %s; --offscreen needs none, and ./run serves one by VNC\n", why.c_str());
}

void refuseNamed(const std::string& cause) {
    std::string why = "no display can be used";
    const char* between = " with ";
    for (const auto* name : displayVariables) {
        if (qEnvironmentVariableIsEmpty(name)) continue;
        why += between + std::string{name} + "=" + qgetenv(name).toStdString();
        between = ", ";
    }
    refuse(cause.empty() ? why : why + " (" + cause + ")");
}

/// The first thing that Qt has said since the display was asked for: the cause, from which the rest follows.
std::string& firstWarning() {
    static std::string warning;
    return warning;
}

void logMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    logLine(message.toStdString());
    if (type == QtFatalMsg) std::fprintf(stderr, "itorv: %s\n", qPrintable(message));
}

/// While the display is opened there is neither a log yet nor a thread of ours.
void displayMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    const bool isCause = type == QtWarningMsg || !message.startsWith("This application failed to start");
    if (isCause && firstWarning().empty()) firstWarning() = message.simplified().toStdString();
    if (type != QtFatalMsg) return;
    refuseNamed(firstWarning());
    std::_Exit(noDisplay);
}

bool isNamed(int argc, char** argv) {
    return !std::all_of(displayVariables.begin(), displayVariables.end(), qEnvironmentVariableIsEmpty) ||
           std::any_of(argv + 1, argv + argc, [](const char* argument) {
               return std::strcmp(argument, "-platform") == 0 || std::strcmp(argument, "--platform") == 0;
           });
}

/// As Qt Quick will try it: with a context of its own on a surface that nobody sees.
bool openGLDraws() {
    QOpenGLContext context;
    if (!context.create()) return false;
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    return surface.isValid() && context.makeCurrent(&surface);
}

}  // namespace

std::unique_ptr<QGuiApplication> openDisplay(int& argc, char** argv) {
    if (!isNamed(argc, argv)) {
        refuse("there is no display");
        return nullptr;
    }
    qInstallMessageHandler(displayMessage);
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    qInstallMessageHandler(logMessage);
    if (!QGuiApplication::primaryScreen()) {
        refuseNamed("it has no screen");
        return nullptr;
    }
    return application;
}

void chooseRenderer(bool software) {
    const std::array chosen{"QT_QUICK_BACKEND", "QSG_RHI_BACKEND"};
    if (!software) {
        if (std::any_of(chosen.begin(), chosen.end(), qEnvironmentVariableIsSet) || openGLDraws()) return;
        logLine("OpenGL can't be used here: the processor draws the window");
    }
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

}  // namespace torv
