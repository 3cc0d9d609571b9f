#include "screens/NavigationController.h"

#include <utility>

#include "screens/Touch.h"

namespace torv {

NavigationController::NavigationController(std::shared_ptr<ViewController> root) {
    root->m_navigationController = this;
    m_stack.push_back(std::move(root));
    topViewController()->loadViewIfNeeded();
    topViewController()->viewWillAppear();
    topViewController()->viewDidAppear();
}

NavigationController::~NavigationController() = default;

QString NavigationController::backTitle() const {
    return m_stack.size() < 2 ? QString{} : m_stack[m_stack.size() - 2]->backButtonTitle();
}

void NavigationController::show(bool animated) {
    m_animated = animated;
    topViewController()->loadViewIfNeeded();
    topViewController()->viewWillAppear();
    emit stackChanged();
    topViewController()->viewDidAppear();
    // By then the look has let go of what it showed before.
    queueTouch(this, [](NavigationController& self) { self.m_leaving.clear(); });
}

void NavigationController::pushViewControllerAnimated(std::shared_ptr<ViewController> screen, bool animated) {
    if (!screen) return;
    topViewController()->viewWillDisappear();
    screen->m_navigationController = this;
    m_stack.push_back(std::move(screen));
    show(animated);
}

void NavigationController::popViewControllerAnimated(bool animated) {
    if (m_stack.size() < 2) return;
    topViewController()->viewWillDisappear();
    topViewController()->m_navigationController = nullptr;
    m_leaving.push_back(std::move(m_stack.back()));
    m_stack.pop_back();
    show(animated);
}

void NavigationController::popToRootViewControllerAnimated(bool animated) {
    while (m_stack.size() > 2) {
        m_stack[m_stack.size() - 2]->m_navigationController = nullptr;
        m_leaving.push_back(std::move(m_stack[m_stack.size() - 2]));
        m_stack.erase(m_stack.end() - 2);
    }
    popViewControllerAnimated(animated);
}

void NavigationController::touchBack() {
    queueTouch(this, [](NavigationController& self) { self.popViewControllerAnimated(true); });
}

}  // namespace torv
