#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

namespace torv {

/// A question or a word to the user, over everything else. Main thread.
///
/// An alert that has been made and not shown can be dismissed like any other.
class AlertView final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString message READ message CONSTANT)
    Q_PROPERTY(QStringList buttons READ buttons CONSTANT)

public:
    using Handler = std::function<void(int buttonIndex)>;

    AlertView(QString title, QString message, QStringList buttons);

    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] QStringList buttons() const { return m_buttons; }

    /// Called at the press of a button, then once the alert has gone.
    void setClickedHandler(Handler handler) { m_clicked = std::move(handler); }
    void setDismissedHandler(Handler handler) { m_dismissed = std::move(handler); }

    void dismissWithClickedButtonIndexAnimated(int index, bool animated);

    Q_INVOKABLE void touchButton(int index);

signals:
    void dismissed();

private:
    const QString m_title;
    const QString m_message;
    const QStringList m_buttons;
    Handler m_clicked;
    Handler m_dismissed;
    bool m_gone = false;
};

}  // namespace torv
