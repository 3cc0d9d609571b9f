#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>
#include <vector>

#include "dashboards/IndicatorView.h"
#include "platform/Timer.h"

namespace torv {

class PickerScrollView;

/// What the strip asks and tells of a drag. Main thread.
class PickerScrollViewDelegate {
public:
    PickerScrollViewDelegate() = default;
    PickerScrollViewDelegate(const PickerScrollViewDelegate&) = delete;
    PickerScrollViewDelegate& operator=(const PickerScrollViewDelegate&) = delete;
    virtual ~PickerScrollViewDelegate() = default;

    virtual bool pickerScrollViewShouldDropView(PickerScrollView& strip,
                                                const std::shared_ptr<DraggableIndicatorView>& view) = 0;
    virtual void pickerScrollViewAddTouchingView(PickerScrollView& strip,
                                                 const std::shared_ptr<DraggableIndicatorView>& view) = 0;
    virtual void pickerScrollViewDidDragView(PickerScrollView& strip, DraggableIndicatorView& view) = 0;
    /// A point of the strip in the coordinates of the view that drags go over.
    [[nodiscard]] virtual QPointF touchingViewForPickerScrollView(PickerScrollView& strip, QPointF point) = 0;
    virtual void pickerScrollViewRemoveTouchingView(PickerScrollView& strip) = 0;
    virtual void pickerScrollViewDidBeginDragging(PickerScrollView& strip) = 0;
    virtual void pickerScrollViewDidEndDragging(PickerScrollView& strip) = 0;
};

/// The paging strip of indicators, and the press and hold that picks one up. Main thread; points.
///
///   State     touching  dragging  touching view       timer    scrolling
///   idle      false     false     none, or a stale one  none     on
///   pressed   true      false     the pressed item    running  on
///   moved     true      false     none                none     on
///   dragging  true      true      the drag copy       none     off
///   lost      false     true      the drag copy       none     off
///
/// A press that stands still for half a second picks up; any earlier movement gives the touch to the
/// scrolling. A second touch during a drag loses it: the next movement of either drops the copy where it was
/// last.
class PickerScrollView final : public torv::View {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(double contentOffset READ contentOffset NOTIFY scrolled)
    Q_PROPERTY(bool offsetAnimated READ offsetAnimated NOTIFY scrolled)

public:
    PickerScrollView(QRectF frame, PickerScrollViewDelegate& delegate);
    ~PickerScrollView() override;

    [[nodiscard]] const std::vector<std::shared_ptr<IndicatorView>>& items() const { return m_items; }
    void setItems(std::vector<std::shared_ptr<IndicatorView>> items) { m_items = std::move(items); }
    /// Null where there is none; the point counts from the strip's corner.
    [[nodiscard]] std::shared_ptr<IndicatorView> itemAt(QPointF point) const;

    /// Null begins on the strip itself.
    void touchesBegan(std::shared_ptr<IndicatorView> item);
    /// In the coordinates of the view that drags go over.
    void touchesMoved(QPointF point, QPointF previous);
    void touchesEnded() { releaseDraggingView(); }
    void releaseDraggingView() { endDragging(true); }
    /// The system, or a change of the page, takes the touch away: nothing is dropped.
    void cancelDragging() { endDragging(false); }
    void touchingTimeout();

    [[nodiscard]] bool touching() const { return m_touching; }
    [[nodiscard]] bool dragging() const { return m_dragging; }
    [[nodiscard]] bool timerRunning() const { return m_touchingTimer && m_touchingTimer->isValid(); }
    [[nodiscard]] bool holdsView() const { return m_pressed || m_copy; }
    /// Also a stale one.
    [[nodiscard]] bool hasCopy() const { return m_copy != nullptr; }
    [[nodiscard]] bool scrollEnabled() const { return m_scrollEnabled; }

    [[nodiscard]] double contentOffset() const { return m_contentOffset; }
    [[nodiscard]] bool offsetAnimated() const { return m_offsetAnimated; }
    void setContentOffset(double offset, bool animated);

signals:
    void scrolled();

private:
    void endDragging(bool drops);
    void disableDragging();
    void prepareDragging();
    void stopTimer();

    PickerScrollViewDelegate& m_pickerDelegate;
    std::vector<std::shared_ptr<IndicatorView>> m_items;
    bool m_touching = false;
    bool m_dragging = false;
    bool m_scrollEnabled = true;
    std::shared_ptr<Timer> m_touchingTimer;
    std::shared_ptr<IndicatorView> m_pressed;
    std::shared_ptr<DraggableIndicatorView> m_copy;
    double m_contentOffset = 0;
    bool m_offsetAnimated = false;
};

}  // namespace torv
