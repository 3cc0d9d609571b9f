// The least that a program with a Qt Quick window does: what itorv's start is compared with. Says on standard
// error when its first frame is painted and runs on, so that its memory can be read.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <cstdio>

int main(int argc, char** argv) {
    const QGuiApplication application{argc, argv};
    QQmlApplicationEngine engine;
    engine.load("qrc:/EmptyWindow/EmptyWindow.qml");
    if (engine.rootObjects().isEmpty()) return 1;
    const auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    bool painted = false;
    QObject::connect(window, &QQuickWindow::frameSwapped, window, [&] {
        if (!painted) std::fputs("first frame\n", stderr);
        painted = true;
    });
    return QGuiApplication::exec();
}
