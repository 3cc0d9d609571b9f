#include "dashboards/DashboardViewController.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "control/PassReportAlert.h"
#include "dashboards/IndicatorViewFactory.h"
#include "platform/NotificationNames.h"
#include "screens/NavigationController.h"

namespace torv {
namespace {

constexpr AID defaultMainAID = 8;
constexpr double hidden = 0;
constexpr double offered = 0.3;
constexpr double filled = 1;
constexpr double dimmed = 0.3;  // an indicator whose sensor stands on a place
constexpr std::int64_t indicatorsPerPage = 4;
constexpr QRectF pickerFrame{0, 240, stageWidth, 80};
constexpr QRectF stripFrame{0, 265, 250, 25};

std::string nameOf(const std::shared_ptr<const TorvAttribute>& attribute) {
    return attribute ? attribute->name.value_or(std::string{}) : std::string{};
}

AID aidOf(const std::shared_ptr<CarriedView>& view) {
    return view && view->attribute() ? view->attribute()->aid : 0;
}

std::shared_ptr<GaugeView> gaugeOf(const std::shared_ptr<CarriedView>& view) {
    return view ? view->detailView() : nullptr;
}

}  // namespace

DashboardViewController::DashboardViewController(const DashboardTraits& traits,
                                                 std::shared_ptr<iTorvAppDelegate> application,
                                                 DashboardScreens screens)
    : m_traits(traits),
      m_placements(traits),
      m_application(std::move(application)),
      m_screens(std::move(screens)),
      m_feeder(m_application->feeder()),
      m_currentVehicle(m_application->currentVehicle()),
      m_replay(
          m_application,
          [this](auto overlay) {
              if (overlay) overlay->setSwallowsTouches(false);
              setProgress(std::move(overlay));
          },
          [this](const PassReport& report) { showPassReport(report); }) {}

DashboardViewController::~DashboardViewController() {
    m_application->removeDelegate(this);
    for (const auto& [aid, indicator] : m_indicatorViews)
        indicator->setDelegate(nullptr);
}

void DashboardViewController::viewDidLoad() {
    m_pageView = std::make_unique<PageView>(onStage(pickerFrame), *this);
    m_pageView->setNumberOfComponentsPerPage(indicatorsPerPage);
    m_pageView->setExpanded(false);
    loadIndicatorViews();
    loadGauges();
    if (m_traits.hasControls) {
        readButtonSizes();
        loadControlsView();
    }
    m_connected =
        Platform::current().notificationCenter().addObserver(sendNotification, [this] { sendvalues(); });
    // Any thread may have stored.
    m_storeChanged = Platform::current().notificationCenter().addObserver(
        storeKeptChanged, [page = std::weak_ptr{shared_from_this()}] {
            Platform::current().runLoop().performOnMainThread([page] {
                const auto kept = std::dynamic_pointer_cast<DashboardViewController>(page.lock());
                if (kept) kept->lookAtStore();
            });
        });
    m_application->addDelegate(this);
    lookAtStore();
}

void DashboardViewController::viewWillDisappear() {
    m_touches.cancelled();
    emit pressedChanged();
    hideControls();  // or the next page would be fed once a second with its own picker closed
}

void DashboardViewController::viewDidLayout() {
    for (std::size_t i = 0; i < m_droppableViews.size(); ++i)
        m_droppableViews[i]->setFrame(onStage(m_traits.places[i].frame));
    auto picker = m_pageView->frame();
    picker.moveLeft(stageLeft());
    m_pageView->setFrame(picker);
    if (m_controls) m_controls->setFrame(onStage(stripFrame.translated(m_traits.controlsLeft, 0)));
    emit laidOut();
}

void DashboardViewController::read(const std::shared_ptr<iTorvReader>& reader,
                                   const TorvAttribute& attribute) {
    m_feeder->addReaderForKey(reader, std::to_string(attribute.aid));
}

void DashboardViewController::loadIndicatorViews() {
    m_indicatorViews.clear();
    for (auto& sensor : m_application->currentVehicle().sensors()) {
        if (sensor.category) continue;
        const AID aid = sensor.aid;
        const auto attribute = std::make_shared<const TorvAttribute>(std::move(sensor));
        auto indicator = IndicatorViewFactory::indicatorViewForTorvAttributeDelegate(attribute, this);
        indicator->setTag(aid);
        indicator->setSampleSink([log = std::weak_ptr{m_application}](AID sampled, float value) {
            if (const auto application = log.lock()) application->recordSample(sampled, value);
        });
        read(indicator, *attribute);
        m_application->ager().watch(indicator);
        connect(indicator.get(), &IndicatorView::oldChanged, this, &DashboardViewController::dimOldWarning);
        const auto same = std::find_if(m_indicatorViews.begin(), m_indicatorViews.end(),
                                       [&](const auto& entry) { return entry.first == aid; });
        if (same == m_indicatorViews.end()) {
            m_indicatorViews.emplace_back(aid, std::move(indicator));
        } else {
            same->second->setDelegate(nullptr);
            same->second = std::move(indicator);
        }
    }
    std::vector<std::shared_ptr<IndicatorView>> items;
    for (const auto& [aid, indicator] : m_indicatorViews)
        items.push_back(indicator);
    m_pageView->setViewItems(std::move(items));
    emit adviceChanged();
}

std::shared_ptr<IndicatorView> DashboardViewController::indicatorView(AID aid) const {
    const auto found = std::find_if(m_indicatorViews.begin(), m_indicatorViews.end(),
                                    [&](const auto& entry) { return entry.first == aid; });
    return found == m_indicatorViews.end() ? nullptr : found->second;
}

void DashboardViewController::loadGauges() {
    for (const auto& row : m_traits.places) {
        auto place = std::make_unique<DroppableView>(onStage(row.frame), row.position, *this);
        place->setState(DroppableView::normal);
        place->setEditing(false);
        place->setLayer(row.layer);
        m_droppableViews.push_back(std::move(place));
        if (!isMainPlace(*m_droppableViews.back())) m_droppableViews.back()->setAlpha(hidden);
    }
    if (m_traits.number == 2) {
        // Nobody reads it; kept as it is.
        for (std::int32_t number = 0; number < 10; ++number)
            m_droppableViews.front()->setNumber(number);
    }
    for (const int index : m_traits.restoreOrder) {
        auto& place = *m_droppableViews[static_cast<std::size_t>(index)];
        const auto style = m_traits.places[static_cast<std::size_t>(index)].style;
        if (loadGaugeViewWithStyleIntoDroppableView(style, place) || !isMainPlace(place)) continue;
        if (const auto indicator = indicatorView(defaultMainAID))
            addIndicatorViewToDroppableView(*indicator, place);
    }
}

std::string DashboardViewController::placementKey(std::int32_t style, const DroppableView& place) const {
    return m_placements.key(m_currentVehicle.name(), style, indexOf(place));
}

std::ptrdiff_t DashboardViewController::indexOf(const DroppableView& place) const {
    return std::find_if(m_droppableViews.begin(), m_droppableViews.end(),
                        [&](const auto& other) { return other.get() == &place; }) -
           m_droppableViews.begin();
}

bool DashboardViewController::isMainPlace(const DroppableView& place) const {
    return m_traits.hasMainPlace && indexOf(place) == 0;
}

bool DashboardViewController::loadGaugeViewWithStyleIntoDroppableView(std::int32_t style,
                                                                      DroppableView& place) {
    const auto stored = PlacementStore::load(placementKey(style, place));
    const auto indicator = stored ? indicatorView(*stored) : nullptr;
    if (!indicator) return false;
    addIndicatorViewToDroppableView(*indicator, place);
    return true;
}

void DashboardViewController::loadControlsView() {
    m_controls = std::make_unique<ControlStrip>(onStage(stripFrame.translated(m_traits.controlsLeft, 0)),
                                                m_traits.powerLevelLeft, m_feeder);
    m_controls->watchAge(m_application->ager());
    loadControlViewIndicators();
}

void DashboardViewController::loadControlViewIndicators() {
    if (m_controls) m_controls->loadControlViewIndicators(m_application->currentVehicle(), *m_feeder);
}

void DashboardViewController::addIndicatorViewToDroppableView(const IndicatorView& indicator,
                                                              DroppableView& place) {
    const auto copy = indicator.copy();
    pageViewAddTouchingView(*m_pageView, copy);
    place.dropView(copy);
    place.setEditing(false);
}

void DashboardViewController::droppableViewDidRetainDraggingView(DroppableView& place,
                                                                 const std::shared_ptr<CarriedView>& view) {
    const auto gauge = gaugeOf(view);
    if (!gauge || !view->attribute()) return;
    const auto& attribute = *view->attribute();
    place.setEditing(true);
    setTouchingView(nullptr);
    ++m_aidCounting[attribute.aid];
    if (const auto indicator = m_pageView->indicatorViewTag(attribute.aid)) indicator->setAlpha(dimmed);
    std::erase(m_warningAIDs, attribute.aid);
    if (m_warningAIDs.empty()) setWarning(false);

    const auto& row = m_traits.places[static_cast<std::size_t>(indexOf(place))];
    gauge->setFrame({{}, place.frame().size()});
    if (row.setsDegrees) {
        gauge->setMinimumDegree(row.minimumDegree);
        gauge->setMaximumDegree(row.maximumDegree);
    }
    gauge->setStyle(row.style);
    gauge->reloadView();
    gauge->setActive(true);
    gauge->setValue(attribute.minValue);
    gauge->setPriority(1);
    place.setState(DroppableView::normal);
    place.setGauge(gauge);
    emit adviceChanged();
    place.setAlpha(filled);
    read(gauge, attribute);
    m_application->ager().watch(gauge);
    PlacementStore::save(attribute.aid, placementKey(gauge->style(), place));
}

void DashboardViewController::droppableViewDidReleaseDroppedView(DroppableView& place,
                                                                 const std::shared_ptr<CarriedView>& view) {
    if (!isMainPlace(place)) place.setAlpha(offered);
    const AID aid = aidOf(view);
    const auto count = m_aidCounting.find(aid);
    if (count != m_aidCounting.end() && count->second > 1) {
        --count->second;
    } else {
        m_aidCounting.erase(aid);
        if (const auto indicator = m_pageView->indicatorViewTag(aid)) indicator->setAlpha(filled);
    }
    const auto gauge = gaugeOf(view);
    if (gauge) {
        gauge->setActive(false);
        gauge->setPriority(0);
        place.setGauge(nullptr);
        emit adviceChanged();
    }
    PlacementStore::remove(placementKey(gauge ? gauge->style() : 0, place));
}

bool DashboardViewController::pointInside(QPointF point, QRectF frame) {
    return point.x() >= frame.left() && point.x() <= frame.left() + frame.width() &&
           point.y() >= frame.top() && point.y() <= frame.top() + frame.height();
}

bool DashboardViewController::doesViewOverlayView(const View& dragged, const DroppableView& place) const {
    return pointInside(dragged.center(), place.frame()) &&
           !pointInside(dragged.center(), m_pageView->frame());
}

/// From the last to the first: a side dial wins over the main one where they overlap.
DroppableView* DashboardViewController::placeUnder(const View& dragged) const {
    const auto found = std::find_if(m_droppableViews.rbegin(), m_droppableViews.rend(),
                                    [&](const auto& place) { return doesViewOverlayView(dragged, *place); });
    return found == m_droppableViews.rend() ? nullptr : found->get();
}

void DashboardViewController::pageViewDidDragView(PageView&, CarriedView& view) {
    const auto* target = placeUnder(view);
    for (const auto& place : m_droppableViews)
        place->setState(place.get() == target ? DroppableView::hovered : DroppableView::normal);
}

bool DashboardViewController::pageViewShouldDropView(PageView&, const std::shared_ptr<CarriedView>& view) {
    auto* target = placeUnder(*view);
    return target && target->dropView(view);
}

void DashboardViewController::pageViewAddTouchingView(PageView&, const std::shared_ptr<CarriedView>& view) {
    setTouchingView(view);
    m_aidName = nameOf(view->attribute());
}

void DashboardViewController::pageViewRemoveTouchingView(PageView&) {
    setTouchingView(nullptr);
    for (const auto& place : m_droppableViews)
        place->setState(DroppableView::normal);
}

void DashboardViewController::setTouchingView(std::shared_ptr<CarriedView> view) {
    const auto leaving = std::exchange(m_touchingView, std::move(view));
    if (leaving != m_touchingView) emit touchingViewChanged();
}

void DashboardViewController::pageViewDidBeginDragging(PageView&) {
    m_feeder->setFeeding(false);
    constexpr int toastFontSize = 14;
    if (m_toast.isEmpty()) buildToastLabelViewFontSize(QString::fromStdString(m_aidName), toastFontSize);
}

void DashboardViewController::pageViewDidEndDragging(PageView&) {
    m_feeder->setFeeding(true);
    if (m_toast.isEmpty()) return;
    m_toast.clear();
    emit toastChanged();
}

void DashboardViewController::pageViewDidExpand(PageView&) {
    for (const auto& place : m_droppableViews) {
        if (place->alpha() == hidden) {
            place->setAlpha(offered);
        } else {
            place->setEditing(true);
        }
    }
    m_feeder->enableTimedFeedMode();
    setIndicatorPriority(1);
    m_pickerInFront = true;
}

void DashboardViewController::pageViewDidRetract(PageView&) {
    for (const auto& place : m_droppableViews) {
        place->setEditing(false);
        if (place->alpha() == offered) place->setAlpha(hidden);
    }
    m_feeder->disableTimedFeedMode();
    setIndicatorPriority(0);
    m_pickerInFront = false;
}

void DashboardViewController::setIndicatorPriority(std::int32_t priority) {
    for (const auto& [aid, indicator] : m_indicatorViews)
        indicator->setPriority(priority);
}

void DashboardViewController::hideControls() {
    if (m_pageView->expanded()) m_pageView->setExpandedAnimate(false, true);
}

void DashboardViewController::setWarning(bool warning) {
    if (m_controls) m_controls->warningView().setWarning(warning);
    m_pageView->setWarning(warning);
    dimOldWarning();
}

void DashboardViewController::dimOldWarning() {
    const bool old = !m_warningAIDs.empty() && std::ranges::all_of(m_warningAIDs, [this](AID aid) {
        const auto indicator = indicatorView(aid);
        return indicator && indicator->isOld();
    });
    if (m_controls) m_controls->warningView().setOld(old);
    m_pageView->setWarningOld(old);
}

void DashboardViewController::indicatorViewDidReceiveWarning(IndicatorView& indicator) {
    m_application->warningBegan(indicator.tag());
    if (m_aidCounting.contains(indicator.tag())) return;  // its gauge shows the warning
    if (std::find(m_warningAIDs.begin(), m_warningAIDs.end(), indicator.tag()) == m_warningAIDs.end())
        m_warningAIDs.push_back(indicator.tag());
    setWarning(true);
}

void DashboardViewController::indicatorViewDidRemoveWarning(IndicatorView& indicator) {
    m_application->warningEnded(indicator.tag());
    std::erase(m_warningAIDs, indicator.tag());
    if (m_warningAIDs.empty()) return setWarning(false);
    dimOldWarning();
}

void DashboardViewController::iTorvAppDelegateDidChangeCurrentVehicle(iTorvAppDelegate& application) {
    const auto& vehicle = application.currentVehicle();
    for (const auto& place : m_droppableViews) {
        const auto view = place->droppedView();
        const auto gauge = gaugeOf(view);
        const bool stays = m_currentVehicle.isEqual(vehicle) && vehicle.hasAID(aidOf(view));
        if (stays) continue;
        removeDroppedViewFromDroppableViewIndicatorKey(view, *place,
                                                       placementKey(gauge ? gauge->style() : 0, *place));
    }
    m_currentVehicle = vehicle;
}

/// The place keeps its dropped view: that is what carries a sensor over to the next vehicle.
void DashboardViewController::removeDroppedViewFromDroppableViewIndicatorKey(
    const std::shared_ptr<CarriedView>& view, DroppableView& place, const std::string& key) {
    PlacementStore::remove(key);
    droppableViewDidReleaseDroppedView(place, view);
    if (!isMainPlace(place)) place.setAlpha(m_pageView->expanded() ? offered : hidden);
    place.setEditing(false);
}

void DashboardViewController::iTorvAppDelegateDidChangeWarningSensors(iTorvAppDelegate&) {
    m_aidCounting.clear();
    m_warningAIDs.clear();
    setWarning(false);
    const auto leaving = std::exchange(m_indicatorViews, {});
    for (const auto& [aid, indicator] : leaving)
        indicator->setDelegate(nullptr);
    loadIndicatorViews();
    for (const auto& place : m_droppableViews) {
        const auto view = place->droppedView();
        if (!view) continue;
        if (const auto indicator = indicatorView(aidOf(view))) {
            addIndicatorViewToDroppableView(*indicator, *place);
        } else {
            place->clear();  // the new vehicle has no such sensor
            if (!isMainPlace(*place)) place->setAlpha(m_pageView->expanded() ? offered : hidden);
        }
    }
    if (m_pageView->expanded()) setIndicatorPriority(1);
    loadControlViewIndicators();
}

void DashboardViewController::incrementPowerBy(std::int64_t delta) {
    const AID aid = m_currentVehicle.powerLevelAttribute().aid;
    // The exchange turns the loop. A tap that comes meanwhile would ask for the same level again.
    if (aid == 0 || m_steppingPower) return;
    const auto level = m_feeder->valueForAID(aid).bytes()[0];
    if (delta < 0 && level == 0) return;
    if (auto alert = m_application->alertDuringPass()) return showAlert(std::move(alert));
    const std::array<std::uint8_t, 1> next{static_cast<std::uint8_t>(level + delta)};
    const QScopedValueRollback stepping{m_steppingPower, true};
    m_feeder->setValueForAID(next, aid);
}

void DashboardViewController::goBackOnePage() {
    if (!presentingViewController() || !takesTouches()) return;
    m_left = true;
    m_replay.end();
    m_connected = {};
    m_storeChanged = {};
    for (const auto& [aid, indicator] : m_indicatorViews)
        indicator->setDelegate(nullptr);
    m_application->removeDelegate(this);
    auto* below = presentingViewController();
    dismissModalViewControllerAnimated(true);
    const bool feeding = m_feeder->feeding();
    m_feeder->setFeeding(false);
    m_feeder->removeAllReaders();
    for (; below; below = below->presentingViewController()) {
        if (auto* page = dynamic_cast<DashboardViewController*>(below)) page->registerReaders();
    }
    m_feeder->setFeeding(feeding);
}

void DashboardViewController::registerReaders() {
    for (const auto& [aid, indicator] : m_indicatorViews)
        read(indicator, *indicator->attribute());
    for (const auto& place : m_droppableViews) {
        if (const auto& gauge = place->gauge()) read(gauge, *gauge->attribute());
    }
    if (m_controls) m_controls->registerReaders(*m_feeder);
}

void DashboardViewController::pushViewControllerAnimated(std::shared_ptr<ViewController> screen,
                                                         bool animated) {
    if (!screen) return;
    presentModalViewControllerAnimated(std::make_shared<NavigationController>(std::move(screen)), animated);
}

void DashboardViewController::pushMainMenuViewController() {
    m_pageView->releaseDraggingView();
    if (m_screens.mainMenu) pushViewControllerAnimated(m_screens.mainMenu(), true);
}

void DashboardViewController::showPassReport(const PassReport& report) {
    showAlert(passReportAlert(*this, QStringLiteral("After the connect"), report, m_screens.passReport));
}

void DashboardViewController::pushCarSetupTableViewController() {
    if (m_screens.carSetup) pushViewControllerAnimated(m_screens.carSetup(), false);
}

}  // namespace torv

#include "moc_DashboardViewController.cpp"
#include "moc_PagePicture.cpp"
