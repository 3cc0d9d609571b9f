#pragma once

#include <memory>
#include <string>

#include "platform/ByteStream.h"
#include "platform/DocumentSaver.h"
#include "platform/MailComposer.h"
#include "platform/NetworkInterfaces.h"
#include "platform/NotificationCenter.h"
#include "platform/Resources.h"
#include "platform/RunLoop.h"
#include "platform/URLLoader.h"
#include "platform/UserDefaults.h"
#include "platform/WarningTone.h"
#include "platform/WirelessNetworks.h"
#include "platform/WorkQueue.h"

namespace torv {

/// What the logic asks of its surroundings, chosen once and installed process-wide.
///
/// Installed by the entry point, or by a test's fixture, on the main thread before anything uses it,
/// and taken away after the last use.
class Platform {
public:
    Platform() = default;
    Platform(const Platform&) = delete;
    Platform& operator=(const Platform&) = delete;
    virtual ~Platform() = default;

    /// Any thread; each part tells its own.
    [[nodiscard]] static Platform& current();
    static void install(Platform* platform);

    [[nodiscard]] virtual RunLoop& runLoop() = 0;
    [[nodiscard]] virtual UserDefaults& userDefaults() = 0;
    [[nodiscard]] virtual ByteStreamFactory& streams() = 0;
    [[nodiscard]] virtual NetworkInterfaces& networkInterfaces() = 0;
    [[nodiscard]] virtual URLLoader& urlLoader() = 0;
    [[nodiscard]] virtual Resources& resources() = 0;
    [[nodiscard]] virtual MailComposer& mailComposer() = 0;
    [[nodiscard]] virtual DocumentSaver& documentSaver() = 0;
    [[nodiscard]] virtual WirelessNetworks& wirelessNetworks() = 0;
    [[nodiscard]] virtual WarningTone& warningTone() = 0;
    /// `name` is what the system shows for the thread, 15 characters at the most.
    [[nodiscard]] virtual std::unique_ptr<WorkQueue> makeWorkQueue(const std::string& name) = 0;
    /// Whether the screen stays on though nobody touches it. Main thread.
    virtual void setIdleTimerDisabled(bool disabled) = 0;
    [[nodiscard]] NotificationCenter& notificationCenter() { return m_notificationCenter; }

private:
    NotificationCenter m_notificationCenter;
};

/// Those of the platform that is installed.
[[nodiscard]] inline UserDefaults& defaults() {
    return Platform::current().userDefaults();
}

}  // namespace torv
