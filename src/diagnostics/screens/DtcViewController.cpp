#include "diagnostics/screens/DtcViewController.h"

#include <utility>

#include "diagnostics/DtcAIDs.h"
#include "diagnostics/screens/ReadDtcViewController.h"
#include "screens/NavigationController.h"

namespace torv {
namespace {

constexpr int okButton = 1;
constexpr auto readText = "Read DTC's";
constexpr auto clearText = "Clear DTC's";
constexpr std::array<const char*, 2> array{readText, clearText};
constexpr auto engineTurnsText = "The engine is running";

std::shared_ptr<ProgressHUD> activityView(const QString& label, const QString& details) {
    auto overlay = std::make_shared<ProgressHUD>(nullptr);
    overlay->setTexts(label, details);
    overlay->setBackgroundAllowed(false);
    return overlay;
}

}  // namespace

DtcViewController::DtcViewController(std::shared_ptr<iTorvAppDelegate> application)
    : m_application(std::move(application)) {}

DtcViewController::Screen DtcViewController::weakSelf() {
    return std::dynamic_pointer_cast<DtcViewController>(shared_from_this());
}

void DtcViewController::viewDidLoad() {
    setTitle(QStringLiteral("DTC's"));
    const auto& feeder = m_application->feeder();
    m_connected = m_application->connected();
    feeder->addConnectionListener(std::dynamic_pointer_cast<iTorvConnectionListener>(shared_from_this()));
    m_request = std::make_shared<DtcRequest>(feeder, [weak = weakSelf()] {
        if (const auto screen = weak.lock()) screen->loadReadDtcView();
    });
    m_clear = std::make_shared<DtcClear>(feeder, [weak = weakSelf()](DtcClear::Result result) {
        if (const auto screen = weak.lock()) screen->dtcClearTimeoutHandler(result);
    });
}

int DtcViewController::numberOfRowsInSection(int) {
    return static_cast<int>(array.size());
}

std::shared_ptr<TableViewCell> DtcViewController::cellForRowAtIndexPath(IndexPath path) {
    const auto identifier = QStringLiteral("Cell");
    auto cell = dequeueReusableCell(identifier);
    if (!cell) cell = std::make_shared<TableViewCell>(TableViewCell::Style::Plain, identifier);
    cell->setText(array[static_cast<std::size_t>(path.row)]);
    cell->setAccessory(m_connected ? TableViewCell::Accessory::Disclosure : TableViewCell::Accessory::None);
    cell->setDimmed(!m_connected);
    return cell;
}

bool DtcViewController::shouldHighlightRowAtIndexPath(IndexPath) {
    return m_connected && !m_request->isActive() && !m_clear->isActive();
}

void DtcViewController::didSelectRowAtIndexPath(IndexPath path) {
    ask(array[static_cast<std::size_t>(path.row)],
        "Please make sure your vehicle is on but the engine is not running. Press OK to continue", "OK");
}

/// What blocks begins only once the question has gone.
void DtcViewController::ask(const QString& title, const QString& message, const QString& yes) {
    auto alert = std::make_shared<AlertView>(title, message, QStringList{"Cancel", yes});
    alert->setDismissedHandler([weak = weakSelf(), title](int index) {
        if (const auto screen = weak.lock()) screen->alertViewClickedButtonAtIndex(title, index);
    });
    showAlert(std::move(alert));
}

void DtcViewController::alertViewClickedButtonAtIndex(const QString& title, int index) {
    deselectRow();
    if (index != okButton || !navigationController()) return;
    if (auto alert = m_application->alertDuringPass()) return showAlert(std::move(alert));
    const bool doubted = title == clearText && engineTurns();
    if (!navigationController()) return;  // left while the module was asked
    if (doubted) {
        return ask(
            engineTurnsText,
            "Codes that are cleared while it runs may come back at once, or hide a fault that is there. "
            "Clear them all the same?",
            "Clear");
    }
    if (title == clearText || title == engineTurnsText) clear();
    if (title == readText) read();
}

/// Asks the module once where nothing fresh tells.
bool DtcViewController::engineTurns() {
    auto& feeder = *m_application->feeder();
    if (feeder.isOldValueForAID(engineSpeedAID)) {
        const auto pass = m_application->beginPass();
        feeder.requestValueForAID(engineSpeedAID);
    }
    return DtcClear::engineTurns(feeder);
}

void DtcViewController::clear() {
    m_pass = m_application->beginPass();
    setProgress(activityView("Clearing trouble codes", "This takes five seconds"));
    m_clear->begin();
}

void DtcViewController::read() {
    m_pass = m_application->beginPass();
    setProgress(activityView("Reading trouble codes", "This takes up to 15 seconds"));
    m_request->begin();
}

void DtcViewController::dtcClearTimeoutHandler(DtcClear::Result result) {
    m_pass.reset();
    setProgress(nullptr);
    const bool doubtful = result.cleared && !result.confirmed;
    const char* const doubt =
        result.arrived ? "The module has not confirmed this time. Please read the codes again."
                       : "The module has not confirmed this time: the answer is from an earlier clear. "
                         "Please read the codes again.";
    showAlert(std::make_shared<AlertView>(result.cleared ? "DTC's Cleared" : "Error: DTC's Not Cleared",
                                          doubtful ? doubt : "", QStringList{"OK"}));
}

void DtcViewController::loadReadDtcView() {
    m_pass.reset();
    setProgress(nullptr);
    if (!navigationController()) return;
    navigationController()->pushViewControllerAnimated(
        std::make_shared<ReadDtcViewController>(
            m_application->feeder(), m_request->begun(),
            m_application->currentVehicle().name().value_or(std::string{"this vehicle"}),
            m_application->recorder().name()),
        true);
}

void DtcViewController::setConnected(bool connected) {
    if (std::exchange(m_connected, connected) != connected) reloadData();
}

void DtcViewController::iTorvFeederDidEstablishConnection(iTorvFeeder&) {
    setConnected(true);
}

void DtcViewController::iTorvFeederDidFailToConnect(iTorvFeeder&) {
    setConnected(false);
}

}  // namespace torv

#include "moc_DtcViewController.cpp"
