// What the look asks of a page, and the touches that it hands to it.
#include <QFont>
#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <utility>

#include "dashboards/DashboardViewController.h"
#include "screens/Touch.h"

namespace torv {
namespace {

constexpr double exactWidth = 568;  // has a background of its own
constexpr double toastMargin = 10;
constexpr qsizetype longestToast = 30;  // a name that is longer would cover the places
constexpr double wheelStep = 120;       // eighths of a degree: one notch of a wheel

struct PowerButton {
    const char* name;
    const char* image;
    const char* label;
    double left;     // of the picture, on the stage
    double hitLeft;  // of what can be touched
};
constexpr double powerTop = 278;
constexpr double powerHitTop = 270;
constexpr double powerHitExtra = 50;
constexpr PowerButton minus{
    .name = "minus", .image = "BTN_POWER_MINUS.png", .label = "Less power", .left = 75, .hitLeft = 60};
constexpr PowerButton plus{
    .name = "plus", .image = "BTN_POWER_PLUS.png", .label = "More power", .left = 380, .hitLeft = 368};

Image powerImage(const PowerButton& button) {
    return imageNamed(QString::fromLatin1(button.image));
}

PagePicture powerPicture(const PowerButton& button, double stageLeft) {
    const auto image = powerImage(button);
    return {.name = QString::fromLatin1(button.name),
            .image = image.source,
            .label = QString::fromLatin1(button.label),
            .frame = {QPointF{stageLeft + button.left, powerTop}, image.size}};
}

QSizeF powerHitSize(QSizeF image) {
    return {image.width() + powerHitExtra, 2 * image.height()};
}

}  // namespace

void DashboardViewController::readButtonSizes() {
    m_minusSize = powerImage(minus).size;
    m_plusSize = powerImage(plus).size;
}

QString DashboardViewController::background() const {
    return imageNamed(screenWidth() == exactWidth ? QStringLiteral("BG_BASE-568h.png")
                                                  : QStringLiteral("BG_BASE.png"))
        .source;
}

QList<PagePicture> DashboardViewController::backdrops() const {
    QList<PagePicture> all;
    for (const auto& row : m_traits.backdrops)
        all.push_back({.name = {},
                       .image = imageNamed(QString::fromLatin1(row.image)).source,
                       .frame = onStage(row.frame),
                       .layer = row.layer});
    return all;
}

QVariantList DashboardViewController::placeObjects() const {
    QVariantList all;
    for (const auto& place : m_droppableViews)
        all.push_back(QVariant::fromValue(place.get()));
    return all;
}

QList<PagePicture> DashboardViewController::buttonImages() const {
    QList<PagePicture> all{{.name = QStringLiteral("gear"),
                            .image = imageNamed(QStringLiteral("BTN_GEAR.png")).source,
                            .label = QStringLiteral("Menu"),
                            .frame = gearFrame()}};
    if (m_traits.hasControls) {
        all.push_back(powerPicture(minus, stageLeft()));
        all.push_back(powerPicture(plus, stageLeft()));
    }
    return all;
}

QRectF DashboardViewController::powerDecreaseFrame() const {
    if (!m_traits.hasControls) return {};
    return {{stageLeft() + minus.hitLeft - m_minusSize.width(), powerHitTop}, powerHitSize(m_minusSize)};
}

QRectF DashboardViewController::powerIncreaseFrame() const {
    if (!m_traits.hasControls) return {};
    return {{stageLeft() + plus.hitLeft, powerHitTop}, powerHitSize(m_plusSize)};
}

void DashboardViewController::buildToastLabelViewFontSize(const QString& text, int fontSize) {
    m_toast = text.size() > longestToast ? text.left(longestToast - 1) + QChar{0x2026} : text;
    QFont font;
    font.setPixelSize(fontSize);
    constexpr double unbounded = 1e6;
    const auto size =
        QFontMetricsF{font}
            .boundingRect({0, 0, screenWidth(), unbounded}, Qt::TextWrapAnywhere | Qt::TextWordWrap, m_toast)
            .size();
    const QSizeF label{std::ceil(size.width()) + 4 * toastMargin, std::ceil(size.height()) + 2 * toastMargin};
    m_toastFrame = {{std::floor(screenWidth() * 0.5) - label.width() / 2, m_traits.toastTop}, label};
    emit toastChanged();
}

void DashboardViewController::sendvalues() {
    const auto kept = shared_from_this();  // it may be left meanwhile
    lookAtStore();
    m_replay.run();
}

void DashboardViewController::lookAtStore() {
    const auto trouble = QString::fromStdString(m_application->storeTrouble().value_or(std::string{}));
    if (std::exchange(m_notice, trouble) != trouble) emit noticeChanged();
}

QString DashboardViewController::stripNote() const {
    if (!m_indicatorViews.empty()) return {};
    return m_application->currentVehicle().sensors().empty()
               ? QStringLiteral("This vehicle's profile lists no sensors")
               : QStringLiteral("All sensors of this vehicle are in the menu, under Diagnostics");
}

QString DashboardViewController::advice() const {
    if (m_indicatorViews.empty()) return stripNote();
    const bool empty = std::none_of(m_droppableViews.begin(), m_droppableViews.end(),
                                    [](const auto& place) { return place->gauge() != nullptr; });
    return empty ? QStringLiteral("Hold a sensor in the strip and drag it here") : QString{};
}

void DashboardViewController::touch(Touching what, int finger, double x, double y) {
    // Touch screens report fractions of a point, by which a finger that is held still would seem to move.
    const QPointF point{std::round(x), std::round(y)};
    queueTouch(this, [what, finger, point](DashboardViewController& page) {
        if (!page.takesTouches()) return;
        const auto kept = page.shared_from_this();  // it may be left while one of its exchanges blocks
        (page.m_touches.*what)(finger, point);
        emit page.pressedChanged();
    });
}

void DashboardViewController::touchBegan(int finger, double x, double y) {
    touch(&PageTouches::began, finger, x, y);
}

void DashboardViewController::touchMoved(int finger, double x, double y) {
    touch(&PageTouches::moved, finger, x, y);
}

void DashboardViewController::touchEnded(int finger, double x, double y) {
    touch(&PageTouches::ended, finger, x, y);
}

void DashboardViewController::pressAt(double x, double y) {
    constexpr int assistant = -1;  // the number of no finger
    touchBegan(assistant, x, y);
    touchEnded(assistant, x, y);
}

void DashboardViewController::touchCancelled() {
    queueTouch(this, [](DashboardViewController& page) {
        page.m_touches.cancelled();
        emit page.pressedChanged();
    });
}

void DashboardViewController::touchKey(int key) {
    queueTouch(this, [key](DashboardViewController& page) {
        if (!page.takesTouches()) {
            // Pressed while the next page was on its way: it is meant for that one.
            auto* const next = dynamic_cast<DashboardViewController*>(page.presentedViewController());
            return next ? next->touchKey(key) : void();
        }
        if (page.m_pageView->scrollView().dragging()) return;
        const auto kept = page.shared_from_this();
        if (key == Qt::Key_Left) return page.rightSwipe();
        if (key == Qt::Key_Escape)
            return page.pageView().expanded() ? page.hideControls() : page.rightSwipe();
        if (page.isHeld()) return;
        switch (key) {
            case Qt::Key_Right:
                return page.leftSwipe();
            case Qt::Key_Down:
                return page.hideControls();
            case Qt::Key_Plus:
                return page.m_traits.hasControls ? page.increasePower() : void();
            case Qt::Key_Minus:
                return page.m_traits.hasControls ? page.decreasePower() : void();
            case Qt::Key_Space:
                return page.m_pageView->setExpandedAnimate(!page.m_pageView->expanded(), true);
            default:
                return;
        }
    });
}

void DashboardViewController::touchWheel(double angle) {
    queueTouch(this, [angle](DashboardViewController& page) {
        if (!page.takesTouches() || !page.m_pageView->expanded()) return;
        page.m_wheel += angle;
        if (std::abs(page.m_wheel) < wheelStep) return;
        if (std::exchange(page.m_wheel, 0) < 0) {
            page.m_pageView->nextPage();
        } else {
            page.m_pageView->previousPage();
        }
    });
}

}  // namespace torv
