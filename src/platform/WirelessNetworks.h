#pragma once

#include <functional>
#include <optional>
#include <string>

namespace torv {

/// What the desktop knows of the wireless network that an interface is in, and its settings. Main thread.
class WirelessNetworks {
public:
    struct Network {
        std::string name;
        int strength = 0;  ///< of the signal, in percent
    };
    /// Called on the main thread, at once or later; nothing where nobody knows.
    using Told = std::function<void(std::optional<Network>)>;

    WirelessNetworks() = default;
    WirelessNetworks(const WirelessNetworks&) = delete;
    WirelessNetworks& operator=(const WirelessNetworks&) = delete;
    virtual ~WirelessNetworks() = default;

    virtual void ask(const std::string& interface, Told told) = 0;
    /// Where the system has settings of its own for that.
    [[nodiscard]] virtual bool canOpenSettings() const = 0;
    /// False when they could not be started.
    [[nodiscard]] virtual bool openSettings() = 0;
};

}  // namespace torv
