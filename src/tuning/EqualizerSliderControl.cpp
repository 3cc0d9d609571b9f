#include "tuning/EqualizerSliderControl.h"

#include <algorithm>
#include <cmath>

namespace torv {
namespace {

void raise(double& value, double atLeast) {
    value = std::max(value, atLeast);
}

void lower(double& value, double atMost) {
    value = std::min(value, atMost);
}

}  // namespace

void EqualizerSliderControl::setMinDisplayValue(double value) {
    raise(m_minSliderValue, value);
    raise(m_lowWarningValue, value);
    m_minDisplayValue = value;
}

void EqualizerSliderControl::setMaxDisplayValue(double value) {
    lower(m_maxSliderValue, value);
    lower(m_highWarningValue, value);
    m_maxDisplayValue = value;
}

void EqualizerSliderControl::setMinSliderValue(double value) {
    lower(m_minDisplayValue, value);
    raise(m_lowWarningValue, value);
    m_minSliderValue = value;
}

void EqualizerSliderControl::setMaxSliderValue(double value) {
    raise(m_maxDisplayValue, value);
    lower(m_highWarningValue, value);
    m_maxSliderValue = value;
}

void EqualizerSliderControl::setLowWarningValue(double value) {
    lower(m_minSliderValue, value);
    lower(m_minDisplayValue, value);
    m_lowWarningValue = value;
}

void EqualizerSliderControl::setHighWarningValue(double value) {
    raise(m_maxSliderValue, value);
    raise(m_maxDisplayValue, value);
    m_highWarningValue = value;
}

void EqualizerSliderControl::setSelectedValue(double value) {
    m_selectedValue = std::max(std::min(value, m_maxSliderValue), m_minSliderValue);
}

void EqualizerSliderControl::setSize(double width, double height, double handleWidth, double handleHeight) {
    m_width = width;
    m_height = height;
    m_handleWidth = handleWidth;
    m_handleHeight = handleHeight;
}

double EqualizerSliderControl::handleCenter() const {
    const double range = m_maxDisplayValue - m_minDisplayValue;
    const double part = range == 0 ? 0 : (m_selectedValue - m_minDisplayValue) / range;
    return m_height - m_handleHeight / 2 - part * (m_height - m_handleHeight);
}

double EqualizerSliderControl::valueAt(double y) const {
    const double part = (m_height - m_handleHeight / 2 - y) / (m_height - m_handleHeight);
    return part * (m_maxDisplayValue - m_minDisplayValue) + m_minDisplayValue;
}

bool EqualizerSliderControl::canGrab(double x, double y) const {
    return std::abs(x - m_width / 2) <= m_handleWidth / 2 + touchMargin &&
           std::abs(y - handleCenter()) <= m_handleHeight / 2 + touchMargin;
}

double EqualizerSliderControl::redHeight(double values) const {
    const double range = m_maxDisplayValue - m_minDisplayValue;
    const double height = range == 0 ? 0 : m_height * values / range;
    return height > 0 ? height - m_handleHeight / 4 : height;
}

EqualizerSliderControl::Layer EqualizerSliderControl::sliderMaxOutOfRangeLine() const {
    return {.top = m_handleHeight / 2, .height = redHeight(m_maxDisplayValue - m_highWarningValue)};
}

EqualizerSliderControl::Layer EqualizerSliderControl::sliderMinOutOfRangeLine() const {
    const double height = redHeight(m_lowWarningValue - m_minDisplayValue);
    return {.top = m_height - height - m_handleHeight / 2, .height = height};
}

EqualizerSliderControl::Layer EqualizerSliderControl::sliderRangeLine() const {
    const double upper = sliderMaxOutOfRangeLine().height;
    return {.top = m_handleHeight / 2 + upper,
            .height = m_height - m_handleHeight - upper - sliderMinOutOfRangeLine().height};
}

}  // namespace torv
