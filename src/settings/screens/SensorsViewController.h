#pragma once

#include <memory>
#include <optional>

#include "control/iTorvAppDelegate.h"
#include "screens/SwitchTableViewCell.h"
#include "screens/TextValueGetterViewController.h"
#include "settings/SensorWarnings.h"

namespace torv {

/// The warnings of the current vehicle's sensors. A change is on the gauges at once. Main thread.
class SensorsViewController final : public torv::TableViewController,
                                    public SwitchTableViewCellDelegate,
                                    public TextValueGetterViewControllerDelegate {
    Q_OBJECT

public:
    explicit SensorsViewController(std::shared_ptr<iTorvAppDelegate> application)
        : m_application(std::move(application)) {}

    void viewDidLoad() override;
    [[nodiscard]] QString emptyText() const override {
        return QStringLiteral("No sensor of this vehicle has a warning.");
    }
    [[nodiscard]] int numberOfRowsInSection(int) override;
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return tallRowHeight; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

    void switchTableViewCellDidChangedValue(SwitchTableViewCell& cell, bool on) override;
    bool textValueGetterViewControllerShouldValidateValues(TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestTitleForValidationError(
        TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestMessageForValidationError(
        TextValueGetterViewController& screen) override;
    void textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) override;

    /// Without asking the user first.
    void reset();

private:
    [[nodiscard]] const TorvAttribute& sensor(int row) const;

    const std::shared_ptr<iTorvAppDelegate> m_application;
    std::optional<SensorWarnings> m_warnings;  // from load on
};

}  // namespace torv
