#pragma once

#include <filesystem>
#include <utility>

#include "platform/NotificationNames.h"
#include "platform/Platform.h"
#include "platform/real/CanberraTone.h"
#include "platform/real/CurlURLLoader.h"
#include "platform/real/DesktopDocumentSaver.h"
#include "platform/real/DesktopMailComposer.h"
#include "platform/real/DesktopWirelessNetworks.h"
#include "platform/real/IdleInhibitor.h"
#include "platform/real/PosixByteStream.h"
#include "platform/real/QtRunLoop.h"
#include "platform/real/SqliteUserDefaults.h"
#include "platform/real/StandardResources.h"
#include "platform/real/SystemNetworkInterfaces.h"
#include "platform/real/ThreadWorkQueue.h"

namespace torv {

/// The parts that a Linux machine offers. Made on the main thread, after the Qt application object.
class RealPlatform final : public Platform {
public:
    RealPlatform()
        : m_defaults(m_resources.documentsDirectory() / "defaults.sqlite",
                     [this] { notificationCenter().postNotificationName(storeKeptChanged); }),
          m_mail(m_resources.documentsDirectory() / "outbox"),
          m_streams(m_loop) {}

    [[nodiscard]] QtRunLoop& runLoop() override { return m_loop; }
    [[nodiscard]] UserDefaults& userDefaults() override { return m_defaults; }
    [[nodiscard]] ByteStreamFactory& streams() override { return m_streams; }
    [[nodiscard]] NetworkInterfaces& networkInterfaces() override { return m_interfaces; }
    [[nodiscard]] URLLoader& urlLoader() override { return m_loader; }
    [[nodiscard]] Resources& resources() override { return m_resources; }
    [[nodiscard]] MailComposer& mailComposer() override { return m_mail; }
    [[nodiscard]] DocumentSaver& documentSaver() override { return m_saver; }
    [[nodiscard]] WirelessNetworks& wirelessNetworks() override { return m_wireless; }
    [[nodiscard]] WarningTone& warningTone() override { return m_tone; }
    [[nodiscard]] std::unique_ptr<WorkQueue> makeWorkQueue(const std::string& name) override {
        return std::make_unique<ThreadWorkQueue>(name);
    }
    void setIdleTimerDisabled(bool disabled) override { m_idleInhibitor.setInhibited(disabled); }

private:
    class Streams final : public ByteStreamFactory {
    public:
        explicit Streams(RunLoop& loop) : m_loop(loop) {}
        [[nodiscard]] std::shared_ptr<ByteStream> streamToHost(const Endpoint& endpoint) override {
            return std::make_shared<PosixByteStream>(m_loop, endpoint);
        }

    private:
        RunLoop& m_loop;
    };

    IdleInhibitor m_idleInhibitor;
    StandardResources m_resources;
    SqliteUserDefaults m_defaults;
    SystemNetworkInterfaces m_interfaces;
    CurlURLLoader m_loader;
    DesktopMailComposer m_mail;
    DesktopDocumentSaver m_saver;
    DesktopWirelessNetworks m_wireless;
    CanberraTone m_tone;
    QtRunLoop m_loop;  // goes before the members above, which the owners of its timers still use
    Streams m_streams;
};

}  // namespace torv
