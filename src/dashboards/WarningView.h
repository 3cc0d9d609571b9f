#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QString>

#include "dashboards/View.h"
#include "screens/Image.h"

namespace torv {

/// The alert icon of a page. Main thread.
class WarningView final : public torv::View {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(bool warning READ warning NOTIFY warningChanged)
    Q_PROPERTY(bool old READ isOld NOTIFY oldChanged)
    Q_PROPERTY(QString image READ image CONSTANT)

public:
    explicit WarningView(QRectF frame) : View(frame), m_image(imageNamed(QStringLiteral("ICON_ALERT.png"))) {}

    [[nodiscard]] bool warning() const { return m_warning; }
    void setWarning(bool warning) {
        if (m_warning == warning) return;
        m_warning = warning;
        emit warningChanged();
    }
    /// All that it warns of came too long ago to be taken for live.
    [[nodiscard]] bool isOld() const { return m_old; }
    void setOld(bool old) {
        if (m_old == old) return;
        m_old = old;
        emit oldChanged();
    }
    [[nodiscard]] QString image() const { return m_image.source; }

signals:
    void warningChanged();
    void oldChanged();

private:
    const Image m_image;
    bool m_warning = false;
    bool m_old = false;
};

}  // namespace torv
