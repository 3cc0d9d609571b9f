#include "qml/GaugeScaleItem.h"

#include <QPainter>

#include "fonts/LcdFont.h"

namespace torv {
namespace {

constexpr std::int32_t labelStyle = 4;
constexpr double warningWidth = 2;

void paintLabel(QPainter& painter, const GaugeScale::Label& label) {
    DigitalDisplayView display{{label.position, QSizeF{label.width, GaugeScale::labelHeight}}};
    display.setStyle(labelStyle);
    display.setTextAlignment(0);
    display.setValue(static_cast<double>(label.value));
    const auto& style = displayStyles[labelStyle];
    const auto colour =
        QColor::fromRgbF(static_cast<float>(style.colour[0]), static_cast<float>(style.colour[1]),
                         static_cast<float>(style.colour[2]));
    for (int i = 0; i < DigitalDisplayView::cellCount; ++i) {
        const auto& key = display.glyphs()[i];
        if (key.isEmpty()) continue;
        const auto code = key.section(u'_', -1).section(u'.', 0, 0).toUShort();
        const auto cell = display.cellSize();
        const auto glyph = display.glyphSize();
        const QPointF corner =
            label.position +
            QPointF{display.offsets()[i] + (cell.width() - glyph.width()) / 2, DigitalDisplayView::cellTop};
        painter.fillPath(lcdGlyph(QChar{code}, glyph).translated(corner), colour);
    }
}

}  // namespace

void GaugeScaleItem::setGauge(GaugeView* gauge) {
    if (m_gauge == gauge) return;
    if (m_gauge) m_gauge->disconnect(this);
    m_gauge = gauge;
    if (m_gauge) connect(m_gauge, &GaugeView::faceChanged, this, [this] { update(); });
    emit gaugeChanged();
    update();
}

void GaugeScaleItem::paint(QPainter* painter) {
    if (!m_gauge || m_gauge->frame().isEmpty()) return;
    const auto scale = m_gauge->scale();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->scale(width() / m_gauge->frame().width(), height() / m_gauge->frame().height());
    for (const auto& tick : scale.ticks) {
        painter->save();
        painter->translate(scale.pivot);
        painter->rotate(tick.degrees);
        // Red ones are wider too.
        painter->setPen(QPen{tick.warning ? QColor{Qt::red} : QColor{Qt::white},
                             tick.warning ? tick.width * warningWidth : tick.width, Qt::SolidLine,
                             Qt::FlatCap});
        painter->drawLine(QPointF{0, -scale.outerRadius}, QPointF{0, -scale.innerRadius});
        painter->restore();
    }
    for (const auto& label : scale.labels)
        paintLabel(*painter, label);
}

}  // namespace torv

#include "moc_GaugeScaleItem.cpp"
