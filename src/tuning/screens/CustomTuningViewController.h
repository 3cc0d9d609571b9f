#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "control/TuningPush.h"
#include "control/iTorvAppDelegate.h"
#include "platform/NotificationCenter.h"
#include "screens/TableViewController.h"

namespace torv {

/// The tuning profiles: one is active, and a touch activates another. Main thread; an activation blocks, and
/// the loop turns meanwhile.
///
/// With the document of a launch it leads on to the name of the profile that the document becomes.
class CustomTuningViewController final : public torv::TableViewController, public iTorvConnectionListener {
    Q_OBJECT

public:
    explicit CustomTuningViewController(std::shared_ptr<iTorvAppDelegate> application);

    [[nodiscard]] const std::optional<Value>& importVehicleInfo() const { return m_importVehicleInfo; }
    /// Before the view loads.
    void setImportVehicleInfo(std::optional<Value> document) { m_importVehicleInfo = std::move(document); }
    /// Why a launch file is none: said at once. Of a file that could not be read the screen then closes; with
    /// one that holds no document it stays, as a list without a way to close it; kept as it is.
    void setImportTrouble(std::optional<iTorvAppDelegate::ImportTrouble> trouble) {
        m_importTrouble = std::move(trouble);
    }

    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;
    [[nodiscard]] int numberOfRowsInSection(int) override { return static_cast<int>(m_profileList.size()); }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath) override { return m_connected; }
    void didSelectRowAtIndexPath(IndexPath path) override;
    void accessoryButtonTappedForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool canDeleteRowAtIndexPath(IndexPath path) override { return path.row != 0; }
    void deleteRowAtIndexPath(IndexPath path) override;
    void iTorvFeederDidEstablishConnection(iTorvFeeder&) override { setConnected(true); }
    void iTorvFeederDidFailToConnect(iTorvFeeder&) override { setConnected(false); }

    /// Pushes the profile and makes it the active one. A pass that is cancelled ends with the reset.
    void updateSettings(const std::string& name);
    void cancelCustomTuning() { m_push.cancel(); }
    void addProfile();
    void editItems() { setEditing(!isEditing()); }
    void back() { dismissModalViewControllerAnimated(true); }

private:
    void beginImport();
    void fillList();
    void askAboutDamagedList();
    void setConnected(bool connected);
    [[nodiscard]] const std::string& nameOf(IndexPath path) const {
        return m_profileList[static_cast<std::size_t>(path.row)];
    }

    const std::shared_ptr<iTorvAppDelegate> m_application;
    TuningPush m_push;
    std::vector<std::string> m_profileList;  // the module's own values, then the profiles
    bool m_connected = false;
    std::optional<Value> m_importVehicleInfo;
    std::optional<iTorvAppDelegate::ImportTrouble> m_importTrouble;
    NotificationCenter::Observation m_pushed;
};

}  // namespace torv
