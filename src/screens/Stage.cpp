#include "screens/Stage.h"

#include <utility>

#include "screens/NavigationController.h"
#include "screens/Ownership.h"
#include "screens/Touch.h"

namespace torv {
namespace {

ProgressHUD* inBackground(const ViewController& screen) {
    auto* const progress = screen.progress();
    return progress && progress->inBackground() ? progress : nullptr;
}

/// Of the screen, or of any on its stack.
ProgressHUD* backgroundProgress(const ViewController& screen) {
    if (auto* const own = inBackground(screen)) return own;
    const auto* const stack = qobject_cast<const NavigationController*>(&screen);
    if (!stack) return nullptr;
    for (const auto& each : stack->screens()) {
        if (auto* const progress = inBackground(*each)) return progress;
    }
    return nullptr;
}

}  // namespace

Stage::Stage(std::shared_ptr<ViewController> root, LinkStatus* status)
    : m_root(std::move(root)), m_status(status), m_top(m_root.get()) {
    keepOwnership(*this);
    if (m_status) keepOwnership(*m_status);
    keepOwnership(m_display);
    connect(m_root.get(), &ViewController::presentationChanged, this, &Stage::look);
    m_root->loadViewIfNeeded();
    m_root->viewWillAppear();
    m_root->viewDidAppear();
    look();
}

Stage::~Stage() = default;

void Stage::look() {
    auto* screen = m_root.get();
    while (auto* presented = screen->presentedViewController())
        screen = presented;
    const auto* const stack = qobject_cast<NavigationController*>(screen);
    auto* progress = stack ? stack->topViewController()->progress() : screen->progress();
    // What goes on in the background is told on every screen over the one that it belongs to, and goes on
    // when that one has been left.
    for (auto* below = screen; below && !progress; below = below->presentingViewController())
        progress = backgroundProgress(*below);
    if (!progress && m_lastProgress && m_lastProgress->inBackground()) progress = m_lastProgress;
    if (progress && m_lastProgress != progress) {
        m_lastProgress = progress;
        connect(progress, &ProgressHUD::ended, this, &Stage::look);
        connect(progress, &QObject::destroyed, this, &Stage::look);
    }
    // Listeners may look at any of them, so all are known before the first is told.
    const bool portrait = (stack ? stack->topViewController() : screen)->orientations() ==
                          ViewController::Orientations::portrait;
    const bool portraitIsNew = std::exchange(m_portrait, portrait) != portrait;
    const bool topIsNew = std::exchange(m_top, screen) != screen;
    const bool progressIsNew = std::exchange(m_progress, progress) != progress;
    const bool alertIsNew = std::exchange(m_alert, m_root->alert()) != m_root->alert();
    if (portraitIsNew) emit portraitChanged();
    if (topIsNew) emit topChanged();
    if (progressIsNew) emit progressChanged();
    if (alertIsNew) emit alertChanged();
}

void Stage::setViewSize(QSizeF size) {
    if (viewSize() == size) return;
    m_root->setViewSize(size);
    emit viewSizeChanged();
}

void Stage::touchStatus() {
    queueTouch(this, [](Stage& stage) {
        if (stage.m_statusTouched) stage.m_statusTouched();
    });
}

void Stage::touchBrightness() {
    queueTouch(this, [](Stage& stage) { stage.m_display.nextBrightness(); });
}

void Stage::setMark(const QString& word, bool shown) {
    if (m_marks.contains(word) == shown) return;
    if (shown) {
        m_marks.push_back(word);
    } else {
        m_marks.removeAll(word);
    }
    emit marksChanged();
}

}  // namespace torv

#include "moc_LinkStatus.cpp"
#include "moc_Stage.cpp"
