#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <functional>
#include <memory>
#include <utility>

#include "platform/Platform.h"
#include "screens/DisplayChoices.h"
#include "screens/LinkStatus.h"
#include "screens/ViewController.h"

namespace torv {

/// All that the window shows: the topmost of the screens, the overlay that stands on it, and over everything
/// the topmost alert. Main thread.
class Stage final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(torv::ViewController* top READ top NOTIFY topChanged)
    Q_PROPERTY(QSizeF viewSize READ viewSize WRITE setViewSize NOTIFY viewSizeChanged)
    Q_PROPERTY(torv::LinkStatus* status READ status CONSTANT)
    Q_PROPERTY(torv::DisplayChoices* display READ display CONSTANT)
    Q_PROPERTY(bool portrait READ portrait NOTIFY portraitChanged)
    Q_PROPERTY(torv::AlertView* alert READ alert NOTIFY alertChanged)
    Q_PROPERTY(torv::ProgressHUD* progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QStringList marks READ marks NOTIFY marksChanged)

public:
    /// Loads the root. `status` is what the bar tells of the connection, and is not owned.
    Stage(std::shared_ptr<ViewController> root, LinkStatus* status);
    ~Stage() override;

    /// The last one of those that are presented over the root, or the root.
    [[nodiscard]] ViewController* top() const { return m_top; }
    /// Of the root and of all that is presented over it, in points.
    [[nodiscard]] QSizeF viewSize() const { return m_root->viewSize(); }
    void setViewSize(QSizeF size);
    [[nodiscard]] LinkStatus* status() const { return m_status; }
    [[nodiscard]] DisplayChoices* display() { return &m_display; }
    /// What a touch on the state of the link does.
    void setStatusTouched(std::function<void()> action) { m_statusTouched = std::move(action); }
    /// The screen that is shown wants to stand upright.
    [[nodiscard]] bool portrait() const { return m_portrait; }
    /// Null when there is none.
    [[nodiscard]] AlertView* alert() const { return m_alert; }
    [[nodiscard]] ProgressHUD* progress() const { return m_progress; }
    /// Words that stand in a corner of every screen, while what they say lasts.
    [[nodiscard]] QStringList marks() const { return m_marks; }
    void setMark(const QString& word, bool shown);

    // From the look.
    Q_INVOKABLE void touchStatus();
    Q_INVOKABLE void touchBrightness();

signals:
    void topChanged();
    void viewSizeChanged();
    void portraitChanged();
    void alertChanged();
    void progressChanged();
    void marksChanged();

private:
    void look();

    const std::shared_ptr<ViewController> m_root;
    LinkStatus* m_status;
    DisplayChoices m_display{defaults()};
    std::function<void()> m_statusTouched;
    ViewController* m_top = nullptr;
    AlertView* m_alert = nullptr;
    ProgressHUD* m_progress = nullptr;
    QPointer<ProgressHUD> m_lastProgress;
    bool m_portrait = false;
    QStringList m_marks;
};

}  // namespace torv
