#pragma once

#include <array>
#include <memory>

#include "control/iTorvAppDelegate.h"
#include "diagnostics/DtcClear.h"
#include "diagnostics/DtcRequest.h"
#include "screens/TableViewController.h"

namespace torv {

/// Reads and clears the module's trouble codes, each after a question. Main thread.
///
/// While an exchange runs no other one begins, and an overlay holds the screen. An exchange ends with its
/// screen.
class DtcViewController final : public torv::TableViewController, public iTorvConnectionListener {
    Q_OBJECT

public:
    explicit DtcViewController(std::shared_ptr<iTorvAppDelegate> application);

    void viewDidLoad() override;
    [[nodiscard]] int numberOfRowsInSection(int) override;
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

    void iTorvFeederDidEstablishConnection(iTorvFeeder& feeder) override;
    void iTorvFeederDidFailToConnect(iTorvFeeder& feeder) override;

private:
    using Screen = std::weak_ptr<DtcViewController>;

    [[nodiscard]] Screen weakSelf();
    void setConnected(bool connected);
    void ask(const QString& title, const QString& message, const QString& yes);
    void alertViewClickedButtonAtIndex(const QString& title, int index);
    [[nodiscard]] bool engineTurns();
    void clear();
    void read();
    void dtcClearTimeoutHandler(DtcClear::Result result);
    void loadReadDtcView();

    const std::shared_ptr<iTorvAppDelegate> m_application;
    std::shared_ptr<DtcRequest> m_request;  // from load on
    std::shared_ptr<DtcClear> m_clear;      // from load on
    std::shared_ptr<void> m_pass;           // while one of them runs
    bool m_connected = false;
};

}  // namespace torv
