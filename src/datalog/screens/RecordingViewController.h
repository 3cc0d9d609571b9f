#pragma once

#include <memory>

#include "control/iTorvAppDelegate.h"
#include "datalog/RecordingExport.h"
#include "datalog/Recordings.h"
#include "platform/Document.h"
#include "screens/TableViewController.h"
#include "screens/TextValueGetterViewController.h"

namespace torv {

/// What can be done with one recording: another name, and its exports, which are made in the background. Main
/// thread.
class RecordingViewController final : public torv::TableViewController,
                                      public TextValueGetterViewControllerDelegate {
    Q_OBJECT

public:
    RecordingViewController(std::shared_ptr<iTorvAppDelegate> application, RecordingInfo recording);

    [[nodiscard]] int numberOfSections() override { return 2; }
    [[nodiscard]] int numberOfRowsInSection(int section) override;
    [[nodiscard]] QString titleForHeaderInSection(int section) override;
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;

    bool textValueGetterViewControllerShouldValidateValues(TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestTitleForValidationError(
        TextValueGetterViewController& screen) override;
    void textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) override;

private:
    using Way = void (*)(ViewController&, const Document&);

    void rename();
    void ask(const RecordingFormat& format);
    void exportAs(const RecordingFormat& format, Way way);

    const std::shared_ptr<iTorvAppDelegate> m_application;
    RecordingInfo m_recording;
};

}  // namespace torv
