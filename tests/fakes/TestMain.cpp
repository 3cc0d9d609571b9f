#include <gtest/gtest.h>

#include <QGuiApplication>

/// Every test binary: no window, no processor for graphics, and the locale as a Qt program sets it.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application{argc, argv};
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
