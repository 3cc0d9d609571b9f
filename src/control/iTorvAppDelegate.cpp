#include "control/iTorvAppDelegate.h"

#include <QUrl>
#include <algorithm>
#include <chrono>
#include <utility>

#include "attributes/AVVehicleSpeedFormatter.h"
#include "control/DefaultsWriter.h"
#include "datalog/Recordings.h"
#include "platform/Log.h"
#include "platform/NotificationNames.h"
#include "platform/Platform.h"
#include "platform/StoredKeys.h"
#include "support/FileContents.h"
#include "support/TextNumbers.h"
#include "support/Utf8.h"
#include "vehicles/StoreTrouble.h"
#include "vehicles/VehicleDataSource.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds replayDelay{500};

}  // namespace

void iTorvAppDelegate::applicationDidFinishLaunchingWithOptions(const LaunchOptions& options,
                                                                const ShowFirstPage& showFirstPage) {
    m_currentVehicle = VehicleDataSource::currentVehicle();
    m_connectionErrorMessageAllowed = true;
    m_feeder = std::make_shared<iTorvFeeder>(options.connection);
    m_statistics = std::make_shared<LinkStatistics>(Platform::current().runLoop());
    m_feeder->driver().addMonitor(m_statistics);
    m_capture = options.capture;
    if (m_capture) {
        m_capture->setNames(attributeNames(m_currentVehicle));
        m_feeder->driver().addMonitor(m_capture);
    }
    m_ager = std::make_unique<ValueAger>(m_feeder);
    m_recorder = std::make_unique<Recorder>(m_feeder);
    m_feeder->setFeeding(true);
    configureZephrelaneFeatures();
    m_feeder->addConnectionListener(shared_from_this());
    m_feeder->start();
    showFirstPage([self = shared_from_this(), url = options.url] {
        if (url) self->importFileURL(*url);
    });
}

void iTorvAppDelegate::importFileURL(const std::string& text) {
    const QUrl url{QString::fromStdString(text)};
    if (!url.isLocalFile()) return;
    std::string error;
    const auto contents = contentsOfFile(url.toLocalFile().toStdString(), error);
    if (contents)
        m_importVehicleInfo = isUtf8(*contents) ? VehicleDataSource::vehicleInfo(*contents) : std::nullopt;
    if (!contents) {
        m_importTrouble = {.sentence = error};
    } else if (!m_importVehicleInfo) {
        m_importTrouble = {.sentence = url.toLocalFile().toStdString() + " holds no tuning profile.",
                           .wasRead = true};
    }
    logLine(m_importTrouble ? m_importTrouble->sentence : text + " is ready to be imported");
}

void iTorvAppDelegate::applicationWillTerminate() {
    *m_ending = true;
    m_recorder->end();
    m_feeder->setFeeding(false);
    m_feeder->removeAllReaders();
    m_feeder->removeAllConnectionListeners();
    if (m_background) Platform::current().urlLoader().cancel();
    m_background.reset();
}

void iTorvAppDelegate::applicationDidReceiveMemoryWarning() {
    if (m_dataLoggingDict) *m_dataLoggingDict = {};
}

void iTorvAppDelegate::warningBegan(AID aid) {
    auto& platform = Platform::current();
    if (m_alarm.began(aid, platform.runLoop().now()) && defaults().objectForKey(warningSoundKey).boolValue())
        platform.warningTone().play();
}

void iTorvAppDelegate::recordSample(AID aid, float value) {
    if (!m_dataLoggingDict) m_dataLoggingDict.emplace();
    m_dataLoggingDict->record(aid, value, DataLog::Clock::now());
}

void iTorvAppDelegate::readFor(const std::string& key) {
    m_feeder->addReaderForKey(shared_from_this(), key);
}

void iTorvAppDelegate::configureZephrelaneFeatures() {
    for (const auto& item : m_currentVehicle.tuningItems())
        readFor(std::to_string(item.aid));
    m_settingValues = SettingValueStore::load(m_currentVehicle);
    if (!m_settingValues) {
        for (const auto& setting : m_currentVehicle.settings())
            readFor(std::to_string(setting.aid));
        return;
    }
    // Under a text that is no AID, so that nothing is delivered; kept as it is. `readAid` does nothing
    // anyway.
    for (const auto& [aid, value] : *m_settingValues)
        readFor("stored " + std::to_string(aid));
    const auto stockSize = Platform::current().userDefaults().objectForKey(stockTireSizeKey).textValue();
    if (!stockSize) return;
    AVVehicleSpeedFormatter::setStockTireSize(*stockSize);
    AVVehicleSpeedFormatter::setCurrentTireSize(*stockSize);
}

std::optional<std::string> iTorvAppDelegate::storeTrouble() const {
    const auto sentence = sentenceFor(torv::storeTrouble(m_currentVehicle));
    return sentence.empty() ? std::nullopt : std::optional<std::string>{sentence};
}

std::optional<AVFormatterData> iTorvAppDelegate::formattedValueForSetting(
    const TorvAttribute& setting) const {
    return torv::formattedValueForSetting(setting, m_settingValues);
}

void iTorvAppDelegate::iTorvFeederDidEstablishConnection(iTorvFeeder&) {
    forgetWhatWasTold();
    m_settingValues = SettingValueStore::load(m_currentVehicle);
    if (!m_settingValues) writeDefaults();
    Platform::current().runLoop().scheduleTimer(replayDelay, false,
                                                [self = shared_from_this()](Timer&) { self->endoftimer(); });
    if (const auto alert = m_disconnectedWarning; alert && m_connectionErrorMessageShown) {
        alert->dismissWithClickedButtonIndexAnimated(0, true);
    }
    m_connected = true;
    m_connectionErrorMessageShown = false;
}

/// The vehicle may change while this blocks: what is still written for the old one is not the new one's.
void iTorvAppDelegate::writeDefaults() {
    // What can't be read may be there, and what can't be stored would be written anew at each start.
    if (const auto trouble = storeTrouble()) return logLine("no defaults are written: " + *trouble);
    const auto pass = beginPass();
    DefaultsWriter{*m_feeder, m_currentVehicle}.run(
        [this, vehicle = m_currentVehicle](const ProfileDictionary& values) {
            if (m_currentVehicle.isEqual(vehicle)) m_settingValues = values;
        });
}

void iTorvAppDelegate::endoftimer() {
    Platform::current().notificationCenter().postNotificationName(sendNotification);
}

void iTorvAppDelegate::iTorvFeederDidFailToConnect(iTorvFeeder&) {
    m_connected = false;
    showConnectionErrorMessage();
}

void iTorvAppDelegate::showConnectionErrorMessage() {
    if (m_connectionErrorMessageShown || !m_connectionErrorMessageAllowed) return;
    m_connectionErrorMessageShown = true;
    // Made and not shown; kept as it is. Later failures find it there and make no other.
    m_disconnectedWarning =
        std::make_shared<AlertView>("Connection Error",
                                    "You are not connected to the Zephrelane device. Please quit this app "
                                    "and open the Wi-Fi settings and "
                                    "connect to the iVolte network. Then re-launch this app",
                                    QStringList{"OK"});
    m_disconnectedWarning->setClickedHandler([this](int) { alertViewClickedButtonAtIndex(); });
    m_disconnectedWarning->setDismissedHandler([this](int) { alertViewClickedButtonAtIndex(); });
}

void iTorvAppDelegate::alertViewClickedButtonAtIndex() {
    m_connectionErrorMessageShown = false;
    m_disconnectedWarning = nullptr;
}

std::shared_ptr<void> iTorvAppDelegate::beginPass() {
    auto pass = m_pass.lock();
    if (!pass) m_pass = pass = std::make_shared<char>();
    return pass;
}

std::shared_ptr<AlertView> iTorvAppDelegate::alertDuringPass() const {
    if (!isPassUnderWay()) return nullptr;
    return std::make_shared<AlertView>(
        "One moment", "Settings are on their way to the module. Try again when that has ended.",
        QStringList{"OK"});
}

WorkQueue& iTorvAppDelegate::background() {
    if (!m_background) m_background = Platform::current().makeWorkQueue("background");
    return *m_background;
}

void iTorvAppDelegate::addDelegate(iTorvAppDelegateDelegate* observer) {
    if (observer) m_delegates.push_back(observer);
}

void iTorvAppDelegate::removeDelegate(iTorvAppDelegateDelegate* observer) {
    std::erase(m_delegates, observer);
}

void iTorvAppDelegate::tellObservers(std::initializer_list<Word> words) {
    // An observer may leave, or bring others, while it is told.
    for (auto* observer : std::vector{m_delegates}) {
        for (const auto word : words) {
            if (std::find(m_delegates.begin(), m_delegates.end(), observer) != m_delegates.end())
                (observer->*word)(*this);
        }
    }
}

void iTorvAppDelegate::refreshWarningSensors() {
    m_feeder->setFeeding(false);
    m_feeder->removeAllReaders();
    tellObservers({&iTorvAppDelegateDelegate::iTorvAppDelegateDidChangeWarningSensors});
    m_feeder->setFeeding(true);
}

std::optional<std::string> iTorvAppDelegate::beginRecording() {
    return m_recorder->begin(newRecordingFile(), m_currentVehicle, dateText(wallNow()));
}

void iTorvAppDelegate::setCurrentVehicle(const Vehicle& vehicle) {
    const bool isSame = vehicle.isEqual(m_currentVehicle) && vehicle.version() == m_currentVehicle.version();
    m_currentVehicle = vehicle;
    if (m_capture) m_capture->setNames(attributeNames(vehicle));
    if (m_recorder->isRecording() && !isSame)
        m_recorder->beginAnew(newRecordingFile(), vehicle, dateText(wallNow()));
    m_feeder->setFeeding(false);
    m_feeder->removeAllReaders();
    tellObservers({&iTorvAppDelegateDelegate::iTorvAppDelegateDidChangeCurrentVehicle,
                   &iTorvAppDelegateDelegate::iTorvAppDelegateDidChangeWarningSensors});
    m_feeder->setFeeding(true);
}

}  // namespace torv
