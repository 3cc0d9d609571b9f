#pragma once

#include <memory>

#include "screens/LinkStatus.h"
#include "session/iTorvFeeder.h"

namespace torv {

/// The link to the module as the driver's session has it. Main thread.
///
/// The loss of a session is told to no listener, so the state is looked at twice a second.
class ConnectionStatus final : public torv::LinkStatus {
    Q_OBJECT

public:
    explicit ConnectionStatus(std::shared_ptr<iTorvFeeder> feeder);
    ~ConnectionStatus() override;

    /// With a module that speaks.
    [[nodiscard]] bool connected() const override { return m_connected && !m_silent; }
    [[nodiscard]] bool missing() const override { return m_looked && !connected(); }
    [[nodiscard]] QString text() const override;
    [[nodiscard]] QString hint() const override;

private:
    void look();

    std::shared_ptr<iTorvFeeder> m_feeder;
    std::shared_ptr<Timer> m_timer;
    bool m_looked = false;
    bool m_connected = false;
    bool m_silent = false;  // no bytes for longer than a value stays live
    bool m_wasConnected = false;
    int m_looksInVain = 0;  // in a row
};

}  // namespace torv
