#pragma once

#include <functional>
#include <memory>
#include <string>

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
    using Then = std::function<void(ViewController&)>;
    /// Makes a file, for as long as it is to go on; what then happens on the main thread unless it says why
    /// there is none.
    using Work = std::function<Then(const std::function<bool()>& goesOn, std::string& error)>;

    void rename();
    void ask(const RecordingFormat& format);
    void mail(const RecordingFormat& format);
    void save(const RecordingFormat& format);
    void inBackground(Work work);

    const std::shared_ptr<iTorvAppDelegate> m_application;
    RecordingInfo m_recording;
};

}  // namespace torv
