#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "diagnostics/screens/CustomCell.h"
#include "screens/TableViewController.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// The live list: the sensors that have a category, in sections by topic. Main thread.
///
/// A category is a topic, an underscore and a row. The category and not the place in the profile puts a
/// sensor into its row: gaps leave rows blank, an index past the end is never shown, and of two sensors of
/// one category the later one is. It shows what the store holds and asks the module for nothing.
class GroupsViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    GroupsViewController(Vehicle currentVehicle, std::shared_ptr<iTorvFeeder> feeder);

    [[nodiscard]] Orientations orientations() const override { return Orientations::portrait; }
    void viewDidLoad() override;

    [[nodiscard]] int numberOfSections() override { return static_cast<int>(m_topicarray.size()); }
    [[nodiscard]] int numberOfRowsInSection(int section) override;
    [[nodiscard]] QString titleForHeaderInSection(int section) override;
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] QString emptyText() const override;

private:
    const Vehicle m_currentVehicle;
    std::shared_ptr<iTorvFeeder> m_feeder;
    std::vector<TorvAttribute> m_attributes;
    std::vector<std::string> m_topicarray;
    std::map<std::string, std::vector<TorvAttribute>> m_datadict;  // by topic
};

}  // namespace torv
