#pragma once

#include <QObject>
#include <QVariantList>
#include <memory>
#include <vector>

#include "screens/AlertView.h"
#include "screens/ProgressHUD.h"
#include "screens/ViewController.h"

namespace torv {

class NavigationController;

/// All that the window shows: the stack of screens, and over it alerts and overlays. Main thread.
class Stage final : public QObject {
    Q_OBJECT
    Q_PROPERTY(torv::NavigationController* navigation READ navigation CONSTANT)
    Q_PROPERTY(QObject* status READ status CONSTANT)
    Q_PROPERTY(torv::AlertView* alert READ alert NOTIFY alertsChanged)
    Q_PROPERTY(torv::ProgressHUD* progress READ progress NOTIFY progressChanged)

public:
    /// `status` is what the bar tells of the connection; neither it nor the navigation is owned.
    Stage(NavigationController& navigation, QObject* status);
    ~Stage() override;

    [[nodiscard]] NavigationController* navigation() const { return &m_navigation; }
    [[nodiscard]] QObject* status() const { return m_status; }
    /// The topmost; null when there is none.
    [[nodiscard]] AlertView* alert() const { return m_alerts.empty() ? nullptr : m_alerts.back().get(); }
    [[nodiscard]] ProgressHUD* progress() const { return m_progress.get(); }

    void show(std::shared_ptr<AlertView> alert);
    /// Null takes the overlay away.
    void setProgress(std::shared_ptr<ProgressHUD> progress);

signals:
    void alertsChanged();
    void progressChanged();

private:
    NavigationController& m_navigation;
    QObject* m_status;
    std::vector<std::shared_ptr<AlertView>> m_alerts;
    std::shared_ptr<ProgressHUD> m_progress;
};

}  // namespace torv
