#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QString>
#include <functional>

#include "screens/Touch.h"

namespace torv {

/// A button of the navigation bar. Main thread.
class BarButtonItem final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString icon READ icon NOTIFY changed)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY changed)

public:
    BarButtonItem(QString title, std::function<void()> action, QString icon = {})
        : m_title(std::move(title)), m_icon(std::move(icon)), m_action(std::move(action)) {}

    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QString icon() const { return m_icon; }
    [[nodiscard]] bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) {
        if (m_enabled == enabled) return;
        m_enabled = enabled;
        emit changed();
    }

    Q_INVOKABLE void touch() {
        queueTouch(this, [](BarButtonItem& item) {
            if (item.m_enabled && item.m_action) item.m_action();
        });
    }

signals:
    void changed();

private:
    const QString m_title;
    const QString m_icon;
    const std::function<void()> m_action;
    bool m_enabled = true;
};

}  // namespace torv
