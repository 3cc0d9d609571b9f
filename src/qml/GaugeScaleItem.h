#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QPointer>
#include <QQuickPaintedItem>

#include "dashboards/GaugeView.h"

namespace torv {

/// Draws the marks around a dial, once for each face. Main thread, except for `paint`, which may run on a
/// thread that draws, while the main thread waits.
class GaugeScaleItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(torv::GaugeView* gauge READ gauge WRITE setGauge NOTIFY gaugeChanged)

public:
    [[nodiscard]] GaugeView* gauge() const { return m_gauge; }
    void setGauge(GaugeView* gauge);
    void paint(QPainter* painter) override;

signals:
    void gaugeChanged();

private:
    QPointer<GaugeView> m_gauge;
};

}  // namespace torv
