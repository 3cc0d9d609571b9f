#pragma once

#include <memory>
#include <optional>

#include "control/iTorvAppDelegate.h"
#include "platform/NotificationCenter.h"
#include "screens/SwitchTableViewCell.h"
#include "screens/TablePickerViewController.h"
#include "screens/TappableLabelTableViewCell.h"
#include "screens/TextValueGetterViewController.h"
#include "settings/DeviceSettings.h"
#include "settings/screens/DriveTrainInfoViewController.h"

namespace torv {

/// The device settings of the current vehicle: what is stored of them, and their change. Main thread; a
/// change blocks, and the loop turns meanwhile.
class SettingsViewController final : public torv::TableViewController,
                                     public SwitchTableViewCellDelegate,
                                     public TappableLabelTableViewCellDelegate,
                                     public TextValueGetterViewControllerDelegate,
                                     public TablePickerViewControllerDelegate,
                                     public DriveTrainInfoViewControllerDelegate,
                                     public iTorvAppDelegateDelegate,
                                     public iTorvConnectionListener {
    Q_OBJECT

public:
    explicit SettingsViewController(std::shared_ptr<iTorvAppDelegate> application);
    ~SettingsViewController() override;

    void viewDidLoad() override;
    [[nodiscard]] QString emptyText() const override {
        return QStringLiteral("This vehicle has no settings.");
    }
    [[nodiscard]] int numberOfRowsInSection(int) override;
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return tallRowHeight; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;
    void accessoryButtonTappedForRowAtIndexPath(IndexPath path) override { pushPicker(path.row); }

    void switchTableViewCellDidChangedValue(SwitchTableViewCell& cell, bool on) override;
    void tappableLabelTableViewCellDidChange(TappableLabelTableViewCell& cell) override {
        pushPicker(cell.tag());
    }
    bool textValueGetterViewControllerShouldValidateValues(TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestTitleForValidationError(
        TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestMessageForValidationError(
        TextValueGetterViewController& screen) override;
    void textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) override;
    void tablePickerViewControllerDidPickValue(TablePickerViewController& picker,
                                               const QString& value) override;
    void driveTrainInfoViewControllerDidChange(DriveTrainInfoViewController& screen) override;
    void iTorvFeederDidEstablishConnection(iTorvFeeder& feeder) override;
    void iTorvFeederDidFailToConnect(iTorvFeeder& feeder) override;
    void iTorvAppDelegateDidChangeCurrentVehicle(iTorvAppDelegate& application) override;
    void iTorvAppDelegateDidChangeWarningSensors(iTorvAppDelegate&) override {}

    /// Without asking the user first.
    void reset();

private:
    [[nodiscard]] const TorvAttribute& setting(int row) const;
    [[nodiscard]] std::shared_ptr<TableViewCell> emptyCell(const TorvAttribute& setting,
                                                           const AVFormatterData& record);
    /// A word behind the setting's value.
    [[nodiscard]] QString noteFor(const TorvAttribute& setting) const;
    void pushPicker(int row);
    void setConnected(bool connected);

    const std::shared_ptr<iTorvAppDelegate> m_application;
    std::optional<DeviceSettings> m_settings;  // from load on
    bool m_connected = false;
    NotificationCenter::Observation m_replayed;
};

}  // namespace torv
