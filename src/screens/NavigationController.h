#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>
#include <vector>

#include "screens/ViewController.h"

namespace torv {

/// A stack of screens, the topmost of which is shown. The root stays. Main thread.
class NavigationController final : public torv::ViewController {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(torv::ViewController* topViewController READ topViewController NOTIFY stackChanged)
    Q_PROPERTY(int depth READ depth NOTIFY stackChanged)
    Q_PROPERTY(QString backTitle READ backTitle NOTIFY stackChanged)
    Q_PROPERTY(bool animated READ animated NOTIFY stackChanged)

public:
    explicit NavigationController(std::shared_ptr<ViewController> root);
    ~NavigationController() override;

    [[nodiscard]] QString look() const override { return QStringLiteral("screens/NavigationScreen.qml"); }
    [[nodiscard]] ViewController* topViewController() const { return m_stack.back().get(); }
    /// From the root up; the last one is on top.
    [[nodiscard]] const std::vector<std::shared_ptr<ViewController>>& screens() const { return m_stack; }
    [[nodiscard]] int depth() const { return static_cast<int>(m_stack.size()); }
    [[nodiscard]] QString backTitle() const;
    /// Whether the last change is to be shown as a movement.
    [[nodiscard]] bool animated() const { return m_animated; }

    void pushViewControllerAnimated(std::shared_ptr<ViewController> screen, bool animated);
    /// Does nothing on the root.
    void popViewControllerAnimated(bool animated);
    void popToRootViewControllerAnimated(bool animated);
    /// Until the screen that lies so high is on top, the root being 0. Does nothing on a lower stack.
    void popToIndexAnimated(int index, bool animated);

    // As the whole stack comes and goes, so does its topmost screen.
    void viewDidLoad() override { topViewController()->loadViewIfNeeded(); }
    void viewWillAppear() override { topViewController()->viewWillAppear(); }
    void viewDidAppear() override { topViewController()->viewDidAppear(); }
    void viewWillDisappear() override { topViewController()->viewWillDisappear(); }

    Q_INVOKABLE void touchBack();
    /// The key that leads back: one screen back, and from the root what its left bar button does.
    Q_INVOKABLE void touchEscape();

signals:
    void stackChanged();

private:
    void take(std::shared_ptr<ViewController> screen);
    void letGoOf(std::vector<std::shared_ptr<ViewController>>::iterator screen);
    void show(bool animated);

    std::vector<std::shared_ptr<ViewController>> m_stack;
    // The look may still draw the screen that has just gone.
    std::vector<std::shared_ptr<ViewController>> m_leaving;
    bool m_animated = false;
};

}  // namespace torv
