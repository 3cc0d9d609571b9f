#include "app/iTorvAppDelegate.h"

#include <QUrl>
#include <algorithm>
#include <chrono>
#include <utility>

#include "attributes/AVVehicleSpeedFormatter.h"
#include "platform/Log.h"
#include "platform/Platform.h"
#include "support/FileContents.h"
#include "support/TextNumbers.h"
#include "support/Utf8.h"
#include "vehicles/VehicleDataSource.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds replayDelay{500};
constexpr auto sendNotification = "sendNotification";
constexpr auto stockTireSizeKey = "STOCK_TIRE_SIZE";

}  // namespace

void iTorvAppDelegate::applicationDidFinishLaunchingWithOptions(const LaunchOptions& options,
                                                                const ShowFirstPage& showFirstPage) {
    m_currentVehicle = VehicleDataSource::currentVehicle();
    m_connectionErrorMessageAllowed = true;
    m_feeder = std::make_shared<iTorvFeeder>(options.connection);
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
    if (!contents) return logLine(error);
    m_importVehicleInfo = isUtf8(*contents) ? VehicleDataSource::vehicleInfo(*contents) : std::nullopt;
    logLine(text + (m_importVehicleInfo ? " is ready to be imported" : " holds no tuning profile"));
}

void iTorvAppDelegate::applicationWillTerminate() {
    m_feeder->setFeeding(false);
    m_feeder->removeAllReaders();
    m_feeder->removeAllConnectionListeners();
}

void iTorvAppDelegate::applicationDidReceiveMemoryWarning() {
    if (m_dataLoggingDict) *m_dataLoggingDict = {};
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
    // Under a text that is no AID: what the handset has stored is sent, and never taken from the module.
    for (const auto& [aid, value] : *m_settingValues)
        readFor("stored " + std::to_string(aid));
    const auto stockSize = Platform::current().userDefaults().objectForKey(stockTireSizeKey).textValue();
    if (!stockSize) return;
    AVVehicleSpeedFormatter::setStockTireSize(*stockSize);
    AVVehicleSpeedFormatter::setCurrentTireSize(*stockSize);
}

std::optional<AVFormatterData> iTorvAppDelegate::formattedValueForSetting(
    const TorvAttribute& setting) const {
    if (!setting.formatter) return std::nullopt;
    const auto stored =
        m_settingValues ? m_settingValues->find(setting.aid) : ProfileDictionary::const_iterator{};
    if (!m_settingValues || stored == m_settingValues->end()) return setting.formatter->dataFromAV(nullptr);
    auto value = stored->second;
    return setting.dataFromAV(value);
}

void iTorvAppDelegate::iTorvFeederDidEstablishConnection(iTorvFeeder&) {
    m_settingValues = SettingValueStore::load(m_currentVehicle);
    const auto settings = m_currentVehicle.settings();
    if (!m_settingValues) writeDefaults(settings);
    Platform::current().runLoop().scheduleTimer(replayDelay, false,
                                                [self = shared_from_this()](Timer&) { self->endoftimer(); });
    if (const auto alert = m_disconnectedWarning; alert && m_connectionErrorMessageShown) {
        alert->dismissWithClickedButtonIndexAnimated(0, true);
    }
    m_connected = true;
    m_connectionErrorMessageShown = false;
}

void iTorvAppDelegate::writeDefaults(const std::vector<TorvAttribute>& settings) {
    for (const auto& setting : settings)
        writeDefault(setting);
}

/// The lowest value is the default. It is written twice: modules answer the first write of a setting while
/// they still wake up, and take the second. Stored after each setting, whether or not the module took it.
void iTorvAppDelegate::writeDefault(const TorvAttribute& setting) {
    auto record = formattedValueForSetting(setting);
    if (!record)
        return logLine("the setting " + setting.name.value_or("") + " has no default that could be written");
    record->value = std::to_string(longLongFromDouble(setting.minValue));
    const auto buffer = setting.formatter->allocAVFromFormatterData(*record);
    if (!buffer) return logLine("the setting " + setting.name.value_or("") + " can only be read");
    const AV value = AV::forAID(setting.aid, {buffer.get(), slotSize(setting.aid)});
    auto values = m_settingValues.value_or(ProfileDictionary{});
    m_feeder->setValueForAID(value.bytes(), setting.aid);
    values.insert_or_assign(setting.aid, value);
    m_feeder->setValueForAID(value.bytes(), setting.aid);
    SettingValueStore::save(values, m_currentVehicle);
    m_settingValues = std::move(values);
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
    // Made and kept, and not shown: a driver who is out of the module's reach knows it, and a box over the
    // gauges every few seconds helps nobody. Later failures find it there and make no other.
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

void iTorvAppDelegate::addDelegate(iTorvAppDelegateDelegate* observer) {
    if (observer) m_delegates.push_back(observer);
}

void iTorvAppDelegate::removeDelegate(iTorvAppDelegateDelegate* observer) {
    std::erase(m_delegates, observer);
}

void iTorvAppDelegate::tellObservers(void (iTorvAppDelegateDelegate::*what)(iTorvAppDelegate&)) {
    // An observer may leave, or bring others, while it is told.
    for (auto* observer : std::vector{m_delegates}) {
        if (std::find(m_delegates.begin(), m_delegates.end(), observer) != m_delegates.end())
            (observer->*what)(*this);
    }
}

void iTorvAppDelegate::refreshWarningSensors() {
    m_feeder->setFeeding(false);
    m_feeder->removeAllReaders();
    tellObservers(&iTorvAppDelegateDelegate::iTorvAppDelegateDidChangeWarningSensors);
    m_feeder->setFeeding(true);
}

void iTorvAppDelegate::setCurrentVehicle(const Vehicle& vehicle) {
    m_currentVehicle = vehicle;
    m_feeder->setFeeding(false);
    m_feeder->removeAllReaders();
    tellObservers(&iTorvAppDelegateDelegate::iTorvAppDelegateDidChangeCurrentVehicle);
    tellObservers(&iTorvAppDelegateDelegate::iTorvAppDelegateDidChangeWarningSensors);
    m_feeder->setFeeding(true);
}

}  // namespace torv
