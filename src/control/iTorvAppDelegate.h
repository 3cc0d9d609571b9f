#pragma once

#include <atomic>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "connection/CaptureWriter.h"
#include "connection/LinkStatistics.h"
#include "control/WarningAlarm.h"
#include "control/iTorvAppDelegateDelegate.h"
#include "datalog/DataLog.h"
#include "datalog/Recorder.h"
#include "platform/WorkQueue.h"
#include "screens/AlertView.h"
#include "session/ValueAger.h"
#include "vehicles/SettingValueStore.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// Application control: launch, the first write of default settings, the replay after each connect, the
/// state of the connection, and the word to its observers when the vehicle changes.
///
/// Lives as long as the process. Main thread, except for `readAid`, which does nothing.
class iTorvAppDelegate final : public iTorvReader,
                               public iTorvConnectionListener,
                               public std::enable_shared_from_this<iTorvAppDelegate> {
public:
    struct LaunchOptions {
        ConnectionOptions connection;
        std::optional<std::string> url;            ///< "file:..." names a tuning profile to import
        std::shared_ptr<CaptureWriter> capture{};  ///< keeps what goes over the link; null for none
    };

    /// Makes the first page and the window, now or soon, and calls back once they are there.
    using ShowFirstPage = std::function<void(std::function<void()> whenShown)>;
    /// The connection is being made when the page is asked for.
    void applicationDidFinishLaunchingWithOptions(const LaunchOptions& options,
                                                  const ShowFirstPage& showFirstPage);
    /// Lets go of everyone who reads and listens, itself included, so that the connection can end.
    void applicationWillTerminate();
    /// Clears the live data log, with its minimum and maximum values, without asking.
    void applicationDidReceiveMemoryWarning();

    void configureZephrelaneFeatures();
    /// What the store holds for the setting, decoded; with nothing stored the formatter decides.
    [[nodiscard]] std::optional<AVFormatterData> formattedValueForSetting(const TorvAttribute& setting) const;
    /// What of the driver's choices can't be read or saved, in one sentence for the page; nothing while all
    /// is well. It may change with each choice and each connect, and nobody is told: the page asks.
    [[nodiscard]] std::optional<std::string> storeTrouble() const;
    void setCurrentVehicle(const Vehicle& vehicle);
    void refreshWarningSensors();
    void showConnectionErrorMessage();

    /// Observers are not owned, and one may stand in the list more than once.
    void addDelegate(iTorvAppDelegateDelegate* observer);
    void removeDelegate(iTorvAppDelegateDelegate* observer);

    /// Set by each connect, cleared by a reported failure alone: a lost session is told to nobody.
    [[nodiscard]] bool connected() const { return m_connected; }
    [[nodiscard]] const std::shared_ptr<iTorvFeeder>& feeder() const { return m_feeder; }
    /// Of the link, from the launch on.
    [[nodiscard]] const LinkStatistics& statistics() const { return *m_statistics; }
    /// A pass over the link is under way for as long as somebody holds this.
    [[nodiscard]] std::shared_ptr<void> beginPass();
    [[nodiscard]] bool isPassUnderWay() const { return !m_pass.expired(); }
    /// What to show in place of an exchange that is asked for meanwhile: one inside the other would upset
    /// both. Null while none is under way.
    [[nodiscard]] std::shared_ptr<AlertView> alertDuringPass() const;
    /// For work that waits for the network. It must not refer to a screen, which may have gone by then.
    [[nodiscard]] WorkQueue& background();
    /// True once the program ends: such work then stops. Any thread.
    [[nodiscard]] std::shared_ptr<const std::atomic<bool>> ending() const { return m_ending; }
    /// Dims what is shown and too old.
    [[nodiscard]] ValueAger& ager() { return *m_ager; }
    [[nodiscard]] const Vehicle& currentVehicle() const { return m_currentVehicle; }
    /// Nothing when nothing is stored for the vehicle. Brought up to date by the next connect, or
    /// by the settings screen.
    [[nodiscard]] const std::optional<ProfileDictionary>& settingValues() const { return m_settingValues; }
    [[nodiscard]] bool connectionErrorMessageAllowed() const { return m_connectionErrorMessageAllowed; }
    void setConnectionErrorMessageAllowed(bool allowed) { m_connectionErrorMessageAllowed = allowed; }
    [[nodiscard]] bool connectionErrorMessageShown() const { return m_connectionErrorMessageShown; }
    [[nodiscard]] const std::shared_ptr<AlertView>& disconnectedWarning() const {
        return m_disconnectedWarning;
    }
    /// Of a sensor whose value is shown. The first word of a warning may be heard.
    void warningBegan(AID aid);
    void warningEnded(AID aid) { m_alarm.ended(aid); }
    /// Into the data log, which is made by its first sample.
    void recordSample(AID aid, float value);
    [[nodiscard]] std::optional<DataLog>& dataLoggingDict() { return m_dataLoggingDict; }
    /// From the launch on. A change of vehicle ends what it records and begins anew.
    [[nodiscard]] Recorder& recorder() { return *m_recorder; }
    /// In the folder of recordings, under the present time as its name. Nothing once it records, else why it
    /// does not, in a sentence.
    std::optional<std::string> beginRecording();
    /// The document of the launch URL, until the import screen takes it.
    [[nodiscard]] const std::optional<Value>& importVehicleInfo() const { return m_importVehicleInfo; }
    struct ImportTrouble {
        std::string sentence;
        bool wasRead = false;  ///< the file was, and holds no document
    };
    /// Why the launch URL holds no such document; nothing where all is well, or where there is none.
    [[nodiscard]] const std::optional<ImportTrouble>& importTrouble() const { return m_importTrouble; }
    /// False for what was told last, since the last connect or activation: the replay of each page finds the
    /// same.
    [[nodiscard]] bool tellsAnew(const std::string& sentence) {
        return std::exchange(m_lastTold, sentence) != sentence;
    }
    void forgetWhatWasTold() { m_lastTold.clear(); }

    void readAid(std::span<std::uint8_t>, AID) override {}
    [[nodiscard]] std::int32_t priority() const override { return 1; }
    void iTorvFeederDidEstablishConnection(iTorvFeeder& feeder) override;
    void iTorvFeederDidFailToConnect(iTorvFeeder& feeder) override;

private:
    void writeDefaults();
    void endoftimer();
    void alertViewClickedButtonAtIndex();
    void importFileURL(const std::string& url);
    void readFor(const std::string& key);
    using Word = void (iTorvAppDelegateDelegate::*)(iTorvAppDelegate&);
    /// All of the words to one observer, before the next one hears the first.
    void tellObservers(std::initializer_list<Word> words);

    bool m_connected = false;
    std::shared_ptr<iTorvFeeder> m_feeder;
    std::shared_ptr<LinkStatistics> m_statistics;
    std::shared_ptr<CaptureWriter> m_capture;
    std::unique_ptr<ValueAger> m_ager;
    WarningAlarm m_alarm;
    std::unique_ptr<Recorder> m_recorder;
    std::weak_ptr<void> m_pass;
    const std::shared_ptr<std::atomic<bool>> m_ending = std::make_shared<std::atomic<bool>>(false);
    std::unique_ptr<WorkQueue> m_background;
    std::optional<DataLog> m_dataLoggingDict;
    Vehicle m_currentVehicle;
    std::optional<ProfileDictionary> m_settingValues;
    std::vector<iTorvAppDelegateDelegate*> m_delegates;
    bool m_connectionErrorMessageShown = false;
    bool m_connectionErrorMessageAllowed = false;
    std::shared_ptr<AlertView> m_disconnectedWarning;
    std::optional<Value> m_importVehicleInfo;
    std::optional<ImportTrouble> m_importTrouble;
    std::string m_lastTold;
};

}  // namespace torv
