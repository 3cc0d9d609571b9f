#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QString>

namespace torv {

/// What bars and pages tell of the link to the module. Main thread.
class LinkStatus : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(bool connected READ connected NOTIFY changed)
    Q_PROPERTY(bool missing READ missing NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString hint READ hint NOTIFY changed)

public:
    [[nodiscard]] virtual bool connected() const = 0;
    /// Not connected, and no longer just because the program has only started.
    [[nodiscard]] virtual bool missing() const = 0;
    [[nodiscard]] virtual QString text() const = 0;
    /// While it is missing: where it is looked for, and after ten seconds what to look at.
    [[nodiscard]] virtual QString hint() const = 0;

signals:
    void changed();
};

}  // namespace torv
