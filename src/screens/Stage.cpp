#include "screens/Stage.h"

#include <QQmlEngine>
#include <utility>

#include "screens/Touch.h"

namespace torv {

Stage::Stage(std::shared_ptr<ViewController> root, QObject* status)
    : m_root(std::move(root)), m_status(status) {
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    if (m_status) QQmlEngine::setObjectOwnership(m_status, QQmlEngine::CppOwnership);
    connect(m_root.get(), &ViewController::presentationChanged, this, &Stage::topChanged);
    m_root->loadViewIfNeeded();
    m_root->viewWillAppear();
    m_root->viewDidAppear();
}

Stage::~Stage() = default;

ViewController* Stage::top() const {
    auto* screen = m_root.get();
    while (auto* presented = screen->presentedViewController())
        screen = presented;
    return screen;
}

void Stage::setViewSize(QSizeF size) {
    if (viewSize() == size) return;
    m_root->setViewSize(size);
    emit viewSizeChanged();
}

void Stage::show(std::shared_ptr<AlertView> alert) {
    QObject::connect(alert.get(), &AlertView::dismissed, this, [this, gone = alert.get()] {
        std::vector<std::shared_ptr<AlertView>> leaving;  // outlives the look's letting go
        for (auto& shown : m_alerts) {
            if (shown.get() == gone) leaving.push_back(shown);
        }
        std::erase_if(m_alerts, [&](const auto& shown) { return shown.get() == gone; });
        emit alertsChanged();
        queueTouch(this, [leaving](Stage&) {});
    });
    m_alerts.push_back(std::move(alert));
    emit alertsChanged();
}

void Stage::setProgress(std::shared_ptr<ProgressHUD> progress) {
    const auto leaving = std::exchange(m_progress, std::move(progress));
    emit progressChanged();
    queueTouch(this, [leaving](Stage&) {});
}

}  // namespace torv
