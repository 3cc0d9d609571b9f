#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QList>
#include <memory>
#include <optional>
#include <vector>

#include "dashboards/CustomPageControl.h"
#include "dashboards/PickerScrollView.h"

namespace torv {

class PageView;

/// What a page answers to its picker. Main thread.
class PageViewDelegate {
public:
    PageViewDelegate() = default;
    PageViewDelegate(const PageViewDelegate&) = delete;
    PageViewDelegate& operator=(const PageViewDelegate&) = delete;
    virtual ~PageViewDelegate() = default;

    virtual bool pageViewShouldDropView(PageView& pageView, const std::shared_ptr<CarriedView>& view) = 0;
    virtual void pageViewAddTouchingView(PageView& pageView, const std::shared_ptr<CarriedView>& view) = 0;
    virtual void pageViewRemoveTouchingView(PageView& pageView) = 0;
    virtual void pageViewDidDragView(PageView& pageView, CarriedView& view) = 0;
    /// A point of the view that holds the picker in the coordinates of the view that drags go over.
    [[nodiscard]] virtual QPointF touchingViewForPageView(PageView& pageView, QPointF point) = 0;
    virtual void pageViewDidRetract(PageView& pageView) = 0;
    virtual void pageViewDidExpand(PageView& pageView) = 0;
    virtual void pageViewDidBeginDragging(PageView& pageView) = 0;
    virtual void pageViewDidEndDragging(PageView& pageView) = 0;
};

/// The picker at the bottom of a page: a drawer with a strip of indicators, that slides open and closed. Open
/// at construction. Main thread; points.
class PageView final : public torv::View, public PickerScrollViewDelegate, public CustomPageControlDelegate {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(torv::PickerScrollView* scrollView READ scrollViewObject CONSTANT)
    Q_PROPERTY(torv::CustomPageControl* pageControl READ pageControlObject CONSTANT)
    Q_PROPERTY(QString image READ image NOTIFY imageChanged)
    Q_PROPERTY(bool warningOld READ isWarningOld NOTIFY imageChanged)
    Q_PROPERTY(bool expanded READ expanded NOTIFY frameChanged)
    Q_PROPERTY(bool animating READ isAnimating NOTIFY animatingChanged)
    Q_PROPERTY(QList<torv::IndicatorView*> items READ itemObjects NOTIFY itemsChanged)
    Q_PROPERTY(QRectF previousButtonFrame READ previousButtonFrame CONSTANT)
    Q_PROPERTY(QRectF nextButtonFrame READ nextButtonFrame CONSTANT)

public:
    PageView(QRectF frame, PageViewDelegate& delegate);
    ~PageView() override;

    void setViewItems(std::vector<std::shared_ptr<IndicatorView>> items);
    /// Null when the strip has no such item.
    [[nodiscard]] std::shared_ptr<IndicatorView> indicatorViewTag(AID tag) const;
    void setNumberOfComponentsPerPage(std::int64_t count) { m_numberOfComponentsPerPage = count; }
    void releaseDraggingView() { m_scrollView->releaseDraggingView(); }

    [[nodiscard]] bool expanded() const { return m_expanded; }
    /// At once and told to nobody. It moves the frame whether or not that changes anything, so call it only
    /// on a change.
    void setExpanded(bool expanded);
    /// Animated it toggles, so call it only on a change.
    void setExpandedAnimate(bool expanded, bool animate);
    [[nodiscard]] bool isAnimating() const { return m_animating; }
    [[nodiscard]] bool warning() const { return m_warning; }
    /// An open picker never shows the alert.
    void setWarning(bool warning);
    /// All that it warns of came too long ago to be taken for live.
    [[nodiscard]] bool isWarningOld() const { return m_warningOld; }
    void setWarningOld(bool old);

    void previousPage();
    void nextPage();
    void pageControlDidChange();
    void scrollViewDidScroll();
    void scrollViewWillBeginDragging();
    void scrollViewDidEndDecelerating() { m_pageControlUsed = false; }

    [[nodiscard]] PickerScrollView& scrollView() { return *m_scrollView; }
    [[nodiscard]] CustomPageControl& pageControl() { return *m_pageControl; }
    [[nodiscard]] PickerScrollView* scrollViewObject() const { return m_scrollView.get(); }
    [[nodiscard]] CustomPageControl* pageControlObject() const { return m_pageControl.get(); }
    [[nodiscard]] QList<IndicatorView*> itemObjects() const;
    [[nodiscard]] QString image() const { return m_image; }
    [[nodiscard]] QRectF previousButtonFrame() const;
    [[nodiscard]] QRectF nextButtonFrame() const;
    /// Of the whole content; the strip never scrolls past its last page.
    [[nodiscard]] double contentWidth() const;

    bool pickerScrollViewShouldDropView(PickerScrollView&,
                                        const std::shared_ptr<DraggableIndicatorView>& view) override {
        return m_delegate.pageViewShouldDropView(*this, view);
    }
    void pickerScrollViewAddTouchingView(PickerScrollView&,
                                         const std::shared_ptr<DraggableIndicatorView>& view) override {
        m_delegate.pageViewAddTouchingView(*this, view);
    }
    void pickerScrollViewRemoveTouchingView(PickerScrollView&) override {
        m_delegate.pageViewRemoveTouchingView(*this);
    }
    void pickerScrollViewDidDragView(PickerScrollView&, DraggableIndicatorView& view) override {
        m_delegate.pageViewDidDragView(*this, view);
    }
    QPointF touchingViewForPickerScrollView(PickerScrollView&, QPointF point) override;
    void pickerScrollViewDidBeginDragging(PickerScrollView&) override {
        m_delegate.pageViewDidBeginDragging(*this);
    }
    void pickerScrollViewDidEndDragging(PickerScrollView&) override {
        m_delegate.pageViewDidEndDragging(*this);
    }
    void customPageControlDidChangePage(CustomPageControl&) override { pageControlDidChange(); }
    void customPageControlDidChangeState(CustomPageControl&) override;

signals:
    void imageChanged();
    void animatingChanged();
    void itemsChanged();

private:
    void moveFrame(bool expanded);
    void showHideAnimationDidStop();
    void showAlert(bool alert);
    void setAnimating(bool animating);

    PageViewDelegate& m_delegate;
    std::unique_ptr<PickerScrollView> m_scrollView;
    std::unique_ptr<CustomPageControl> m_pageControl;
    QString m_image;
    std::optional<bool> m_alertShown;
    std::shared_ptr<Timer> m_animation;
    bool m_pageControlUsed = false;
    bool m_expanded = true;
    bool m_warning = false;
    bool m_warningOld = false;
    bool m_animating = false;
    std::int64_t m_numberOfComponentsPerPage = 4;
};

}  // namespace torv
