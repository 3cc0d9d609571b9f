#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "control/iTorvAppDelegate.h"
#include "screens/TableViewController.h"

namespace torv {

/// The choice of the vehicle, and the download and update of its profile: on the first run over the first
/// page, later from the menu. The only place where the current vehicle changes; nothing goes to the module
/// from here. Main thread.
///
///   State        entered by                left by
///   Loading      the screen's making       the list of stored and remote vehicles
///   Idle         the list                  a row, or a button of an alert
///   Downloading  a row, or an alert's YES  the end of the download
///   Closed       the choice, or Close      -
///
/// Lists and documents come on the application's background queue. A download has the loop turn until it is
/// there; meanwhile no row can be picked, and a screen that is left by then changes nothing more.
class CarSetupTableViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    /// What an alert was about; from 0 on an update that failed, of the vehicle in that row.
    enum AlertTag { updateOnAppearance = -1, updateOfPicked = -2, changeOfVehicle = -3 };

    explicit CarSetupTableViewController(std::shared_ptr<iTorvAppDelegate> application);

    void viewDidLoad() override;
    void viewWillAppear() override;
    void viewDidAppear() override;
    void viewWillDisappear() override;
    [[nodiscard]] int numberOfRowsInSection(int) override;
    [[nodiscard]] TableSectionView viewForHeaderInSection(int) override;
    [[nodiscard]] TableSectionView viewForFooterInSection(int) override;
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

    [[nodiscard]] const std::vector<Vehicle>& vehicles() const { return m_vehicles; }
    /// Closes the screen that is shown by itself on the first run.
    void back() { dismissModalViewControllerAnimated(true); }

private:
    void loadVehicles();
    void refresh();
    /// False when the screen has been left meanwhile, or the program ends: nothing more is to be done then.
    [[nodiscard]] bool updateVehicle(Vehicle& vehicle);
    void updateWorkingVehicle();
    void setCurrentVehicle(const Vehicle& vehicle);
    void close();

    void showUpdateAlertWithTag(int tag);
    void showVehicleChangeAlertWithTag(int tag);
    void showUpdateErrorAlertWithTag(int tag);
    void showAlertWithTag(int tag, const QString& title, const QString& message, const QStringList& buttons);
    void alertViewClickedButtonAtIndex(int tag, int index);
    void updateCurrentVehicle(int tag);
    void useOlderCopy(int row);

    void putIntoList(const Vehicle& vehicle);
    [[nodiscard]] int rowOf(const Vehicle& vehicle) const;
    void setBusy(int row);

    const std::shared_ptr<iTorvAppDelegate> m_application;
    std::vector<Vehicle> m_vehicles;
    Vehicle m_currentVehicle;
    Vehicle m_workingVehicle;
    bool m_isFirstRun = false;
    bool m_downloading = false;
    bool m_left = false;
    std::optional<std::string> m_markedName;  // of the current vehicle, at the last look
};

}  // namespace torv
