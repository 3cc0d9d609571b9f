#pragma once

#include "platform/WirelessNetworks.h"

namespace torv {

/// By NetworkManager on the system bus, and by whichever settings program is installed. Nothing
/// waits.
class DesktopWirelessNetworks final : public WirelessNetworks {
public:
    void ask(const std::string& interface, Told told) override;
    [[nodiscard]] bool canOpenSettings() const override;
    [[nodiscard]] bool openSettings() override;
};

}  // namespace torv
