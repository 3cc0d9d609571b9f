#include "dashboards/PageTouches.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <span>

#include "dashboards/DashboardViewController.h"
#include "platform/Platform.h"

namespace torv {
namespace {

constexpr double swipeDistance = 40;
constexpr double swipeSlant = 1.5;  // so much further along than across
constexpr std::chrono::milliseconds swipeTime{800};
constexpr double jitter = 8;  // a finger that is held still moves as far as that
constexpr std::chrono::milliseconds flickTime{300};
constexpr double pageTurn = 0.2;  // of the strip's width
/// On the tab, above the dots, and larger than it looks, so that a finger can hit it. In the picker's
/// coordinates.
constexpr QRectF handle{196, -34, 88, 44};

}  // namespace

bool PageTouches::pickerTouchAt(QPointF point, Touch& touch) const {
    auto& picker = m_page.pageView();
    if (handle.translated(picker.frame().topLeft()).contains(point)) {
        touch.target = Target::handle;
        touch.frame = handle.translated(picker.frame().topLeft());
        return true;
    }
    if (!picker.frame().contains(point)) return false;
    const auto inside = point - picker.frame().topLeft();
    struct Part {
        Target target;
        QRectF frame;
    };
    const Part parts[] = {
        {Target::dots, picker.pageControl().isHidden() ? QRectF{} : picker.pageControl().frame()},
        {Target::previous, picker.previousButtonFrame()},
        {Target::next, picker.nextButtonFrame()},
        {Target::strip, picker.scrollView().frame()}};
    // Of a closed picker only the dots can be touched; its other parts begin below them, on the window's last
    // row of pixels.
    for (const auto& part : std::span{parts}.first(picker.expanded() ? std::size(parts) : 1)) {
        if (!part.frame.contains(inside)) continue;
        touch.target = part.target;
        touch.frame = part.frame.translated(picker.frame().topLeft());
        break;
    }
    return true;
}

PageTouches::Touch PageTouches::touchAt(QPointF point) const {
    Touch touch;
    touch.start = touch.previous = point;
    touch.begin = Platform::current().runLoop().now();
    touch.offset = m_page.pageView().scrollView().contentOffset();
    if (m_page.isHeld()) return touch;  // under an overlay there are only swipes
    if (m_page.pickerInFront() && pickerTouchAt(point, touch)) return touch;
    struct Button {
        Target target;
        QRectF frame;
    };
    for (const auto& [target, frame] : {Button{Target::gear, m_page.gearFrame()},
                                        Button{Target::powerIncrease, m_page.powerIncreaseFrame()},
                                        Button{Target::powerDecrease, m_page.powerDecreaseFrame()}}) {
        if (!frame.contains(point)) continue;
        touch.target = target;
        touch.frame = frame;
        return touch;
    }
    if (pickerTouchAt(point, touch)) return touch;
    const auto& places = m_page.droppableViews();
    for (std::size_t i = places.size(); i-- > 0;) {
        const auto frame = places[i]->clearButtonFrame().translated(places[i]->frame().topLeft());
        if (!places[i]->clearButtonShown() || places[i]->alpha() <= 0 || !frame.contains(point)) continue;
        touch.target = Target::clear;
        touch.frame = frame;
        touch.place = i;
        break;
    }
    return touch;
}

void PageTouches::began(int finger, QPointF point) {
    const auto touch = m_touches.insert_or_assign(finger, touchAt(point)).first->second;
    auto& picker = m_page.pageView();
    if (touch.target == Target::strip) {
        auto& strip = picker.scrollView();
        return strip.touchesBegan(strip.itemAt(point - touch.frame.topLeft()));
    }
    if (touch.target == Target::dots) return picker.pageControl().touchBegan(point - touch.frame.topLeft());
    if (touch.target == Target::background) m_page.touchesBegan();
}

/// Whether the movement so far is a swipe that the page takes.
bool PageTouches::isSwipe(const Touch& touch, QPointF point) const {
    if (touch.target == Target::dots || m_page.pageView().scrollView().dragging()) return false;
    const auto way = point - touch.start;
    const double across = std::abs(way.x());
    const double along = std::abs(way.y());
    if (Platform::current().runLoop().now() - touch.begin > swipeTime) return false;
    const bool sideways = across >= swipeDistance && across > swipeSlant * along;
    const bool down = way.y() >= swipeDistance && along > swipeSlant * across;
    return down || (sideways && touch.target != Target::strip);
}

/// The page may be left by it, and with it all touches.
void PageTouches::swipe(const Touch& touch, QPointF point) {
    const auto way = point - touch.start;
    if (touch.target == Target::strip) m_page.pageView().releaseDraggingView();
    if (std::abs(way.y()) > std::abs(way.x())) {
        m_page.hideControls();
    } else if (way.x() < 0) {
        m_page.leftSwipe();
    } else {
        m_page.rightSwipe();
    }
}

void PageTouches::scroll(Touch& touch, QPointF point) {
    auto& picker = m_page.pageView();
    auto& strip = picker.scrollView();
    const double way = point.x() - touch.start.x();
    if (!touch.scrolling) {
        if (!strip.scrollEnabled() || std::abs(way) < jitter) return;
        touch.scrolling = true;
        picker.scrollViewWillBeginDragging();
    }
    const double last = std::max(0.0, picker.contentWidth() - strip.frame().width());
    strip.setContentOffset(std::clamp(touch.offset - way, 0.0, last), false);
    picker.scrollViewDidScroll();
}

/// Comes to rest on a page: the next one when the finger was quick or has gone far enough, and never further.
void PageTouches::settle(const Touch& touch, QPointF point) {
    auto& picker = m_page.pageView();
    auto& strip = picker.scrollView();
    const double width = strip.frame().width();
    const double way = (touch.start.x() - point.x()) / width;
    const bool quick = Platform::current().runLoop().now() - touch.begin < flickTime;
    const int turn = !quick && std::abs(way) < pageTurn ? 0 : way < 0 ? -1 : 1;
    const int lastPage = std::max(picker.pageControl().numberOfPages() - 1, 0);
    const int page = std::clamp(static_cast<int>(std::lround(touch.offset / width)) + turn, 0, lastPage);
    strip.setContentOffset(page * width, true);
    picker.scrollViewDidScroll();
    picker.scrollViewDidEndDecelerating();
}

void PageTouches::moved(int finger, QPointF point) {
    const auto found = m_touches.find(finger);
    if (found == m_touches.end()) return;
    if (found->second.swiped) return;
    if (isSwipe(found->second, point)) {
        found->second.swiped = true;
        return swipe(Touch{found->second}, point);
    }
    auto touch = found->second;  // what it moves may cancel all touches
    if (touch.target == Target::strip) {
        auto& strip = m_page.pageView().scrollView();
        touch.dragged = touch.dragged || strip.hasCopy();
        const auto way = point - touch.start;
        touch.moved = touch.moved || std::hypot(way.x(), way.y()) > jitter;
        found->second = touch;
        if (!touch.moved && !strip.dragging()) return;
        if (!touch.scrolling) strip.touchesMoved(point, touch.previous);
        if (!touch.dragged) scroll(touch, point);
    }
    touch.previous = point;
    if (const auto still = m_touches.find(finger); still != m_touches.end()) still->second = touch;
}

void PageTouches::ended(int finger, QPointF point) {
    const auto found = m_touches.find(finger);
    if (found == m_touches.end()) return;
    const auto touch = found->second;
    m_touches.erase(found);
    emit m_page.pressedChanged();  // before an action that may block
    if (touch.swiped) return;
    auto& picker = m_page.pageView();
    if (touch.target == Target::strip) {
        if (touch.scrolling) settle(touch, point);
        picker.scrollView().touchesEnded();
    } else if (touch.target == Target::dots) {
        picker.pageControl().touchEnded(point - touch.frame.topLeft());
    } else if (touch.frame.contains(point)) {
        act(touch);
    }
}

void PageTouches::act(const Touch& touch) {
    auto& picker = m_page.pageView();
    switch (touch.target) {
        case Target::gear:
            return m_page.pushMainMenuViewController();
        case Target::powerDecrease:
            return m_page.decreasePower();
        case Target::powerIncrease:
            return m_page.increasePower();
        case Target::clear:
            return m_page.droppableViews()[touch.place]->clear();
        case Target::previous:
            return picker.previousPage();
        case Target::next:
            return picker.nextPage();
        case Target::handle:
            return picker.setExpandedAnimate(!picker.expanded(), true);
        case Target::background:
        case Target::dots:
        case Target::strip:
            return;
    }
}

void PageTouches::cancelled() {
    const bool onStrip = std::any_of(m_touches.begin(), m_touches.end(),
                                     [](const auto& touch) { return touch.second.target == Target::strip; });
    m_touches.clear();
    if (onStrip) m_page.pageView().scrollView().cancelDragging();
}

QString PageTouches::pressedButton() const {
    for (const auto& [finger, touch] : m_touches) {
        switch (touch.target) {
            case Target::gear:
                return QStringLiteral("gear");
            case Target::powerDecrease:
                return QStringLiteral("minus");
            case Target::powerIncrease:
                return QStringLiteral("plus");
            case Target::previous:
                return QStringLiteral("previous");
            case Target::next:
                return QStringLiteral("next");
            default:
                break;
        }
    }
    return {};
}

}  // namespace torv
