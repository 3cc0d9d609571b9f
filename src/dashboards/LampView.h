#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QString>

#include "dashboards/StatusWidget.h"
#include "screens/Image.h"

namespace torv {

/// A lamp that is on or off, in warning colours or not: shows one of two pictures. Main thread, except for
/// reading.
///
/// Counts as on when it is made, whatever picture it begins with, so that the strip's first
/// `setLocked(false)` is a change.
class LampView : public torv::StatusWidget {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString image READ image NOTIFY imageChanged)

public:
    LampView(QRectF frame, const QString& first, const QString& on, const QString& off)
        : StatusWidget(frame), m_on(imageNamed(on)), m_off(imageNamed(off)), m_image(imageNamed(first)) {}

    [[nodiscard]] bool isLocked() const { return m_locked; }
    /// Does nothing when that is no change.
    void setLocked(bool locked) {
        if (m_locked == locked) return;
        m_locked = locked;
        m_image = locked ? m_on : m_off;
        emit imageChanged();
        lockedChanged();
    }
    [[nodiscard]] QString image() const { return m_image.source; }
    [[nodiscard]] QSizeF imageSize() const { return m_image.size; }

signals:
    void imageChanged();

protected:
    virtual void lockedChanged() {}
    [[nodiscard]] std::int32_t number(const AVFormatterData& data) const override { return data.flags; }
    void show(std::int32_t flags) override { setLocked(flags == AVFormatterData::firstOn); }

private:
    const Image m_on;
    const Image m_off;
    Image m_image;
    bool m_locked = true;
};

}  // namespace torv
