#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "session/iTorvFeeder.h"

namespace torv {

/// What the bar tells of the link to the module. Main thread.
///
/// The loss of a session is told to no listener, so the state is looked at twice a second.
class ConnectionStatus final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool connected READ connected NOTIFY changed)
    Q_PROPERTY(bool missing READ missing NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)

public:
    explicit ConnectionStatus(std::shared_ptr<iTorvFeeder> feeder);
    ~ConnectionStatus() override;

    [[nodiscard]] bool connected() const { return m_connected; }
    /// Not connected, and no longer just because the program has only started.
    [[nodiscard]] bool missing() const { return m_looked && !m_connected; }
    [[nodiscard]] QString text() const;

signals:
    void changed();

private:
    void look();

    std::shared_ptr<iTorvFeeder> m_feeder;
    std::shared_ptr<Timer> m_timer;
    bool m_looked = false;
    bool m_connected = false;
    bool m_wasConnected = false;
};

}  // namespace torv
