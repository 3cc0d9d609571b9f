#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QList>
#include <QVariantList>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "control/ConnectReplay.h"
#include "control/iTorvAppDelegate.h"
#include "dashboards/ControlStrip.h"
#include "dashboards/DashboardTraits.h"
#include "dashboards/DroppableView.h"
#include "dashboards/PagePicture.h"
#include "dashboards/PageTouches.h"
#include "dashboards/PageView.h"
#include "dashboards/PlacementStore.h"
#include "screens/ViewController.h"

namespace torv {

/// The screens that a page leads to, made anew each time; nothing happens for one that is not there.
struct DashboardScreens {
    using Maker = std::function<std::shared_ptr<ViewController>()>;
    Maker mainMenu;
    Maker carSetup;
    std::function<std::shared_ptr<ViewController>(const PassReport&)> passReport{};
};

/// One of the three full-screen pages of live gauges: their places, the strip that sensors are dragged from,
/// the warning of sensors that stand on no gauge, and the commands that are always at hand. What differs
/// between the pages is in their traits.
///
///   Place               alpha  entered by
///   Hidden and empty    0      start; the picker closed while at 0.3
///   Offered and empty   0.3    the picker opened while at 0; a sensor released, but on the main place
///   Filled              1.0    a drop or a restore
///
/// Placements are stored by vehicle and place. Main thread. Lengths are points, on a page 320 high.
class DashboardViewController : public torv::ViewController,
                                public PageViewDelegate,
                                public DroppableViewDelegate,
                                public IndicatorViewDelegate,
                                public iTorvAppDelegateDelegate {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString background READ background NOTIFY laidOut)
    Q_PROPERTY(QList<torv::PagePicture> backdrops READ backdrops NOTIFY laidOut)
    Q_PROPERTY(QVariantList places READ placeObjects CONSTANT)
    Q_PROPERTY(torv::PageView* pageView READ pageViewObject CONSTANT)
    Q_PROPERTY(torv::ControlStrip* controls READ controlsObject CONSTANT)
    Q_PROPERTY(QList<torv::PagePicture> buttons READ buttonImages NOTIFY laidOut)
    Q_PROPERTY(torv::DraggableIndicatorView* touchingView READ touchingViewObject NOTIFY touchingViewChanged)
    Q_PROPERTY(QString toast READ toast NOTIFY toastChanged)
    Q_PROPERTY(QRectF toastFrame READ toastFrame NOTIFY toastChanged)
    Q_PROPERTY(QString pressedButton READ pressedButton NOTIFY pressedChanged)
    Q_PROPERTY(QString advice READ advice NOTIFY adviceChanged)
    Q_PROPERTY(QString stripNote READ stripNote NOTIFY adviceChanged)
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)
    Q_PROPERTY(int number READ number CONSTANT)

public:
    ~DashboardViewController() override;

    [[nodiscard]] QString look() const override { return QStringLiteral("dashboards/DashboardScreen.qml"); }
    void viewDidLoad() override;
    void viewWillDisappear() override;
    void viewDidLayout() override;

    void loadIndicatorViews();
    void loadGauges();
    bool loadGaugeViewWithStyleIntoDroppableView(std::int32_t style, DroppableView& place);
    void loadControlsView();
    void loadControlViewIndicators();
    void addIndicatorViewToDroppableView(const IndicatorView& indicator, DroppableView& place);
    void removeDroppedViewFromDroppableViewIndicatorKey(const std::shared_ptr<CarriedView>& view,
                                                        DroppableView& place, const std::string& key);
    void increasePower() { incrementPowerBy(1); }
    void decreasePower() { incrementPowerBy(-1); }
    /// Builds on the level that the module last reported; below 0 it does not go. Blocks.
    void incrementPowerBy(std::int64_t delta);
    /// Writes all that is stored to the module, behind an overlay. Blocks.
    void sendvalues();
    void cancelCustomTuning() { m_replay.cancel(); }
    /// What of the active profile the module did not take at this connect.
    void showPassReport(const PassReport& report);
    void hideControls();
    void pushMainMenuViewController();
    void pushCarSetupTableViewController();
    void pushViewControllerAnimated(std::shared_ptr<ViewController> screen, bool animated);
    /// The dragged view's centre lies inside the place, and not over the picker.
    [[nodiscard]] bool doesViewOverlayView(const View& dragged, const DroppableView& place) const;
    /// All four edges count.
    [[nodiscard]] static bool pointInside(QPointF point, QRectF frame);

    /// To the next page, and back one page. Where there is none nothing happens.
    virtual void leftSwipe() {}
    virtual void rightSwipe() {}
    void touchesBegan() { m_pageView->releaseDraggingView(); }

    bool pageViewShouldDropView(PageView&, const std::shared_ptr<CarriedView>& view) override;
    void pageViewAddTouchingView(PageView&, const std::shared_ptr<CarriedView>& view) override;
    void pageViewRemoveTouchingView(PageView&) override;
    void pageViewDidDragView(PageView&, CarriedView& view) override;
    QPointF touchingViewForPageView(PageView&, QPointF point) override { return point; }
    void pageViewDidRetract(PageView&) override;
    void pageViewDidExpand(PageView&) override;
    void pageViewDidBeginDragging(PageView&) override;
    void pageViewDidEndDragging(PageView&) override;
    void droppableViewDidRetainDraggingView(DroppableView& place,
                                            const std::shared_ptr<CarriedView>& view) override;
    void droppableViewDidReleaseDroppedView(DroppableView& place,
                                            const std::shared_ptr<CarriedView>& view) override;
    void indicatorViewDidReceiveWarning(IndicatorView& indicator) override;
    void indicatorViewDidRemoveWarning(IndicatorView& indicator) override;
    void iTorvAppDelegateDidChangeCurrentVehicle(iTorvAppDelegate& application) override;
    void iTorvAppDelegateDidChangeWarningSensors(iTorvAppDelegate& application) override;

    [[nodiscard]] const std::shared_ptr<iTorvFeeder>& feeder() const { return m_feeder; }
    [[nodiscard]] const std::vector<std::unique_ptr<DroppableView>>& droppableViews() const {
        return m_droppableViews;
    }
    [[nodiscard]] PageView& pageView() const { return *m_pageView; }
    /// Null on a page without one.
    [[nodiscard]] ControlStrip* controls() const { return m_controls.get(); }
    [[nodiscard]] const std::map<AID, int>& aidCounting() const { return m_aidCounting; }
    [[nodiscard]] const std::vector<AID>& warningAIDs() const { return m_warningAIDs; }
    /// In the order of the profile; null where the page shows no such sensor.
    [[nodiscard]] std::shared_ptr<IndicatorView> indicatorView(AID aid) const;
    [[nodiscard]] const Vehicle& currentVehicle() const { return m_currentVehicle; }
    [[nodiscard]] const DashboardTraits& traits() const { return m_traits; }
    /// Where the placement of this place is stored.
    [[nodiscard]] std::string placementKey(std::int32_t style, const DroppableView& place) const;

    /// Under an overlay there are only swipes, until it has gone into the background.
    [[nodiscard]] bool isHeld() const { return progress() && !progress()->inBackground(); }

    /// Left edge of the stage.
    [[nodiscard]] double stageLeft() const { return (viewWidth() - stageWidth) * 0.5; }
    [[nodiscard]] QRectF gearFrame() const { return {10, 10, 44, 44}; }
    /// Much larger than what is seen of the buttons; empty on a page without them.
    [[nodiscard]] QRectF powerDecreaseFrame() const;
    [[nodiscard]] QRectF powerIncreaseFrame() const;
    /// The picker lies over all buttons; it has been opened and not closed since.
    [[nodiscard]] bool pickerInFront() const { return m_pickerInFront; }

    [[nodiscard]] QString background() const;
    [[nodiscard]] QList<PagePicture> backdrops() const;
    [[nodiscard]] QVariantList placeObjects() const;
    [[nodiscard]] PageView* pageViewObject() const { return m_pageView.get(); }
    [[nodiscard]] ControlStrip* controlsObject() const { return m_controls.get(); }
    [[nodiscard]] QList<PagePicture> buttonImages() const;
    /// What a finger carries; null also while a stored placement passes through.
    [[nodiscard]] DraggableIndicatorView* touchingViewObject() const {
        return qobject_cast<DraggableIndicatorView*>(m_touchingView.get());
    }
    /// How an empty page is filled, or why it can't be; empty once something stands there.
    [[nodiscard]] QString advice() const;
    /// Why the strip is empty; empty when it is not.
    [[nodiscard]] QString stripNote() const;
    /// What is wrong with the store of the user's choices; empty when all is well.
    [[nodiscard]] QString notice() const { return m_notice; }
    /// 1 to 3.
    [[nodiscard]] int number() const { return m_traits.number; }
    [[nodiscard]] QString toast() const { return m_toast; }
    [[nodiscard]] QRectF toastFrame() const { return m_toastFrame; }
    [[nodiscard]] QString pressedButton() const { return m_touches.pressedButton(); }

    // From the look: points of the page, fingers told apart by number; 0 is also the mouse.
    Q_INVOKABLE void touchBegan(int finger, double x, double y);
    Q_INVOKABLE void touchMoved(int finger, double x, double y);
    Q_INVOKABLE void touchEnded(int finger, double x, double y);
    Q_INVOKABLE void touchCancelled();
    /// A whole touch, as assistive programs ask for it.
    Q_INVOKABLE void pressAt(double x, double y);
    Q_INVOKABLE void touchKey(int key);
    Q_INVOKABLE void touchWheel(double angle);

signals:
    void laidOut();
    void touchingViewChanged();
    void toastChanged();
    void pressedChanged();
    void adviceChanged();
    void noticeChanged();

protected:
    DashboardViewController(const DashboardTraits& traits, std::shared_ptr<iTorvAppDelegate> application,
                            DashboardScreens screens);

    [[nodiscard]] const std::shared_ptr<iTorvAppDelegate>& application() const { return m_application; }
    [[nodiscard]] const DashboardScreens& screens() const { return m_screens; }
    /// Its readers go with it: those of the pages below are registered anew.
    void goBackOnePage();

private:
    using Touching = void (PageTouches::*)(int, QPointF);

    /// A touch that was on its way may still come to a page that has been left, or that lies under another.
    [[nodiscard]] bool takesTouches() const { return !m_left && !presentedViewController(); }
    void touch(Touching what, int finger, double x, double y);
    [[nodiscard]] QRectF onStage(QRectF frame) const { return frame.translated(stageLeft(), 0); }
    [[nodiscard]] std::ptrdiff_t indexOf(const DroppableView& place) const;
    [[nodiscard]] DroppableView* placeUnder(const View& dragged) const;
    [[nodiscard]] bool isMainPlace(const DroppableView& place) const;
    void read(const std::shared_ptr<iTorvReader>& reader, const TorvAttribute& attribute);
    void registerReaders();
    void setWarning(bool warning);
    void dimOldWarning();
    void setIndicatorPriority(std::int32_t priority);
    void setTouchingView(std::shared_ptr<CarriedView> view);
    void buildToastLabelViewFontSize(const QString& text, int fontSize);
    void readButtonSizes();
    void lookAtStore();

    const DashboardTraits& m_traits;
    const PlacementStore m_placements;
    const std::shared_ptr<iTorvAppDelegate> m_application;
    const DashboardScreens m_screens;
    const std::shared_ptr<iTorvFeeder> m_feeder;
    std::vector<std::unique_ptr<DroppableView>> m_droppableViews;
    std::unique_ptr<PageView> m_pageView;
    std::unique_ptr<ControlStrip> m_controls;
    std::map<AID, int> m_aidCounting;  // entries of at least 1
    std::vector<AID> m_warningAIDs;
    std::vector<std::pair<AID, std::shared_ptr<IndicatorView>>> m_indicatorViews;
    Vehicle m_currentVehicle;
    std::shared_ptr<CarriedView> m_touchingView;
    std::string m_aidName;
    QString m_notice;
    QString m_toast;
    QRectF m_toastFrame;
    bool m_steppingPower = false;
    bool m_left = false;
    QSizeF m_minusSize;  // of the power buttons' pictures
    QSizeF m_plusSize;
    double m_wheel = 0;  // turned since the last page
    bool m_pickerInFront = false;
    PageTouches m_touches{*this};
    ConnectReplay m_replay;
    NotificationCenter::Observation m_connected;
    NotificationCenter::Observation m_storeChanged;
};

}  // namespace torv
