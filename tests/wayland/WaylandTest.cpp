// The program as desktops and phones show it: a window of a Wayland compositor, touched through it.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

#include "Compositor.h"
#include "bench/Bench.h"
#include "platform/StoredKeys.h"
#include "platform/real/SqliteUserDefaults.h"
#include "platform/real/WaylandGlobals.h"

namespace {

constexpr std::uint8_t powerLevel = 4;
constexpr auto skipped = "weston or its library's headers are missing";

struct Display {
    const char* name;
    QSize size;  ///< in points
    int scale;
};

/// How far two pictures are apart, in levels of 255 on average; needles and digits count for little.
double distance(const QImage& one, const QImage& other) {
    if (one.isNull() || one.size() != other.size()) return 255;
    const auto small = [](const QImage& picture) {
        return picture.scaled(144, 80, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_Grayscale8);
    };
    const auto left = small(one);
    const auto right = small(other);
    const auto apart = [](int a, int b) { return std::abs(a - b); };
    const auto* const pixels = left.constBits();
    return std::inner_product(pixels, pixels + left.sizeInBytes(), right.constBits(), 0.0, std::plus{},
                              apart) /
           static_cast<double>(left.sizeInBytes());
}

class WaylandTest : public testing::TestWithParam<Display> {
protected:
    void SetUp() override {
        if (!fakes::Compositor::isInstalled()) GTEST_SKIP() << skipped;
        ASSERT_EQ(module.start().value_or(""), "");
    }
    [[nodiscard]] QStringList words(const QStringList& more) const {
        return QStringList{"--module", "127.0.0.1:" + QString::number(module.port()), "--profile",
                           ITORV_RESOURCE_DIR "/vehicle.json"} +
               more;
    }

    const QString program = QCoreApplication::applicationDirPath() + "/itorv";
    bench::Bench module{{.rate = 200, .profile = ITORV_RESOURCE_DIR "/vehicle.json"}};
};

INSTANTIATE_TEST_SUITE_P(Displays, WaylandTest,
                         testing::Values(Display{"Wide", {1136, 640}, 1}, Display{"Upright", {720, 1440}, 1},
                                         Display{"Fine", {1136, 640}, 2}),
                         [](const auto& row) { return std::string{row.param.name}; });

TEST_P(WaylandTest, ThePageFillsTheScreenAndTouchesReachIt) {
    const auto& [name, size, scale] = GetParam();
    const bool upright = size.height() > size.width();
    const auto page = upright ? size.transposed() : size;  // as the driver sees it
    fakes::Compositor compositor{size, scale, "kiosk-shell.so"};
    ASSERT_TRUE(compositor.isUp());
    {
        torv::SqliteUserDefaults{compositor.folder.filePath("itorv/defaults.sqlite").toStdString()}
            .setObjectForKey(true, torv::firstRunKey);
    }

    QProcess offscreen;
    offscreen.setProcessEnvironment(compositor.environment());
    const auto file = compositor.folder.filePath("reference.png");
    const auto pixels = page * scale;
    offscreen.start(program, words({"--offscreen", "--screenshot", file, "--after", "3", "--size",
                                    QStringLiteral("%1x%2").arg(pixels.width()).arg(pixels.height())}));
    ASSERT_TRUE(offscreen.waitForFinished(60000));
    const QImage reference{file};
    ASSERT_EQ(reference.size(), pixels);

    QProcess itorv;
    auto environment = compositor.environment();
    environment.insert("WAYLAND_DEBUG", "1");
    itorv.setProcessEnvironment(environment);
    itorv.setStandardErrorFile(compositor.folder.filePath("itorv.log"));
    itorv.start(program, words({}));
    ASSERT_TRUE(itorv.waitForStarted());
    QImage shown;
    const QTransform back = upright ? QTransform{}.rotate(-90) : QTransform{};
    constexpr double close = 10;  // an overlay makes 7
    ASSERT_TRUE(fakes::Compositor::waitUntil(itorv, [&] {
        shown = compositor.picture().transformed(back);
        return distance(shown, reference) < close;
    })) << distance(shown, reference);
    EXPECT_GT(distance(shown.mirrored(true, true), reference), close);

    QFile log{compositor.folder.filePath("itorv.log")};
    ASSERT_TRUE(log.open(QFile::ReadOnly));
    const QString text = log.readAll();
    EXPECT_TRUE(text.contains(QStringLiteral("set_buffer_scale(%1)").arg(scale)));
    EXPECT_TRUE(
        text.contains(QStringLiteral(", 0, %1, %2, ").arg(size.width() * scale).arg(size.height() * scale)));
    EXPECT_FALSE(text.contains("set_buffer_transform(3)"));  // or weston would turn it once more

    const double u = page.height() / 320.0;
    const QPointF plus{page.width() / 2.0 + 171 * u, 300 * u};
    const auto place = upright ? QPointF{size.width() - plus.y(), plus.x()} : plus;
    const auto before = module.value(powerLevel);
    EXPECT_TRUE(fakes::Compositor::waitUntil(itorv, [&] {
        compositor.touch(place);
        itorv.waitForFinished(500);
        return module.value(powerLevel) != before;
    }));
    fakes::Compositor::end(itorv);
    EXPECT_EQ(itorv.exitCode(), 0);
}

TEST(WaylandKeyboard, ComesAndGoesWithAFieldsFocus) {
    if (!fakes::Compositor::isInstalled()) GTEST_SKIP() << skipped;
    const QSize size{720, 1440};
    fakes::Compositor compositor{size, 1, "desktop-shell.so"};
    ASSERT_TRUE(compositor.isUp());
    const auto globals = torv::waylandGlobals(compositor.socketFile().toStdString());
    ASSERT_TRUE(globals);
    EXPECT_EQ(std::ranges::count(*globals, "zwp_text_input_manager_v1"), 1);
    QProcess window;
    window.setProcessEnvironment(compositor.environment());
    window.start(QCoreApplication::applicationDirPath() + "/wayland_textfield", QStringList{});
    // The window is nearly black; keys, and what weston shows behind all windows, are grey.
    const auto isGrey = [](const QImage& picture, int y, int height) {
        const auto part =
            picture.copy(0, y, picture.width(), height).scaled(1, 1, {}, Qt::SmoothTransformation);
        return qGray(part.pixel(0, 0)) > 80;
    };
    const auto touchUntil = [&](QPointF point, bool keysAreThere) {
        return fakes::Compositor::waitUntil(window, [&] {
            compositor.touch(point);
            window.waitForFinished(300);
            const auto picture = compositor.picture();
            return !picture.isNull() && !isGrey(picture, 0, 1200) &&
                   isGrey(picture, 1240, 200) == keysAreThere;
        });
    };
    ASSERT_TRUE(touchUntil({600, 1165}, true));
    EXPECT_TRUE(touchUntil({660, 1315}, false));  // "Enter"
    fakes::Compositor::end(window);
}

}  // namespace
