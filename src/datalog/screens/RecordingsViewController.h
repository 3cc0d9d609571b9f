#pragma once

#include <memory>
#include <vector>

#include "control/iTorvAppDelegate.h"
#include "datalog/Recordings.h"
#include "screens/TableViewController.h"

namespace torv {

/// The recordings, the newest first. Main thread; the files are looked at in the background.
class RecordingsViewController final : public torv::TableViewController {
    Q_OBJECT

public:
    explicit RecordingsViewController(std::shared_ptr<iTorvAppDelegate> application)
        : m_application(std::move(application)) {}

    void viewDidLoad() override;
    void viewWillAppear() override;
    [[nodiscard]] int numberOfRowsInSection(int) override { return static_cast<int>(m_recordings.size()); }
    [[nodiscard]] std::shared_ptr<TableViewCell> cellForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool shouldHighlightRowAtIndexPath(IndexPath path) override;
    void didSelectRowAtIndexPath(IndexPath path) override;
    void accessoryButtonTappedForRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] bool canDeleteRowAtIndexPath(IndexPath) override { return true; }
    void deleteRowAtIndexPath(IndexPath path) override;
    [[nodiscard]] QString emptyText() const override {
        return QStringLiteral(
            "Nothing has been recorded yet. \"Record\" on the previous screen starts a recording.");
    }

private:
    void load();
    [[nodiscard]] const RecordingInfo& recording(IndexPath path) const {
        return m_recordings[static_cast<std::size_t>(path.row)];
    }

    const std::shared_ptr<iTorvAppDelegate> m_application;
    std::vector<RecordingInfo> m_recordings;
};

/// Pushes the graph of a recording, or says over the screen why it can't be read.
void showRecording(ViewController& screen, const std::filesystem::path& file);

}  // namespace torv
