// What the look asks of a page, and what it tells it.
#include <QFont>
#include <QFontMetricsF>
#include <QVariantMap>
#include <cmath>
#include <utility>

#include "dashboards/DashboardViewController.h"
#include "screens/Touch.h"

namespace torv {
namespace {

constexpr double exactWidth = 568;  // has a background of its own
constexpr double toastMargin = 10;
constexpr double wheelStep = 120;  // eighths of a degree: one notch of a wheel

struct PowerButton {
    const char* name;
    const char* image;
    double left;     // of the picture, on the stage
    double hitLeft;  // of what can be touched
};
constexpr double powerTop = 278;
constexpr double powerHitTop = 270;
constexpr double powerHitExtra = 50;
constexpr PowerButton minus{"minus", "BTN_POWER_MINUS.png", 75, 60};
constexpr PowerButton plus{"plus", "BTN_POWER_PLUS.png", 380, 368};

QVariantMap picture(const char* name, const char* image, QPointF corner, QSizeF size) {
    return {{"name", QString::fromLatin1(name)},
            {"image", imageNamed(QString::fromLatin1(image)).source},
            {"frame", QRectF{corner, size}}};
}

QVariantMap powerPicture(const PowerButton& button, double stageLeft) {
    return picture(button.name, button.image, {stageLeft + button.left, powerTop},
                   imageNamed(QString::fromLatin1(button.image)).size);
}

QSizeF powerHitSize(const PowerButton& button) {
    const auto size = imageNamed(QString::fromLatin1(button.image)).size;
    return {size.width() + powerHitExtra, 2 * size.height()};
}

}  // namespace

QString DashboardViewController::background() const {
    return imageNamed(screenWidth() == exactWidth ? QStringLiteral("BG_BASE-568h.png")
                                                  : QStringLiteral("BG_BASE.png"))
        .source;
}

QVariantList DashboardViewController::backdrops() const {
    QVariantList all;
    for (const auto& row : m_traits.backdrops) {
        auto shown = picture("", row.image, onStage(row.frame).topLeft(), row.frame.size());
        shown.insert("layer", row.layer);
        all.push_back(shown);
    }
    return all;
}

QVariantList DashboardViewController::placeObjects() const {
    QVariantList all;
    for (const auto& place : m_droppableViews)
        all.push_back(QVariant::fromValue<QObject*>(place.get()));
    return all;
}

QVariantList DashboardViewController::buttonImages() const {
    QVariantList all{picture("gear", "BTN_GEAR.png", gearFrame().topLeft(), gearFrame().size())};
    if (m_traits.hasControls) {
        all.push_back(powerPicture(minus, stageLeft()));
        all.push_back(powerPicture(plus, stageLeft()));
    }
    return all;
}

QRectF DashboardViewController::powerDecreaseFrame() const {
    if (!m_traits.hasControls) return {};
    const auto width = powerHitSize(minus).width() - powerHitExtra;
    return {{stageLeft() + minus.hitLeft - width, powerHitTop}, powerHitSize(minus)};
}

QRectF DashboardViewController::powerIncreaseFrame() const {
    if (!m_traits.hasControls) return {};
    return {{stageLeft() + plus.hitLeft, powerHitTop}, powerHitSize(plus)};
}

void DashboardViewController::buildToastLabelViewFontSize(const QString& text, int fontSize) {
    QFont font;
    font.setPixelSize(fontSize);
    constexpr double unbounded = 1e6;
    const auto size =
        QFontMetricsF{font}
            .boundingRect({0, 0, screenWidth(), unbounded}, Qt::TextWrapAnywhere | Qt::TextWordWrap, text)
            .size();
    const QSizeF label{std::ceil(size.width()) + 4 * toastMargin, std::ceil(size.height()) + 2 * toastMargin};
    m_toast = text;
    m_toastFrame = {{std::floor(screenWidth() * 0.5) - label.width() / 2, m_traits.toastTop}, label};
    emit toastChanged();
}

void DashboardViewController::sendvalues() {
    const auto kept = shared_from_this();  // it may be left meanwhile
    m_replay.run();
}

void DashboardViewController::touch(Touching what, int finger, double x, double y) {
    // Screens report fractions of a point, and a finger held still would never stand still.
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
        if (page.progress()) return;
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
