#include "dashboards/PickerScrollView.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/Platform.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds pressTime{500};
constexpr double dragAlpha = 0.5;
constexpr double dragScale = 3;

}  // namespace

PickerScrollView::PickerScrollView(QRectF frame, PickerScrollViewDelegate& delegate)
    : View(frame), m_pickerDelegate(delegate) {}

PickerScrollView::~PickerScrollView() {
    stopTimer();
}

std::shared_ptr<IndicatorView> PickerScrollView::itemAt(QPointF point) const {
    const auto inContent = point + QPointF{m_contentOffset, 0};
    const auto found = std::find_if(m_items.begin(), m_items.end(),
                                    [&](const auto& item) { return item->frame().contains(inContent); });
    return found == m_items.end() ? nullptr : *found;
}

void PickerScrollView::setContentOffset(double offset, bool animated) {
    if (m_contentOffset == offset && m_offsetAnimated == animated) return;
    m_contentOffset = offset;
    m_offsetAnimated = animated;
    emit scrolled();
}

void PickerScrollView::stopTimer() {
    if (const auto timer = std::exchange(m_touchingTimer, nullptr)) timer->invalidate();
}

void PickerScrollView::touchesBegan(std::shared_ptr<IndicatorView> item) {
    if (m_dragging) {
        m_touching = false;  // lost
        return;
    }
    stopTimer();
    m_copy = nullptr;
    m_pressed = std::move(item);
    if (!m_pressed) return disableDragging();
    m_touching = true;
    m_touchingTimer =
        Platform::current().runLoop().scheduleTimer(pressTime, false, [this](Timer&) { touchingTimeout(); });
}

void PickerScrollView::touchesMoved(QPointF point, QPointF previous) {
    if (!holdsView() || point == previous) return;
    if (!m_dragging) {
        m_pressed = nullptr;
        return stopTimer();
    }
    if (m_touching) {
        m_copy->setCenter(point);
        return m_pickerDelegate.pickerScrollViewDidDragView(*this, *m_copy);
    }
    releaseDraggingView();
    m_copy = nullptr;
}

void PickerScrollView::touchingTimeout() {
    stopTimer();
    if (m_pressed) prepareDragging();
}

void PickerScrollView::prepareDragging() {
    m_dragging = true;
    m_scrollEnabled = false;
    const auto point = m_pickerDelegate.touchingViewForPickerScrollView(
        *this, m_pressed->center() - QPointF{m_contentOffset, 0});
    m_copy = std::as_const(*m_pressed).draggingView();
    m_pressed = nullptr;
    if (!m_copy) return releaseDraggingView();
    m_copy->setAlpha(dragAlpha);
    m_copy->setCenter(point);
    m_pickerDelegate.pickerScrollViewAddTouchingView(*this, m_copy);
    m_copy->setScale(dragScale);
    m_pickerDelegate.pickerScrollViewDidBeginDragging(*this);
}

void PickerScrollView::endDragging(bool drops) {
    stopTimer();
    if (m_copy && m_dragging) {
        if (drops) m_pickerDelegate.pickerScrollViewShouldDropView(*this, m_copy);
        m_pickerDelegate.pickerScrollViewRemoveTouchingView(*this);  // kept here until the next press
    } else {
        m_pressed = nullptr;
        m_copy = nullptr;
    }
    disableDragging();
    m_pickerDelegate.pickerScrollViewDidEndDragging(*this);
}

void PickerScrollView::disableDragging() {
    m_touching = false;
    m_dragging = false;
    m_scrollEnabled = true;
}

}  // namespace torv

#include "moc_DraggableIndicatorView.cpp"
#include "moc_PickerScrollView.cpp"
