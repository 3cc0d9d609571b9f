#include "screens/ViewController.h"

#include <QQmlEngine>
#include <utility>

#include "screens/NavigationController.h"
#include "screens/Touch.h"

namespace torv {
namespace {

void replace(std::unique_ptr<BarButtonItem>& place, std::unique_ptr<BarButtonItem> item) {
    if (item) QQmlEngine::setObjectOwnership(item.get(), QQmlEngine::CppOwnership);
    place = std::move(item);
}

}  // namespace

ViewController::ViewController() {
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
}

ViewController::~ViewController() = default;

void ViewController::setTitle(const QString& title) {
    if (m_title == title) return;
    m_title = title;
    emit titleChanged();
}

void ViewController::setLeftBarButton(std::unique_ptr<BarButtonItem> item) {
    replace(m_leftBarButton, std::move(item));
    emit barButtonsChanged();
}

void ViewController::setRightBarButton(std::unique_ptr<BarButtonItem> item) {
    replace(m_rightBarButton, std::move(item));
    emit barButtonsChanged();
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

void ViewController::presentModalViewControllerAnimated(std::shared_ptr<ViewController> screen, bool) {
    if (!screen || m_presented) return;
    m_presented = std::move(screen);
    m_presented->m_presenting = this;
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
    if (!m_presented) {
        ViewController* const outermost = m_navigationController ? m_navigationController : this;
        if (auto* presenting = outermost->m_presenting)
            presenting->dismissModalViewControllerAnimated(animated);
        return;
    }
    const auto leaving = std::exchange(m_presented, nullptr);
    leaving->m_presenting = nullptr;
    leaving->viewWillDisappear();
    viewWillAppear();
    emit presentationChanged();
    viewDidAppear();
    // The look may still draw the screen that has just gone.
    queueTouch(this, [leaving](ViewController&) {});
}

}  // namespace torv
