#pragma once

#include <QPointer>
#include <QQuickPaintedItem>

#include "dashboards/GaugeView.h"

namespace torv {

/// Draws the marks around a dial, once for each face. Main thread.
class GaugeScaleItem : public QQuickPaintedItem {
    Q_OBJECT
    Q_PROPERTY(QObject* gauge READ gauge WRITE setGauge NOTIFY gaugeChanged)

public:
    [[nodiscard]] QObject* gauge() const { return m_gauge; }
    void setGauge(QObject* gauge);
    void paint(QPainter* painter) override;

signals:
    void gaugeChanged();

private:
    QPointer<GaugeView> m_gauge;
};

}  // namespace torv
