#pragma once

#include <cstdlib>
#include <map>
#include <string>

#include "platform/Platform.h"

/// Notifications and user defaults in memory; asking for anything else ends the run.
class FuzzPlatform final : public torv::Platform, public torv::UserDefaults {
public:
    FuzzPlatform() { install(this); }

    [[nodiscard]] torv::UserDefaults& userDefaults() override { return *this; }
    [[nodiscard]] torv::RunLoop& runLoop() override { std::abort(); }
    [[nodiscard]] torv::ByteStreamFactory& streams() override { std::abort(); }
    [[nodiscard]] torv::NetworkInterfaces& networkInterfaces() override { std::abort(); }
    [[nodiscard]] torv::URLLoader& urlLoader() override { std::abort(); }
    [[nodiscard]] torv::Resources& resources() override { std::abort(); }
    [[nodiscard]] torv::WirelessNetworks& wirelessNetworks() override { std::abort(); }
    [[nodiscard]] torv::WarningTone& warningTone() override { std::abort(); }
    void setIdleTimerDisabled(bool) override {}
    [[nodiscard]] torv::MailComposer& mailComposer() override { std::abort(); }
    [[nodiscard]] torv::DocumentSaver& documentSaver() override { std::abort(); }
    [[nodiscard]] std::unique_ptr<torv::WorkQueue> makeWorkQueue(const std::string&) override {
        std::abort();
    }

    [[nodiscard]] torv::Value objectForKey(std::string_view key) const override {
        const auto found = entries.find(key);
        return found == entries.end() ? torv::Value{} : found->second;
    }
    void setObjectForKey(torv::Value object, std::string_view key) override {
        entries.insert_or_assign(std::string{key}, std::move(object));
    }
    void removeObjectForKey(std::string_view key) override { entries.erase(std::string{key}); }
    bool synchronize() override { return true; }
    [[nodiscard]] std::vector<std::string> keys() const override { return {}; }

    std::map<std::string, torv::Value, std::less<>> entries;
};
