#pragma once

#include <QObject>
#include <QVariantList>
#include <memory>
#include <vector>

#include "screens/AlertView.h"
#include "screens/ProgressHUD.h"
#include "screens/ViewController.h"

namespace torv {

/// All that the window shows: the topmost of the screens, and over it alerts and overlays. Main thread.
class Stage final : public QObject {
    Q_OBJECT
    Q_PROPERTY(torv::ViewController* top READ top NOTIFY topChanged)
    Q_PROPERTY(QSizeF viewSize READ viewSize WRITE setViewSize NOTIFY viewSizeChanged)
    Q_PROPERTY(QObject* status READ status CONSTANT)
    Q_PROPERTY(torv::AlertView* alert READ alert NOTIFY alertsChanged)
    Q_PROPERTY(torv::ProgressHUD* progress READ progress NOTIFY progressChanged)

public:
    /// Loads the root. `status` is what the bar tells of the connection, and is not owned.
    Stage(std::shared_ptr<ViewController> root, QObject* status);
    ~Stage() override;

    /// The last one of those that are presented over the root, or the root.
    [[nodiscard]] ViewController* top() const;
    /// Of the root and of all that is presented over it, in points.
    [[nodiscard]] QSizeF viewSize() const { return m_root->viewSize(); }
    void setViewSize(QSizeF size);
    [[nodiscard]] QObject* status() const { return m_status; }
    /// The topmost; null when there is none.
    [[nodiscard]] AlertView* alert() const { return m_alerts.empty() ? nullptr : m_alerts.back().get(); }
    [[nodiscard]] ProgressHUD* progress() const { return m_progress.get(); }

    void show(std::shared_ptr<AlertView> alert);
    /// Null takes the overlay away.
    void setProgress(std::shared_ptr<ProgressHUD> progress);

signals:
    void topChanged();
    void viewSizeChanged();
    void alertsChanged();
    void progressChanged();

private:
    const std::shared_ptr<ViewController> m_root;
    QObject* m_status;
    std::vector<std::shared_ptr<AlertView>> m_alerts;
    std::shared_ptr<ProgressHUD> m_progress;
};

}  // namespace torv
