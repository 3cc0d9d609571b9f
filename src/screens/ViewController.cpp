#include "screens/ViewController.h"

#include <algorithm>
#include <utility>

#include "screens/NavigationController.h"
#include "screens/Ownership.h"
#include "screens/Touch.h"

namespace torv {
namespace {

QVariantList objectsOf(const std::vector<std::unique_ptr<BarButtonItem>>& items) {
    QVariantList objects;
    for (const auto& item : items)
        objects.push_back(QVariant::fromValue(item.get()));
    return objects;
}

}  // namespace

ViewController::ViewController() {
    keepOwnership(*this);
}

ViewController::~ViewController() {
    if (!m_presented) return;
    m_presented->m_presenting = nullptr;
    m_presented->m_below = m_below;
}

void ViewController::setTitle(const QString& title) {
    if (m_title == title) return;
    m_title = title;
    emit titleChanged();
}

/// What leaves is let go of a turn later: it may be the very button whose action this is, and the look still
/// shows it.
void ViewController::replace(BarButtons& place, BarButtons items) {
    for (const auto& item : items)
        keepOwnership(*item);
    place.swap(items);
    emit barButtonsChanged();
    queueTouch(this, [leaving = std::make_shared<BarButtons>(std::move(items))](ViewController&) {});
}

ViewController::BarButtons ViewController::listOf(std::unique_ptr<BarButtonItem> item) {
    BarButtons items;
    if (item) items.push_back(std::move(item));
    return items;
}

void ViewController::setLeftBarButton(std::unique_ptr<BarButtonItem> item) {
    replace(m_leftBarButton, listOf(std::move(item)));
}

void ViewController::setRightBarButton(std::unique_ptr<BarButtonItem> item) {
    setRightBarButtons(listOf(std::move(item)));
}

void ViewController::setRightBarButtons(BarButtons items) {
    replace(m_rightBarButtons, std::move(items));
}

QVariantList ViewController::rightBarButtons() const {
    return objectsOf(m_rightBarButtons);
}

QVariantList ViewController::toolbarItems() const {
    return objectsOf(m_toolbarItems);
}

void ViewController::setToolbarItems(BarButtons items) {
    replace(m_toolbarItems, std::move(items));
}

void ViewController::loadViewIfNeeded() {
    if (m_loaded) return;
    m_loaded = true;
    viewDidLoad();
}

void ViewController::setViewSize(QSizeF size) {
    if (m_presented) m_presented->setViewSize(size);
    if (m_viewSize == size) return;
    m_viewSize = size;
    emit viewSizeChanged();
    if (m_loaded) viewDidLayout();
}

ViewController& ViewController::presenter() {
    return m_navigationController ? *m_navigationController : *this;
}

const ViewController& ViewController::outermost() const {
    const auto* screen = this;
    while (screen->m_below)
        screen = screen->m_below;
    return *screen;
}

void ViewController::presentModalViewControllerAnimated(std::shared_ptr<ViewController> screen,
                                                        bool animated) {
    if (&presenter() != this)
        return presenter().presentModalViewControllerAnimated(std::move(screen), animated);
    if (!screen || m_presented) return;
    m_presented = std::move(screen);
    m_presented->m_presenting = this;
    m_presented->m_below = this;
    connect(m_presented.get(), &ViewController::presentationChanged, this,
            &ViewController::presentationChanged);
    m_presented->setViewSize(m_viewSize);
    viewWillDisappear();
    m_presented->loadViewIfNeeded();
    m_presented->viewWillAppear();
    emit presentationChanged();
    if (const auto shown = m_presented) shown->viewDidAppear();
}

void ViewController::dismissModalViewControllerAnimated(bool animated) {
    if (&presenter() != this) return presenter().dismissModalViewControllerAnimated(animated);
    if (!m_presented) {
        if (m_presenting) m_presenting->dismissModalViewControllerAnimated(animated);
        return;
    }
    const auto leaving = std::exchange(m_presented, nullptr);
    leaving->m_presenting = nullptr;
    leaving->m_below = placeForAlerts();
    leaving->viewWillDisappear();
    viewWillAppear();
    emit presentationChanged();
    viewDidAppear();
    // The look may still draw the screen that has just gone.
    queueTouch(this, [leaving](ViewController&) {});
}

void ViewController::presentOverAll(std::shared_ptr<ViewController> screen, bool animated) {
    auto* top = const_cast<ViewController*>(&outermost());
    while (top->m_presented)
        top = top->m_presented.get();
    top->presentModalViewControllerAnimated(std::make_shared<NavigationController>(std::move(screen)),
                                            animated);
}

bool ViewController::isOnTop() const {
    const ViewController* const stack = m_navigationController;
    const bool isDismissed = stack && stack->m_below && !stack->m_presenting;
    return stack && m_navigationController->topViewController() == this && !stack->m_presented &&
           !isDismissed;
}

void ViewController::popIfOnTop() {
    if (m_navigationController && m_navigationController->topViewController() == this)
        m_navigationController->popViewControllerAnimated(true);
}

void ViewController::showAlert(std::shared_ptr<AlertView> alert) {
    if (!alert) return;
    auto& top = const_cast<ViewController&>(outermost());
    QObject::connect(alert.get(), &AlertView::dismissed, &top, [&top, gone = alert.get()] {
        const auto found = std::find_if(top.m_alerts.begin(), top.m_alerts.end(),
                                        [&](const auto& shown) { return shown.get() == gone; });
        if (found == top.m_alerts.end()) return;
        const auto leaving = *found;
        top.m_alerts.erase(found);
        emit top.presentationChanged();
        // The look may still draw it.
        queueTouch(&top, [leaving](ViewController&) {});
    });
    top.m_alerts.push_back(std::move(alert));
    emit top.presentationChanged();
}

AlertView* ViewController::alert() const {
    const auto& alerts = outermost().m_alerts;
    return alerts.empty() ? nullptr : alerts.back().get();
}

void ViewController::setProgress(std::shared_ptr<ProgressHUD> progress) {
    const auto leaving = std::exchange(m_progress, std::move(progress));
    if (leaving && leaving != m_progress) leaving->end();
    emit presentationChanged();
    queueTouch(this, [leaving](ViewController&) {});
}

}  // namespace torv

#include "moc_BarButtonItem.cpp"
#include "moc_ViewController.cpp"
