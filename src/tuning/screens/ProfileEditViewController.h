#pragma once

#include <memory>
#include <optional>

#include "control/iTorvAppDelegate.h"
#include "platform/Document.h"
#include "screens/TablePickerViewController.h"
#include "screens/TextValueGetterViewController.h"
#include "tuning/ProfileEditor.h"
#include "tuning/ProfileList.h"
#include "tuning/screens/EqualizerViewController.h"

namespace torv {

/// The values of one tuning profile, by group. What is changed is stored at once; the right button saves a
/// new profile's name, or exports a profile that is in the list. Main thread.
///
///   In the list  document  begins with                                   right button
///   no           no        what the AV store holds of every item         Save
///   no           yes       what the document tells, the rest as above    Save
///   yes          no        what is stored                                Export
///   yes          yes       as a new one with a document                  none
class ProfileEditViewController final : public torv::TableViewController,
                                        public TextValueGetterViewControllerDelegate,
                                        public TablePickerViewControllerDelegate,
                                        public EqualizerViewControllerDelegate {
    Q_OBJECT

public:
    ProfileEditViewController(std::shared_ptr<iTorvAppDelegate> application, const std::string& name,
                              std::optional<Value> document);

    void viewDidLoad() override;
    void viewDidAppear() override;
    [[nodiscard]] QString emptyText() const override {
        return QStringLiteral("This vehicle has nothing to tune.");
    }
    [[nodiscard]] int numberOfSections() override;
    [[nodiscard]] int numberOfRowsInSection(int section) override;
    [[nodiscard]] QString titleForHeaderInSection(int section) override;
    [[nodiscard]] double heightForRowAtIndexPath(IndexPath) override { return tallRowHeight; }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

    bool textValueGetterViewControllerShouldValidateValues(TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestTitleForValidationError(
        TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestMessageForValidationError(
        TextValueGetterViewController& screen) override;
    void textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) override;
    void tablePickerViewControllerDidPickValue(TablePickerViewController& picker,
                                               const QString& value) override;
    void didRequestSaveValuesForEqualizer(EqualizerViewController& equalizer) override;

    void save();
    void exportProfile();
    void saveToFile();
    /// With the module's own values, or with another profile.
    void compare();

    [[nodiscard]] ProfileEditor& editor() { return m_editor; }

private:
    [[nodiscard]] const TorvAttributeGroup& group(int section) const;
    [[nodiscard]] const TorvAttribute& itemOfTag(std::int32_t tag) const;
    [[nodiscard]] Document document() const;
    [[nodiscard]] std::optional<ProfileDictionary> valuesOfModule();

    const std::shared_ptr<iTorvAppDelegate> m_application;
    const std::optional<Value> m_importVehicleInfo;
    std::optional<ProfileList> m_database;  // from load on
    ProfileEditor m_editor;
    int m_idcode = 0;  // rows of this name in the list; 1 once the screen has appeared
};

}  // namespace torv
