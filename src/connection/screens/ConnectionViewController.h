#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "connection/ConnectionReport.h"
#include "control/iTorvAppDelegate.h"
#include "screens/DisplayChoices.h"
#include "screens/SwitchTableViewCell.h"
#include "screens/TableViewController.h"

namespace torv {

/// The page that explains the link: what is true now from this device to the module, what happened last, and
/// how the window looks and sounds. It looks twice a second while it is shown. Main thread.
class ConnectionViewController final : public torv::TableViewController, public SwitchTableViewCellDelegate {
    Q_OBJECT

public:
    /// `display` outlives it.
    ConnectionViewController(std::shared_ptr<iTorvAppDelegate> application, DisplayChoices& display);
    ~ConnectionViewController() override;

    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewWillDisappear() override;
    [[nodiscard]] QString background() const override { return {}; }

    [[nodiscard]] int numberOfSections() override { return 3; }
    [[nodiscard]] int numberOfRowsInSection(int section) override;
    [[nodiscard]] QString titleForHeaderInSection(int section) override;
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;
    void switchTableViewCellDidChangedValue(SwitchTableViewCell& cell, bool on) override;

private:
    enum Section { report, events, device };
    enum DisplayRow { brightness, contrast, sound, wirelessSettings };

    void refresh();
    void askOfWireless(const std::string& interface);
    void fill(TableViewCell& cell, const ConnectionLine& line) const;
    void fill(TableViewCell& cell, const LinkStatistics::Event& event) const;
    void fillDisplay(TableViewCell& cell, int row) const;

    const std::shared_ptr<iTorvAppDelegate> m_application;
    DisplayChoices& m_display;
    std::optional<WirelessNetworks::Network> m_wireless;
    std::string m_askedOf;  // the interface that `m_wireless` is of
    bool m_asking = false;
    bool m_hasSettings = false;
    std::vector<ConnectionLine> m_lines;
    std::vector<LinkStatistics::Event> m_events;
    std::shared_ptr<Timer> m_timer;
};

}  // namespace torv
