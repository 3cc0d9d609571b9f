#pragma once

#include <memory>

#include "control/iTorvAppDelegate.h"
#include "platform/NotificationCenter.h"
#include "screens/TablePickerViewController.h"
#include "screens/TextValueGetterViewController.h"
#include "settings/DriveTrainInfo.h"

namespace torv {

class DriveTrainInfoViewController;

/// Hears of a change of the record. Main thread.
class DriveTrainInfoViewControllerDelegate {
public:
    DriveTrainInfoViewControllerDelegate() = default;
    DriveTrainInfoViewControllerDelegate(const DriveTrainInfoViewControllerDelegate&) = delete;
    DriveTrainInfoViewControllerDelegate& operator=(const DriveTrainInfoViewControllerDelegate&) = delete;
    virtual ~DriveTrainInfoViewControllerDelegate() = default;

    /// After each change.
    virtual void driveTrainInfoViewControllerDidChange(DriveTrainInfoViewController& screen) = 0;
};

/// The drive train record of the current vehicle. Main thread; a change blocks, and the loop turns meanwhile.
/// The delegate is not owned; it stands below on the same stack of screens.
class DriveTrainInfoViewController final : public torv::TableViewController,
                                           public TextValueGetterViewControllerDelegate,
                                           public TablePickerViewControllerDelegate,
                                           public iTorvAppDelegateDelegate,
                                           public iTorvConnectionListener {
    Q_OBJECT

public:
    DriveTrainInfoViewController(const TorvAttribute& setting, std::shared_ptr<iTorvAppDelegate> application);
    ~DriveTrainInfoViewController() override;
    [[nodiscard]] static std::shared_ptr<DriveTrainInfoViewController> initWithAttribute(
        const TorvAttribute& setting, std::shared_ptr<iTorvAppDelegate> application);
    void setDelegate(std::weak_ptr<DriveTrainInfoViewControllerDelegate> delegate) {
        m_delegate = std::move(delegate);
    }

    void viewDidLoad() override { setTitle(QStringLiteral("Drive Train Info")); }
    [[nodiscard]] int numberOfRowsInSection(int) override { return 3; }
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return tallRowHeight; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] TableSectionView viewForFooterInSection(int) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath) override { return opens(); }
    void didSelectRowAtIndexPath(IndexPath path) override;

    bool textValueGetterViewControllerShouldValidateValues(TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestTitleForValidationError(
        TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestMessageForValidationError(
        TextValueGetterViewController& screen) override;
    void textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) override;
    void tablePickerViewControllerDidPickValue(TablePickerViewController& picker,
                                               const QString& value) override;
    void iTorvFeederDidEstablishConnection(iTorvFeeder& feeder) override;
    void iTorvFeederDidFailToConnect(iTorvFeeder& feeder) override;
    void iTorvAppDelegateDidChangeCurrentVehicle(iTorvAppDelegate&) override { m_settings.end(); }
    void iTorvAppDelegateDidChangeWarningSensors(iTorvAppDelegate&) override {}

private:
    [[nodiscard]] bool opens() const { return m_connected && isChangeable(m_info.setting()); }
    void setConnected(bool connected);
    void pushPicker(int row);
    void pushTireSize(int row);
    void changed();
    void load();

    const std::shared_ptr<iTorvAppDelegate> m_application;
    DeviceSettings m_settings;
    DriveTrainInfo m_info;
    bool m_connected;
    std::weak_ptr<DriveTrainInfoViewControllerDelegate> m_delegate;
    NotificationCenter::Observation m_replayed;
};

}  // namespace torv
