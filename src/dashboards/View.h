#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QObject>
#include <QRectF>

#include "screens/Ownership.h"

namespace torv {

/// Something at a place on a page, without its looks. Lengths are points. Main thread, unless a derived class
/// says otherwise.
class View : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QRectF frame READ frame NOTIFY frameChanged)
    Q_PROPERTY(int layer READ layer CONSTANT)
    Q_PROPERTY(double alpha READ alpha NOTIFY alphaChanged)

public:
    explicit View(QRectF frame = {}) : m_frame(frame) { keepOwnership(*this); }

    /// In the coordinates of what holds it.
    [[nodiscard]] QRectF frame() const { return m_frame; }
    virtual void setFrame(QRectF frame) {
        if (m_frame == frame) return;
        m_frame = frame;
        emit frameChanged();
    }
    [[nodiscard]] QPointF center() const { return m_frame.center(); }
    void setCenter(QPointF center) {
        auto frame = m_frame;
        frame.moveCenter(center);
        setFrame(frame);
    }
    /// Lies over what has a lower one.
    [[nodiscard]] int layer() const { return m_layer; }
    void setLayer(int layer) { m_layer = layer; }
    /// What it is or fades to: 0 is invisible, 1 is opaque.
    [[nodiscard]] double alpha() const { return m_alpha; }
    void setAlpha(double alpha) {
        if (m_alpha == alpha) return;
        m_alpha = alpha;
        emit alphaChanged();
    }

signals:
    void frameChanged();
    void alphaChanged();

private:
    QRectF m_frame;
    int m_layer = 0;
    double m_alpha = 1;
};

}  // namespace torv
