#pragma once

#include <QObject>
#include <QString>
#include <QtQmlIntegration>
#include <functional>

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

public:
    explicit ProgressHUD(std::function<void()> cancel);

    [[nodiscard]] QString labelText() const { return m_labelText; }
    [[nodiscard]] QString detailsLabelText() const { return m_detailsLabelText; }
    [[nodiscard]] bool cancellable() const { return m_cancel && !m_cancelHidden; }
    void setCancelHidden(bool hidden);
    /// Whether touches and keys end at the overlay; else the screen below decides on each.
    [[nodiscard]] bool swallowsTouches() const { return m_swallowsTouches; }
    void setSwallowsTouches(bool swallows) { m_swallowsTouches = swallows; }
    void setTexts(const QString& label, const QString& details);

    Q_INVOKABLE void touchCancel();

signals:
    void changed();

private:
    QString m_labelText;
    QString m_detailsLabelText;
    const std::function<void()> m_cancel;
    bool m_cancelHidden = false;
    bool m_swallowsTouches = true;
};

}  // namespace torv
