#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QTemporaryDir>

/// Every test binary: no window, no processor for graphics, and the locale as a Qt program sets it.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QTemporaryDir data;  // nothing of the user's own is touched
    qputenv("XDG_DATA_HOME", data.path().toUtf8());
    const QGuiApplication application{argc, argv};
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
