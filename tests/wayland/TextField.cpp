// A window that is all of the screen and shows one of everything that a table can show, for the keyboard's
// test.
#include <QGuiApplication>

#include "platform/real/RealPlatform.h"
#include "qml/MainWindow.h"
#include "screens/NavigationController.h"
#include "tools/pictures/Gallery.h"

int main(int argc, char** argv) {
    const QGuiApplication application{argc, argv};
    torv::RealPlatform platform;
    torv::Platform::install(&platform);
    torv::Stage stage{std::make_shared<torv::NavigationController>(std::make_shared<pictures::Gallery>()),
                      nullptr};
    torv::MainWindow window;
    window.setTurn(torv::Turn::never);
    window.show(stage);
    window.window()->showFullScreen();
    return QGuiApplication::exec();
}
