#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>
#include <cstddef>
#include <map>

#include "platform/RunLoop.h"

namespace torv {

class DashboardViewController;

/// Turns fingers on a page into what they mean: buttons on touch up inside, the strip's scrolling and press
/// and hold, taps and swipes on the dots, swipes over the page. Main thread; points of the page.
class PageTouches final {
public:
    explicit PageTouches(DashboardViewController& page) : m_page(page) {}

    void began(int finger, QPointF point);
    void moved(int finger, QPointF point);
    void ended(int finger, QPointF point);
    /// The system takes all fingers away.
    void cancelled();

    /// What a finger holds down: "gear", "minus", "plus", "previous", "next" or nothing.
    [[nodiscard]] QString pressedButton() const;

private:
    enum class Target {
        background,
        gear,
        powerDecrease,
        powerIncrease,
        clear,
        previous,
        next,
        dots,
        strip,
        handle
    };
    struct Touch {
        Target target = Target::background;
        QRectF frame;           // of the target
        std::size_t place = 0;  // of a clear button
        QPointF start;
        QPointF previous;
        RunLoop::Clock::time_point begin;
        bool swiped = false;
        bool scrolling = false;
        bool moved = false;    // beyond what a finger that is held still does
        bool dragged = false;  // it has carried a sensor, and scrolls no more
        double offset = 0;     // of the strip at the start
    };

    [[nodiscard]] Touch touchAt(QPointF point) const;
    [[nodiscard]] bool pickerTouchAt(QPointF point, Touch& touch) const;
    [[nodiscard]] bool isSwipe(const Touch& touch, QPointF point) const;
    void swipe(const Touch& touch, QPointF point);
    void scroll(Touch& touch, QPointF point);
    void settle(const Touch& touch, QPointF point);
    void act(const Touch& touch);

    DashboardViewController& m_page;
    std::map<int, Touch> m_touches;
};

}  // namespace torv
