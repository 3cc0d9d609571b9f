#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ScriptedStream.h"
#include "VirtualRunLoop.h"
#include "platform/Log.h"
#include "platform/NotificationNames.h"
#include "platform/Platform.h"

namespace fakes {

/// Counts the calls of `synchronize`, which fails while `kept` is false.
class MemoryUserDefaults final : public torv::UserDefaults {
public:
    [[nodiscard]] torv::Value objectForKey(std::string_view key) const override {
        const auto found = entries.find(key);
        return found == entries.end() ? torv::Value{} : found->second;
    }
    void setObjectForKey(torv::Value object, std::string_view key) override {
        entries.insert_or_assign(std::string{key}, std::move(object));
    }
    void removeObjectForKey(std::string_view key) override { entries.erase(std::string{key}); }
    bool synchronize() override {
        ++synchronized;
        if (std::exchange(m_wasKept, kept) != kept && keptChanged) keptChanged();
        return kept;
    }
    [[nodiscard]] bool isWhole() const override { return whole; }
    [[nodiscard]] bool isKept() const override { return kept; }
    [[nodiscard]] std::vector<std::string> keys() const override {
        std::vector<std::string> all;
        for (const auto& [key, value] : entries)
            all.push_back(key);
        return all;
    }

    std::map<std::string, torv::Value, std::less<>> entries;
    int synchronized = 0;
    bool whole = true;
    bool kept = true;
    std::function<void()> keptChanged;

private:
    bool m_wasKept = true;
};

/// Queued replies, recorded requests; an error where none is queued.
class QueuedURLLoader final : public torv::URLLoader {
public:
    [[nodiscard]] bool accepts(const std::string& url) const override { return url.starts_with("http"); }
    [[nodiscard]] Reply load(const std::string& url) override {
        requests.push_back(url);
        if (replies.empty()) return {.body = {}, .status = {}, .error = "no reply was queued"};
        auto reply = std::move(replies.front());
        replies.pop_front();
        return reply;
    }

    std::vector<std::string> requests;
    std::deque<Reply> replies;
};

/// Hands its work to the loop, a piece at a time: in virtual time there is no second thread.
class LoopWorkQueue final : public torv::WorkQueue {
public:
    explicit LoopWorkQueue(torv::RunLoop& loop) : m_loop(loop) {}
    void post(std::function<void()> work) override {
        m_loop.performOnMainThread([alive = std::weak_ptr{m_alive}, work = std::move(work)] {
            if (!alive.expired()) work();
        });
    }

private:
    torv::RunLoop& m_loop;
    std::shared_ptr<int> m_alive = std::make_shared<int>(0);
};

/// Installs itself, and keeps what is logged. One thread, in virtual time.
class FakePlatform final : public torv::Platform {
public:
    FakePlatform() {
        torv::Platform::install(this);
        defaults.keptChanged = [this] { notificationCenter().postNotificationName(torv::storeKeptChanged); };
        torv::setLogSink([this](std::string_view line) { log.emplace_back(line); });
    }
    ~FakePlatform() override {
        torv::setLogSink(nullptr);
        torv::Platform::install(nullptr);
    }

    [[nodiscard]] VirtualRunLoop& runLoop() override { return loop; }
    [[nodiscard]] torv::UserDefaults& userDefaults() override { return defaults; }
    [[nodiscard]] torv::ByteStreamFactory& streams() override { return m_streams; }
    [[nodiscard]] torv::NetworkInterfaces& networkInterfaces() override { return network; }
    [[nodiscard]] torv::URLLoader& urlLoader() override { return loader; }
    [[nodiscard]] torv::Resources& resources() override { return m_resources; }
    [[nodiscard]] torv::MailComposer& mailComposer() override { return mail; }
    [[nodiscard]] torv::DocumentSaver& documentSaver() override { return files; }
    [[nodiscard]] torv::WirelessNetworks& wirelessNetworks() override { return wireless; }
    [[nodiscard]] torv::WarningTone& warningTone() override { return tone; }
    [[nodiscard]] std::unique_ptr<torv::WorkQueue> makeWorkQueue(const std::string&) override {
        return std::make_unique<LoopWorkQueue>(loop);
    }

    void setIdleTimerDisabled(bool disabled) override { idleTimerDisabled = disabled; }

    /// The stream opened last.
    [[nodiscard]] ScriptedStream& stream() { return *opened.back(); }

    struct Network final : torv::NetworkInterfaces {
        [[nodiscard]] std::optional<std::vector<Address>> addresses() const override { return list; }
        [[nodiscard]] std::optional<std::uint32_t> reachabilityFlags() const override { return flags; }
        [[nodiscard]] std::optional<Route> routeTo(const std::string& ipv4) const override {
            const auto found = routes.find(ipv4);
            return found == routes.end() ? std::nullopt : std::optional{found->second};
        }

        std::map<std::string, Route> routes;
        std::optional<std::vector<Address>> list = std::vector<Address>{};
        std::optional<std::uint32_t> flags = 0;
    };
    struct Mailbox final : torv::MailComposer {
        [[nodiscard]] bool canSendMail() const override { return possible; }
        void compose(const Mail& composed, Failed failed) override {
            mails.push_back(composed);
            if (!starts) failed();
        }

        bool possible = true;
        bool starts = true;

        std::vector<Mail> mails;
    };

    struct Files final : torv::DocumentSaver {
        void save(const torv::Document& document, Done done) override {
            documents.push_back(document);
            done(outcome);
        }
        void choosePlace(const std::string&, Done done) override { done(outcome); }

        Outcome outcome{.file = "/a/file", .error = {}};
        std::vector<torv::Document> documents;
    };

    struct Wireless final : torv::WirelessNetworks {
        void ask(const std::string&, Told told) override { told(network); }
        [[nodiscard]] bool canOpenSettings() const override { return hasSettings; }
        [[nodiscard]] bool openSettings() override { return ++opened > 0; }

        std::optional<Network> network;
        bool hasSettings = false;
        int opened = 0;
    };
    struct Tone final : torv::WarningTone {
        void play() override { ++played; }
        int played = 0;
    };

    VirtualRunLoop loop;
    MemoryUserDefaults defaults;
    Network network;
    QueuedURLLoader loader;
    Mailbox mail;
    Files files;
    Wireless wireless;
    Tone tone;
    std::vector<std::string> log;
    std::vector<std::shared_ptr<ScriptedStream>> opened;
    std::function<void()> onOpened;
    bool streamsOpen = true;
    bool idleTimerDisabled = false;
    bool resourcesMissing = false;

private:
    struct Streams final : torv::ByteStreamFactory {
        explicit Streams(FakePlatform& owner) : platform(owner) {}
        [[nodiscard]] std::shared_ptr<torv::ByteStream> streamToHost(
            const torv::Endpoint& endpoint) override {
            platform.opened.push_back(std::make_shared<ScriptedStream>(platform.loop, endpoint));
            platform.opened.back()->opens = platform.streamsOpen;
            if (platform.onOpened) platform.onOpened();
            return platform.opened.back();
        }
        FakePlatform& platform;
    };
    struct SourceResources final : torv::Resources {
        explicit SourceResources(FakePlatform& owner) : platform(owner) {}
        [[nodiscard]] std::optional<std::filesystem::path> pathForResourceOfType(
            std::string_view name, std::string_view type) const override {
            if (platform.resourcesMissing) return std::nullopt;
            const auto fileName = std::string{name} + '.' + std::string{type};
            for (const auto* folder : {ITORV_RESOURCE_DIR, ITORV_SHARE_DIR}) {
                const auto file = std::filesystem::path{folder} / fileName;
                if (std::filesystem::exists(file)) return file;
            }
            return std::nullopt;
        }
        [[nodiscard]] std::filesystem::path documentsDirectory() const override { return testing::TempDir(); }
        FakePlatform& platform;
    };

    Streams m_streams{*this};
    SourceResources m_resources{*this};
};

}  // namespace fakes
