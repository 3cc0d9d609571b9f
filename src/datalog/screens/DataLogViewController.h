#pragma once

#include <memory>
#include <vector>

#include "attributes/TorvAttribute.h"
#include "control/iTorvAppDelegate.h"
#include "platform/Document.h"
#include "screens/TableViewController.h"

namespace torv {

/// The lowest and highest values of the sensors since the start or the last "Clear", brought up to date every
/// second; also the way to recordings. Main thread.
class DataLogViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    explicit DataLogViewController(std::shared_ptr<iTorvAppDelegate> appDelegate)
        : m_appDelegate(std::move(appDelegate)) {}

    void viewDidLoad() override;
    void viewWillAppear() override;
    [[nodiscard]] int numberOfRowsInSection(int) override { return static_cast<int>(m_attributes.size()); }
    [[nodiscard]] TableSectionView viewForHeaderInSection(int) override;
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath) override { return false; }
    [[nodiscard]] QString emptyText() const override {
        return QStringLiteral("This vehicle has no sensors to log.");
    }

    void UpdateList();
    void ExportList();
    void ClearList();

private:
    [[nodiscard]] Document document() const;
    void showTools();
    void record();
    void showGraph();

    const std::shared_ptr<iTorvAppDelegate> m_appDelegate;
    Vehicle m_currentVehicle;
    std::vector<TorvAttribute> m_attributes;
};

}  // namespace torv
