#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QColor>
#include <QList>
#include <QPointer>
#include <QQuickPaintedItem>

#include "datalog/screens/GraphViewController.h"

namespace torv {

/// Draws the curves of a graph with their scales and the time axis. Main thread, except for `paint`, which
/// may run on a thread that draws, while the main thread waits.
class GraphItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(torv::GraphViewController* graph READ graph WRITE setGraph NOTIFY graphChanged)
    Q_PROPERTY(qreal u MEMBER m_u NOTIFY graphChanged)  // pixels for each point
    Q_PROPERTY(QList<QColor> colours MEMBER m_colours NOTIFY graphChanged)

public:
    GraphItem() { setOpaquePainting(true); }

    [[nodiscard]] GraphViewController* graph() const { return m_graph; }
    void setGraph(GraphViewController* graph);
    void paint(QPainter* painter) override;

signals:
    void graphChanged();

private:
    using Curve = GraphViewController::Curve;

    void paintGrid(QPainter& painter, const QRectF& plot) const;
    void paintScale(QPainter& painter, const QRectF& plot, std::size_t curve) const;
    void paintLimit(QPainter& painter, const QRectF& plot, const Curve& curve) const;
    void paintCurve(QPainter& painter, const QRectF& plot, const Curve& curve) const;
    void paintColumns(QPainter& painter, const QRectF& plot, const Curve& curve) const;
    [[nodiscard]] QRectF pixels(const QRectF& points) const;

    QPointer<GraphViewController> m_graph;
    [[nodiscard]] QColor colourOf(const Curve& curve) const {
        return m_colours.value(curve.colour, Qt::white);
    }

    qreal m_u = 1;
    QList<QColor> m_colours;
};

}  // namespace torv
