#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QPointer>
#include <QSizeF>
#include <QString>
#include <QVariantList>
#include <algorithm>
#include <memory>
#include <vector>

#include "screens/AlertView.h"
#include "screens/BarButtonItem.h"
#include "screens/ProgressHUD.h"

namespace torv {

class NavigationController;

/// One screen without its looks: title, bar buttons, and the calls as it comes and goes. Main thread.
///
/// `look` names the QML file that draws it. A screen may present another over itself; that one ends with its
/// dismissal. Lengths are points.
class ViewController : public QObject, public std::enable_shared_from_this<ViewController> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(QString look READ look CONSTANT)
    Q_PROPERTY(QString backButtonTitle READ backButtonTitle CONSTANT)
    Q_PROPERTY(bool portrait READ isPortrait CONSTANT)
    Q_PROPERTY(QSizeF viewSize READ viewSize NOTIFY viewSizeChanged)
    Q_PROPERTY(torv::BarButtonItem* leftBarButton READ leftBarButton NOTIFY barButtonsChanged)
    Q_PROPERTY(QVariantList rightBarButtons READ rightBarButtons NOTIFY barButtonsChanged)
    Q_PROPERTY(QVariantList toolbarItems READ toolbarItems NOTIFY barButtonsChanged)

public:
    enum class Orientations { landscape, portrait };

    ViewController();
    ~ViewController() override;

    [[nodiscard]] QString title() const { return m_title; }
    void setTitle(const QString& title);
    [[nodiscard]] virtual QString look() const = 0;
    /// What the back button of the screen above this one reads.
    [[nodiscard]] QString backButtonTitle() const { return m_backButtonTitle; }
    [[nodiscard]] BarButtonItem* leftBarButton() const {
        return m_leftBarButton.empty() ? nullptr : m_leftBarButton.front().get();
    }
    /// The first one of several.
    [[nodiscard]] BarButtonItem* rightBarButton() const {
        return m_rightBarButtons.empty() ? nullptr : m_rightBarButtons.front().get();
    }
    [[nodiscard]] QVariantList rightBarButtons() const;
    void setLeftBarButton(std::unique_ptr<BarButtonItem> item);
    /// In place of all; null for none.
    void setRightBarButton(std::unique_ptr<BarButtonItem> item);
    using BarButtons = std::vector<std::unique_ptr<BarButtonItem>>;
    void setRightBarButtons(BarButtons items);

    /// Of the bar below the screen; with none there is no bar.
    [[nodiscard]] QVariantList toolbarItems() const;
    void setToolbarItems(BarButtons items);

    [[nodiscard]] virtual Orientations orientations() const { return Orientations::landscape; }
    [[nodiscard]] bool isPortrait() const { return orientations() == Orientations::portrait; }
    [[nodiscard]] NavigationController* navigationController() const { return m_navigationController; }

    [[nodiscard]] QSizeF viewSize() const { return m_viewSize; }
    void setViewSize(QSizeF size);
    /// The longer side of the view, and of the screen; the window is the screen.
    [[nodiscard]] double viewWidth() const { return std::max(m_viewSize.width(), m_viewSize.height()); }
    [[nodiscard]] double screenWidth() const { return viewWidth(); }

    /// Over everything, whichever screen is shown; the last one shown lies on top.
    void showAlert(std::shared_ptr<AlertView> alert);
    /// The topmost alert over the stack of screens that this one belongs to; null when there is none.
    [[nodiscard]] AlertView* alert() const;
    /// Over this screen alone, which it holds while something runs. Null takes the overlay away.
    void setProgress(std::shared_ptr<ProgressHUD> progress);
    /// The overlay that stands on this screen, or null.
    [[nodiscard]] ProgressHUD* progress() const { return m_progress.get(); }

    [[nodiscard]] ViewController* presentedViewController() const { return m_presented.get(); }
    [[nodiscard]] ViewController* presentingViewController() const { return m_presenting; }
    /// Over the whole stack that it stands on. Does nothing while another one is presented there.
    void presentModalViewControllerAnimated(std::shared_ptr<ViewController> screen, bool animated);
    /// Ends what this one presents; if that is nothing, itself, with the stack that it stands on.
    void dismissModalViewControllerAnimated(bool animated);
    /// On a stack of its own, over whatever is presented by now, though this one may have left.
    void presentOverAll(std::shared_ptr<ViewController> screen, bool animated);
    /// The topmost one of its stack of screens, which has not been dismissed and presents nothing.
    [[nodiscard]] bool isOnTop() const;
    /// Off its stack of screens, if it is the topmost one there.
    void popIfOnTop();

    /// Runs `viewDidLoad` once, before the screen is first shown.
    void loadViewIfNeeded();
    virtual void viewDidLoad() {}
    virtual void viewWillAppear() {}
    virtual void viewDidAppear() {}
    virtual void viewWillDisappear() {}
    /// The view has another size.
    virtual void viewDidLayout() {}

signals:
    void titleChanged();
    void barButtonsChanged();
    void viewSizeChanged();
    /// Screens, alerts or overlays, here or further up.
    void presentationChanged();

protected:
    void setBackButtonTitle(const QString& title) { m_backButtonTitle = title; }

private:
    friend class NavigationController;

    void replace(BarButtons& place, BarButtons items);
    [[nodiscard]] static BarButtons listOf(std::unique_ptr<BarButtonItem> item);
    /// What presents and is presented: the stack of screens that this one stands on, or itself.
    [[nodiscard]] ViewController& presenter();
    [[nodiscard]] const ViewController& outermost() const;
    /// What a screen that leaves this one lies above from then on: not this one, which may end before it.
    [[nodiscard]] ViewController* placeForAlerts() { return m_below ? m_below.data() : this; }

    QString m_title;
    QString m_backButtonTitle = QStringLiteral("Back");
    BarButtons m_leftBarButton;  // at most one
    BarButtons m_rightBarButtons;
    BarButtons m_toolbarItems;
    NavigationController* m_navigationController = nullptr;  // while it stands on its stack
    std::shared_ptr<ViewController> m_presented;
    ViewController* m_presenting = nullptr;
    QPointer<ViewController> m_below;  // what lay below it last: an alert may come after it has left
    std::vector<std::shared_ptr<AlertView>> m_alerts;  // of all screens, on the outermost one
    std::shared_ptr<ProgressHUD> m_progress;
    QSizeF m_viewSize{568, 320};
    bool m_loaded = false;
};

}  // namespace torv
