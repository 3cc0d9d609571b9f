#include "tuning/screens/EqualizerKnobView.h"

#include <algorithm>
#include <cmath>

#include "screens/Ownership.h"
#include "screens/Touch.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

// Points. The scale keeps off the slider's ends by half a handle, so that its ticks meet the handle's travel.
constexpr double sliderLeft = 20;
constexpr double sliderTop = 30;
constexpr double sliderBottom = 40;
constexpr double scaleTop = 41;
constexpr double scaleBottom = 51;
constexpr double scaleWidth = 20;
constexpr double sliderWidth = EqualizerKnobView::width - sliderLeft;

}  // namespace

QList<EqualizerTick> equalizerTicks(const EqualizerScale& scale, QSizeF size, bool isLabeled) {
    QList<EqualizerTick> ticks;
    for (const auto& tick : scale.ticks(size.width(), size.height(), isLabeled)) {
        EqualizerTick shown;
        shown.frame = {tick.x, tick.y, tick.width, EqualizerScale::tickHeight};
        shown.highlighted = tick.highlighted;
        shown.label = QString::fromStdString(tick.label);
        shown.labelFrame = {0, tick.labelTop, size.width() - 2, EqualizerScale::labelHeight};
        ticks.push_back(shown);
    }
    return ticks;
}

EqualizerKnobView::EqualizerKnobView() {
    keepOwnership(*this);
}

void EqualizerKnobView::configureForSettingInGroupWithValue(const TorvAttribute& attribute,
                                                            const TorvAttributeGroup& group,
                                                            AVFormatterData& record) {
    m_attribute = &attribute;
    m_formatterData = &record;
    // In this order, for each pushes the others.
    m_slider.setMinDisplayValue(group.lowValue);
    m_slider.setMaxDisplayValue(group.highValue);
    m_slider.setMinSliderValue(attribute.minValue);
    m_slider.setMaxSliderValue(attribute.maxValue);
    m_slider.setLowWarningValue(attribute.warningvaluelow);
    m_slider.setHighWarningValue(attribute.warningvaluehigh);
    const double stored = floatValue(record.value);
    m_slider.setSelectedValue(stored);
    m_scale = {group.lowValue, group.highValue, group.defaultValue};
    m_scaleHidden = &attribute == &group.items.front();
    // What can't be shown becomes the group's default and not the nearest end; the text is that default,
    // and the handle is where the band's own range lets it be.
    if (stored != m_slider.selectedValue()) {
        m_slider.setSelectedValue(group.defaultValue);
        didChangeSelectedValue(group.defaultValue);
    }
    emit laidOut();
    emit changed();
}

void EqualizerKnobView::setHeight(double height) {
    m_height = height;
    m_slider.setSize(sliderWidth, sliderFrame().height(), handleWidth, handleHeight);
    emit laidOut();
    emit changed();
}

QString EqualizerKnobView::name() const {
    return QString::fromStdString(m_attribute->name.value_or(std::string{}));
}

QString EqualizerKnobView::value() const {
    return QString::fromStdString(m_formatterData->value);
}

QRectF EqualizerKnobView::sliderFrame() const {
    return {sliderLeft, sliderTop, sliderWidth, std::max(m_height - sliderTop - sliderBottom, handleHeight)};
}

QRectF EqualizerKnobView::scaleFrame() const {
    return {0, scaleTop, scaleWidth, std::max(m_height - scaleTop - scaleBottom, 0.0)};
}

QList<EqualizerTick> EqualizerKnobView::ticks() const {
    return m_scaleHidden ? QList<EqualizerTick>{} : equalizerTicks(m_scale, scaleFrame().size(), false);
}

bool EqualizerKnobView::outOfRange() const {
    const double value = m_slider.selectedValue();
    return value < m_slider.lowWarningValue() || value > m_slider.highWarningValue();
}

QRectF EqualizerKnobView::railPart(const EqualizerSliderControl::Layer& layer) const {
    constexpr double rail = EqualizerSliderControl::railWidth;
    return {sliderWidth / 2 - rail / 2, layer.top, rail, std::max(layer.height, 0.0)};
}

bool EqualizerKnobView::beginTracking(double x, double y) {
    if (sliderFrame().height() <= handleHeight || !m_slider.canGrab(x, y)) return false;
    m_sliderHandleSelected = true;
    emit changed();
    return true;
}

void EqualizerKnobView::continueTracking(double y) {
    if (!m_sliderHandleSelected) return;
    m_slider.setSelectedValue(m_slider.valueAt(y));
    didChangeSelectedValue(m_slider.selectedValue());
    emit changed();
}

void EqualizerKnobView::endTracking() {
    m_sliderHandleSelected = false;
    emit changed();
}

void EqualizerKnobView::step(int steps) {
    const auto digits = std::clamp<std::int64_t>(m_attribute->decimaldigits, 0, 9);
    const double unit = std::pow(10.0, -static_cast<double>(digits));
    m_slider.setSelectedValue(doubleValue(m_formatterData->value) + steps * unit);
    didChangeSelectedValue(m_slider.selectedValue());
    emit changed();
}

void EqualizerKnobView::touchValue() {
    queueTouch(this, [](EqualizerKnobView& self) { emit self.tuneRequested(); });
}

void EqualizerKnobView::didChangeSelectedValue(double value) {
    m_formatterData->value = fixedText(value, m_attribute->decimaldigits);
}

}  // namespace torv

#include "moc_EqualizerKnobView.cpp"
