#include "dashboards/PageView.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "dashboards/StripLayout.h"
#include "platform/Platform.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds slideTime{500};
constexpr QRectF dotsFrame{130, 4, 220, 26};  // on the tab, which is all that a closed picker shows
constexpr QRectF scrollFrame{20, 30, 440, 50};
constexpr double buttonWidth = 20;
constexpr std::int32_t dotDistance = 5;

/// Shared by the pickers of all pages: a new one begins with as many dots as the last one had.
std::int32_t& numberOfPages() {
    static std::int32_t pages = 0;
    return pages;
}

}  // namespace

PageView::PageView(QRectF frame, PageViewDelegate& delegate)
    : View(frame),
      m_delegate(delegate),
      m_scrollView(std::make_unique<PickerScrollView>(scrollFrame, *this)),
      m_pageControl(std::make_unique<CustomPageControl>(dotsFrame, *this)) {
    m_pageControl->setDistanceBetweenDots(dotDistance);
    m_pageControl->setNumberOfPages(numberOfPages());
    m_pageControl->setExpanded(true);
    m_pageControl->setPagingEnabled(true);
    showAlert(false);
}

PageView::~PageView() {
    if (m_animation) m_animation->invalidate();
}

void PageView::setViewItems(std::vector<std::shared_ptr<IndicatorView>> items) {
    const auto count = static_cast<int>(items.size());
    const double width = items.empty() ? 0 : items.back()->frame().width();
    const auto layout =
        StripLayout::make(scrollFrame.width(), width, static_cast<int>(m_numberOfComponentsPerPage), count);
    for (int i = 0; i < count; ++i) {
        auto& item = *items[static_cast<std::size_t>(i)];
        item.setFrame({QPointF{layout.x(i), 0}, item.frame().size()});
    }
    // The look still draws the ones that go.
    auto leaving = m_scrollView->items();
    m_scrollView->setItems(std::move(items));
    numberOfPages() = layout.pages;
    m_pageControl->setNumberOfPages(layout.pages);
    m_scrollView->setContentOffset(m_pageControl->currentPage() * scrollFrame.width(), false);
    emit itemsChanged();
    leaving.clear();
}

QList<IndicatorView*> PageView::itemObjects() const {
    QList<IndicatorView*> objects;
    for (const auto& item : m_scrollView->items())
        objects.push_back(item.get());
    return objects;
}

std::shared_ptr<IndicatorView> PageView::indicatorViewTag(AID tag) const {
    const auto& items = m_scrollView->items();
    const auto found =
        std::find_if(items.begin(), items.end(), [&](const auto& item) { return item->tag() == tag; });
    return found == items.end() ? nullptr : *found;
}

double PageView::contentWidth() const {
    return m_pageControl->numberOfPages() * scrollFrame.width();
}

QRectF PageView::previousButtonFrame() const {
    return {scrollFrame.left() - buttonWidth, scrollFrame.top(), buttonWidth, scrollFrame.height()};
}

QRectF PageView::nextButtonFrame() const {
    return {scrollFrame.right(), scrollFrame.top(), buttonWidth, scrollFrame.height()};
}

QPointF PageView::touchingViewForPickerScrollView(PickerScrollView& strip, QPointF point) {
    return m_delegate.touchingViewForPageView(*this, point + strip.frame().topLeft() + frame().topLeft());
}

void PageView::previousPage() {
    if (m_pageControl->currentPage() <= 0) return;
    m_pageControl->setCurrentPage(m_pageControl->currentPage() - 1);
    pageControlDidChange();
}

/// Looks at the number of items and not at that of pages; the dots refuse a page that does not exist.
void PageView::nextPage() {
    if (m_pageControl->currentPage() >= static_cast<std::int32_t>(m_scrollView->items().size()) - 1) return;
    m_pageControl->setCurrentPage(m_pageControl->currentPage() + 1);
    pageControlDidChange();
}

void PageView::pageControlDidChange() {
    m_pageControlUsed = true;
    m_scrollView->setContentOffset(m_pageControl->currentPage() * scrollFrame.width(), true);
}

void PageView::scrollViewDidScroll() {
    if (m_pageControlUsed) return;
    m_pageControl->setCurrentPage(StripLayout::pageAt(m_scrollView->contentOffset(), scrollFrame.width()));
}

void PageView::scrollViewWillBeginDragging() {
    m_pageControlUsed = false;
    m_scrollView->releaseDraggingView();
}

void PageView::moveFrame(bool expanded) {
    const double strip = scrollFrame.height();
    const double closed = dotsFrame.height() + dotsFrame.top();
    auto moved = frame();
    moved.moveTop(moved.top() + (expanded ? -strip : strip));
    moved.setHeight(closed + (expanded ? strip : 0));
    setFrame(moved);
}

void PageView::customPageControlDidChangeState(CustomPageControl&) {
    setAnimating(true);
    const bool opens = !m_expanded;
    m_pageControl->setPagingEnabled(opens);
    if (opens) showAlert(false);
    moveFrame(opens);
    if (opens) {
        m_delegate.pageViewDidExpand(*this);
    } else {
        m_delegate.pageViewDidRetract(*this);
    }
    m_expanded = opens;
    emit frameChanged();  // also for what depends on `expanded`
    if (m_animation) m_animation->invalidate();
    m_animation = Platform::current().runLoop().scheduleTimer(slideTime, false,
                                                              [this](Timer&) { showHideAnimationDidStop(); });
}

void PageView::showHideAnimationDidStop() {
    if (!m_expanded && m_warning) showAlert(true);
    setAnimating(false);
}

void PageView::setExpanded(bool expanded) {
    m_expanded = expanded;
    m_pageControl->setExpanded(expanded);
    m_pageControl->setPagingEnabled(expanded);
    moveFrame(expanded);
    showAlert(!expanded && m_warning);
}

void PageView::setExpandedAnimate(bool expanded, bool animate) {
    if (!animate) return setExpanded(expanded);
    m_pageControl->setExpanded(expanded);
    customPageControlDidChangeState(*m_pageControl);
}

void PageView::setWarning(bool warning) {
    m_warning = warning;
    showAlert(warning && !m_expanded && !m_animating);
}

void PageView::setWarningOld(bool old) {
    if (m_warningOld == old) return;
    m_warningOld = old;
    emit imageChanged();
}

void PageView::showAlert(bool alert) {
    if (m_alertShown == alert) return;  // asked with every value of every sensor
    m_alertShown = alert;
    m_image = imageNamed(alert ? QStringLiteral("BG_SELECTOR_ALERT.png") : QStringLiteral("BG_SELECTOR.png"))
                  .source;
    emit imageChanged();
}

void PageView::setAnimating(bool animating) {
    if (m_animating == animating) return;
    m_animating = animating;
    emit animatingChanged();
}

}  // namespace torv

#include "moc_PageView.cpp"
