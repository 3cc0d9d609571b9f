#include "screens/NavigationController.h"

#include <utility>

#include "screens/Touch.h"

namespace torv {

NavigationController::NavigationController(std::shared_ptr<ViewController> root) {
    take(std::move(root));
}

NavigationController::~NavigationController() {
    for (const auto& screen : m_stack) {  // others may still hold it
        screen->m_navigationController = nullptr;
        screen->m_below = m_below;
    }
}

QString NavigationController::backTitle() const {
    return m_stack.size() < 2 ? QString{} : m_stack[m_stack.size() - 2]->backButtonTitle();
}

void NavigationController::take(std::shared_ptr<ViewController> screen) {
    screen->m_navigationController = this;
    screen->m_below = this;
    connect(screen.get(), &ViewController::presentationChanged, this, &ViewController::presentationChanged);
    m_stack.push_back(std::move(screen));
}

void NavigationController::letGoOf(std::vector<std::shared_ptr<ViewController>>::iterator screen) {
    (*screen)->m_navigationController = nullptr;
    (*screen)->m_below = placeForAlerts();
    (*screen)->disconnect(this);
    m_leaving.push_back(std::move(*screen));
    m_stack.erase(screen);
}

void NavigationController::show(bool animated) {
    m_animated = animated;
    topViewController()->loadViewIfNeeded();
    topViewController()->viewWillAppear();
    emit stackChanged();
    emit presentationChanged();
    topViewController()->viewDidAppear();
    // By then the look has let go of what it showed before.
    queueTouch(this, [](NavigationController& self) { self.m_leaving.clear(); });
}

void NavigationController::pushViewControllerAnimated(std::shared_ptr<ViewController> screen, bool animated) {
    if (!screen) return;
    topViewController()->viewWillDisappear();
    take(std::move(screen));
    show(animated);
}

void NavigationController::popViewControllerAnimated(bool animated) {
    if (m_stack.size() < 2) return;
    topViewController()->viewWillDisappear();
    letGoOf(m_stack.end() - 1);
    show(animated);
}

void NavigationController::popToRootViewControllerAnimated(bool animated) {
    popToIndexAnimated(0, animated);
}

void NavigationController::popToIndexAnimated(int index, bool animated) {
    if (depth() < index + 2) return;
    while (depth() > index + 2)
        letGoOf(m_stack.end() - 2);
    popViewControllerAnimated(animated);
}

void NavigationController::touchEscape() {
    if (m_stack.size() > 1) return touchBack();
    if (auto* const button = topViewController()->leftBarButton()) button->touch();
}

void NavigationController::touchBack() {
    queueTouch(this, [](NavigationController& self) { self.popViewControllerAnimated(true); });
}

}  // namespace torv

#include "moc_NavigationController.cpp"
