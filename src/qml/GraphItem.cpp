#include "qml/GraphItem.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace torv {
namespace {

const QColor ground{0x0b, 0x0c, 0x0d};
const QColor gridColour{0x2f, 0x35, 0x3b};
const QColor faintText{0x98, 0xa1, 0xa9};
const QColor cursorColour{0xf3, 0xf4, 0xf5};
constexpr double lineWidth = 1.5;
constexpr double textHeight = 12;
constexpr int letterHeight = 9;
/// With fewer samples than this for each column of pixels, they are joined by smooth lines.
constexpr double samplesForColumns = 0.25;

double yOf(const QRectF& plot, const CurveAxis& axis, double value) {
    return plot.bottom() - std::clamp(axis.placeOf(value), -1.0, 2.0) * plot.height();
}

}  // namespace

void GraphItem::setGraph(GraphViewController* graph) {
    if (m_graph == graph) return;
    if (m_graph) m_graph->disconnect(this);
    m_graph = graph;
    if (m_graph) connect(m_graph, &GraphViewController::changed, this, [this] { update(); });
    emit graphChanged();
    update();
}

QRectF GraphItem::pixels(const QRectF& points) const {
    return QRectF{points.topLeft() * m_u, points.size() * m_u}.toRect();
}

void GraphItem::paint(QPainter* painter) {
    painter->fillRect(boundingRect(), ground);
    if (!m_graph) return;
    auto font = painter->font();
    font.setPixelSize(std::max(static_cast<int>(std::lround(letterHeight * m_u)), 1));
    painter->setFont(font);
    const auto plot = pixels(m_graph->plotFrame());
    paintGrid(*painter, plot);
    const auto& curves = m_graph->curves();
    for (std::size_t i = 0; i < curves.size(); ++i)
        paintScale(*painter, plot, i);
    painter->setClipRect(plot);
    for (const auto& curve : curves) {
        paintLimit(*painter, plot, curve);
        paintCurve(*painter, plot, curve);
    }
    if (const auto cursor = m_graph->cursor()) {
        const double x = plot.left() + m_graph->visible().placeOf(*cursor) * plot.width();
        painter->fillRect(QRectF{x, plot.top(), std::max(m_u, 1.0), plot.height()}, cursorColour);
    }
}

void GraphItem::paintGrid(QPainter& painter, const QRectF& plot) const {
    const double width = std::max(std::round(m_u / 2), 1.0);
    for (int line = 0; line <= CurveAxis::parts; ++line) {
        const double y = plot.bottom() - plot.height() * line / CurveAxis::parts;
        painter.fillRect(QRectF{plot.left(), y, plot.width(), width}, gridColour);
    }
    painter.setPen(faintText);
    for (const auto& mark : m_graph->timeMarks()) {
        const double x = plot.left() + mark.place * plot.width();
        painter.fillRect(QRectF{x, plot.top(), width, plot.height()}, gridColour);
        constexpr double halfWidth = 40;
        const double left = std::clamp(x - halfWidth * m_u, 0.0, this->width() - 2 * halfWidth * m_u);
        const auto alignment = left < x - halfWidth * m_u   ? Qt::AlignRight
                               : left > x - halfWidth * m_u ? Qt::AlignLeft
                                                            : Qt::AlignHCenter;
        painter.drawText(QRectF{left, plot.bottom() + 2 * m_u, 2 * halfWidth * m_u, textHeight * m_u},
                         static_cast<int>(alignment) | Qt::AlignVCenter, mark.text);
    }
}

void GraphItem::paintScale(QPainter& painter, const QRectF& plot, std::size_t curve) const {
    const auto& drawn = m_graph->curves()[curve];
    painter.setPen(colourOf(drawn));
    constexpr double margin = 3;
    const int alignment =
        static_cast<int>(curve % 2 == 0 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    const auto roomAt = [&](double top) {
        return QRectF{(m_graph->axisLeft(curve) + margin) * m_u, top,
                      (GraphViewController::axisWidth - 2 * margin) * m_u, textHeight * m_u};
    };
    painter.drawText(roomAt(m_u), alignment, QString::fromStdString(m_graph->sensorOf(drawn).unit));
    for (int line = 0; line <= CurveAxis::parts; ++line) {
        const double y = plot.bottom() - plot.height() * line / CurveAxis::parts;
        const double top = std::clamp(y - textHeight / 2 * m_u, 0.0, plot.bottom() - textHeight * m_u);
        painter.drawText(roomAt(top), alignment, QString::fromStdString(drawn.axis.textAt(line)));
    }
}

void GraphItem::paintLimit(QPainter& painter, const QRectF& plot, const Curve& curve) const {
    const auto limit = m_graph->sensorOf(curve).limit();
    if (!limit) return;
    painter.setPen(QPen{colourOf(curve), std::max(m_u, 1.0), Qt::DashLine});
    const double y = yOf(plot, curve.axis, *limit);
    painter.drawLine(QPointF{plot.left(), y}, QPointF{plot.right(), y});
}

void GraphItem::paintCurve(QPainter& painter, const QRectF& plot, const Curve& curve) const {
    const auto span = m_graph->visible().span();
    if (static_cast<double>(curve.series.countWithin(span)) > plot.width() * samplesForColumns)
        return paintColumns(painter, plot, curve);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{colourOf(curve), lineWidth * m_u, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    QPolygonF line;
    double before = 0;
    const auto flush = [&] {
        if (line.size() == 1) painter.drawPoint(line.first());
        if (line.size() > 1) painter.drawPolyline(line);
        line.clear();
    };
    for (const auto& sample : curve.series.samples(span)) {
        if (!CurveSeries::areJoined(before, sample.seconds)) flush();
        before = sample.seconds;
        line.push_back({plot.left() + m_graph->visible().placeOf(sample.seconds) * plot.width(),
                        yOf(plot, curve.axis, sample.value)});
    }
    flush();
    painter.setRenderHint(QPainter::Antialiasing, false);
}

/// A bar for each column, from its lowest to its highest value and on to where the column before it ended.
void GraphItem::paintColumns(QPainter& painter, const QRectF& plot, const Curve& curve) const {
    const double thickness = std::max(std::round(lineWidth * m_u), 1.0);
    painter.setPen(QPen{colourOf(curve), thickness});
    const auto xOf = [&plot](std::size_t column) { return plot.left() + static_cast<double>(column) - 1; };
    std::optional<CurveSeries::Column> before;
    for (const auto& column :
         curve.series.columns(m_graph->visible().span(), static_cast<std::size_t>(plot.width()))) {
        double low = column.low;
        double high = column.high;
        if (before && column.joined && before->column + 1 == column.column) {
            low = std::min(low, before->last);
            high = std::max(high, before->last);
        } else if (before && column.joined) {
            painter.drawLine(QPointF{xOf(before->column) + 1, yOf(plot, curve.axis, before->last)},
                             QPointF{xOf(column.column), yOf(plot, curve.axis, column.first)});
        }
        before = column;
        const double top = yOf(plot, curve.axis, high) - thickness / 2;
        const double bottom = yOf(plot, curve.axis, low) + thickness / 2;
        painter.fillRect(QRectF{xOf(column.column), top, 1, bottom - top}, colourOf(curve));
    }
}

}  // namespace torv

#include "moc_GraphItem.cpp"
