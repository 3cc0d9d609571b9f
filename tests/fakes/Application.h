#pragma once

#include <QTest>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "FreshEngine.h"
#include "WaitUntil.h"
#include "app/Screens.h"
#include "bench/Bench.h"
#include "control/ConnectionStatus.h"
#include "platform/StoredKeys.h"
#include "platform/real/RealPlatform.h"
#include "qml/MainWindow.h"
#include "vehicles/ProfileDocument.h"
#include "vehicles/VehicleDataSource.h"

namespace fakes {

/// The whole application in this process, in a real window, on the store in XDG_DATA_HOME and on a module on
/// the bench. Points are those of a page.
class Application final {
public:
    explicit Application(bench::Bench& module, const std::filesystem::path& profile,
                         const std::function<void(torv::UserDefaults&)>& prepare = {},
                         QSize size = {1136, 640}, const std::optional<std::string>& url = {}) {
        torv::Platform::install(&platform);
        freshenEngine();
        m_replay = platform.notificationCenter().addObserver(torv::customTuningSettingsUpdated,
                                                             [this] { ++m_replays; });
        std::string error;
        if (const auto vehicle = torv::vehicleFromFile(profile, error)) {
            torv::VehicleDataSource::setCurrentVehicle(*vehicle);
        }
        platform.userDefaults().setObjectForKey(true, torv::firstRunKey);  // of which nothing is wanted
        if (prepare) prepare(platform.userDefaults());
        control = std::make_shared<torv::iTorvAppDelegate>();
        torv::iTorvAppDelegate::LaunchOptions options;
        options.connection.module = torv::Endpoint{"127.0.0.1", module.port()};
        options.url = url;
        control->applicationDidFinishLaunchingWithOptions(options, [&](const auto& whenShown) {
            status = std::make_unique<torv::ConnectionStatus>(control->feeder());
            first = torv::Screens{control}.firstPage();
            stage = torv::Screens{control}.stage(first, status.get());
            window = std::make_unique<torv::MainWindow>();
            window->show(*stage);
            whenShown();
            torv::Screens{control}.presentFirst(*first);
        });
        if (view()) view()->resize(size);
    }
    ~Application() {
        control->applicationWillTerminate();
        window.reset();
        stage.reset();
        first.reset();
        status.reset();
        control.reset();
        torv::Platform::install(nullptr);
    }
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    [[nodiscard]] QQuickWindow* view() const { return window->window(); }
    [[nodiscard]] torv::DashboardViewController* page() const {
        return dynamic_cast<torv::DashboardViewController*>(stage->top());
    }
    bool waitUntil(const std::function<bool()>& condition,
                   std::chrono::milliseconds limit = std::chrono::seconds{20}) {
        return fakes::waitUntil(
            platform.runLoop(),
            [&] {
                // What the look lets go of ends with the outermost loop, and this program has none.
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                return condition();
            },
            limit);
    }
    /// The link is up, and what is stored has been replayed.
    bool waitUntilReady() {
        return waitUntil([this] { return status->connected() && m_replays > 0 && !first->progress(); });
    }
    void runFor(std::chrono::milliseconds time) {
        const auto end = std::chrono::steady_clock::now() + time;
        waitUntil([&] { return std::chrono::steady_clock::now() >= end; }, time * 2);
    }

    // What a finger, or a mouse, does; the page hears of it a turn of the loop later.
    void press(QPointF point) { QTest::mousePress(view(), Qt::LeftButton, {}, pixel(point)); }
    void move(QPointF point) { QTest::mouseMove(view(), pixel(point)); }
    void release(QPointF point) { QTest::mouseRelease(view(), Qt::LeftButton, {}, pixel(point)); }
    void tap(QPointF point) {
        press(point);
        release(point);
    }
    void swipe(QPointF from, QPointF to) {
        press(from);
        for (int step = 1; step <= 4; ++step)
            move(from + (to - from) * step / 4);
        release(to);
    }
    /// Picks the sensor out of the open strip and lets it go over the point; false if it can't be picked.
    bool drag(torv::AID aid, QPointF to, bool letGo = true) {
        auto& picker = page()->pageView();
        const auto indicator = picker.indicatorViewTag(aid);
        if (!indicator) return false;
        auto& strip = picker.scrollView();
        strip.setContentOffset(
            std::floor(indicator->frame().x() / strip.frame().width()) * strip.frame().width(), false);
        const auto from = indicator->center() - QPointF{strip.contentOffset(), 0} + strip.frame().topLeft() +
                          picker.frame().topLeft();
        press(from);
        if (!waitUntil([&] { return page()->touchingViewObject() != nullptr; })) return false;
        for (int step = 1; step <= 4; ++step)
            move(from + (to - from) * step / 4);
        if (!letGo) return true;
        release(to);
        return waitUntil([&] { return !page() || page()->touchingViewObject() == nullptr; });
    }
    [[nodiscard]] QPoint pixel(QPointF point) const {
        const QSizeF size = view()->size();
        const double u = std::min(size.width() / torv::stageWidth, size.height() / torv::pageHeight);
        return (point * u + QPointF{0, (size.height() - torv::pageHeight * u) / 2}).toPoint();
    }

    torv::RealPlatform platform;
    std::shared_ptr<torv::iTorvAppDelegate> control;
    std::unique_ptr<torv::ConnectionStatus> status;
    std::shared_ptr<torv::iTorvViewController> first;
    std::unique_ptr<torv::Stage> stage;
    std::unique_ptr<torv::MainWindow> window;

private:
    torv::NotificationCenter::Observation m_replay;
    int m_replays = 0;
};

}  // namespace fakes
