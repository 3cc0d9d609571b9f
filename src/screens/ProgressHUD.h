#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>

#include "platform/Timer.h"

namespace torv {

/// An overlay that holds the screen while something runs: a spinner, a label, a detail label and a Cancel
/// button. Main thread; the touch on Cancel comes through while a blocking exchange turns the loop.
class ProgressHUD final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString labelText READ labelText NOTIFY changed)
    Q_PROPERTY(QString detailsLabelText READ detailsLabelText NOTIFY changed)
    Q_PROPERTY(bool cancellable READ cancellable NOTIFY changed)
    Q_PROPERTY(bool swallowsTouches READ swallowsTouches NOTIFY changed)
    Q_PROPERTY(bool backgroundOffered READ backgroundOffered NOTIFY backgroundChanged)
    Q_PROPERTY(bool inBackground READ inBackground NOTIFY backgroundChanged)

public:
    explicit ProgressHUD(std::function<void()> cancel);
    ~ProgressHUD() override;

    [[nodiscard]] QString labelText() const { return m_labelText; }
    [[nodiscard]] QString detailsLabelText() const { return m_detailsLabelText; }
    [[nodiscard]] bool cancellable() const { return m_cancel && !m_cancelHidden; }
    void setCancelHidden(bool hidden);
    /// Whether touches and keys end at the overlay; else the screen below decides on each.
    [[nodiscard]] bool swallowsTouches() const { return m_swallowsTouches; }
    void setSwallowsTouches(bool swallows) { m_swallowsTouches = swallows; }
    /// After 5 seconds the user may go on with something else: the overlay is then a pill with its texts.
    [[nodiscard]] bool backgroundOffered() const { return m_backgroundOffered && !m_inBackground; }
    [[nodiscard]] bool inBackground() const { return m_inBackground; }
    /// Off for what is over after five seconds anyway, and for what shows a screen when it is done.
    void setBackgroundAllowed(bool allowed) {
        if (!allowed) m_offer->invalidate();
    }
    void setTexts(const QString& label, const QString& details);
    /// What it told of is over; the screen that it stood on has let go of it.
    void end() {
        m_inBackground = false;
        emit ended();
    }

    Q_INVOKABLE void touchCancel();
    Q_INVOKABLE void touchBackground();

signals:
    void ended();
    void changed();
    void backgroundChanged();

private:
    QString m_labelText;
    QString m_detailsLabelText;
    const std::function<void()> m_cancel;
    bool m_cancelHidden = false;
    bool m_swallowsTouches = true;
    bool m_backgroundOffered = false;
    bool m_inBackground = false;
    std::shared_ptr<Timer> m_offer;
};

}  // namespace torv
