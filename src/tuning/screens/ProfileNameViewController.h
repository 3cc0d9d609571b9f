#pragma once

#include <memory>
#include <optional>

#include "control/iTorvAppDelegate.h"
#include "screens/TableViewController.h"
#include "screens/TextValueGetterTableViewCell.h"
#include "tuning/ProfileList.h"

namespace torv {

/// Asks for the name of a new profile. Only a name that is taken is refused; even the empty one is accepted.
/// Where a name is one that the program uses itself, it warns first. Main thread.
class ProfileNameViewController final : public torv::TableViewController, public TextFieldDelegate {
    Q_OBJECT

public:
    /// With a document, the profile that it becomes: its name stands in the field.
    ProfileNameViewController(std::shared_ptr<iTorvAppDelegate> application, std::optional<Value> document)
        : m_application(std::move(application)), m_importVehicleInfo(std::move(document)) {}

    void viewDidLoad() override;
    void viewDidAppear() override;
    [[nodiscard]] int numberOfRowsInSection(int) override { return 1; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;
    void textFieldDidEndEditing(TextValueGetterTableViewCell& cell) override { m_name = cell.value(); }
    void textFieldShouldReturn(TextValueGetterTableViewCell&) override { Next(); }

    void Next();

private:
    [[nodiscard]] TextValueGetterTableViewCell* field() const;
    void goOn(const std::string& name);

    const std::shared_ptr<iTorvAppDelegate> m_application;
    const std::optional<Value> m_importVehicleInfo;
    std::optional<ProfileList> m_database;  // from load on
    QString m_name;
};

}  // namespace torv
