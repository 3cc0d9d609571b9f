#include "dashboards/IndicatorView.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr double textLeft = 35;
constexpr double numberTop = 4;
constexpr double numberHeight = 20;
constexpr double besideNumber = 42;
constexpr double unitTop = 24;
constexpr double unitHeight = 9;

struct UnitWidth {
    std::string_view unit;
    double width;
};
constexpr std::array<UnitWidth, 7> unitWidths{
    {{"PERC", 9}, {"DEGF", 11}, {"PSI", 16}, {"MPH", 20}, {"SEC", 17}, {"V", 7}, {"RPM", 19}}};

}  // namespace

IndicatorView::IndicatorView(QRectF frame) : CarriedView(frame) {
    m_digitalDisplayView = std::make_unique<DigitalDisplayView>(
        QRectF{textLeft, numberTop, frame.width() - besideNumber, numberHeight});
    m_digitalDisplayView->setStyle(0);
    m_digitalDisplayView->setTextAlignment(1);
}

void IndicatorView::readAid(std::span<std::uint8_t> bytes, AID aid) {
    const auto data = decoded(m_attribute, bytes, aid);
    updateOnMainThread(shared_from_this(),
                       data ? std::optional{floatValue(data->value)} : std::optional<float>{});
}

void IndicatorView::updateValue(std::optional<float> number) {
    const float value = number.value_or(0);
    showsValue();
    setValue(value);
    if (m_sampleSink && m_attribute) m_sampleSink(m_attribute->aid, value);
}

void IndicatorView::setValue(double value) {
    m_value = value;
    m_digitalDisplayView->setValue(value);
    updateWarningIcons();
}

bool IndicatorView::isValueAboveWarningMark(double value) const {
    return m_attribute && m_attribute->isInWarning(value);
}

void IndicatorView::updateWarningIcons() {
    const bool warning = isValueAboveWarningMark(m_value);
    if (std::exchange(m_inWarning, warning) != warning) emit warningChanged();
    const auto& icon = warning ? m_warningIconImage : m_iconImage;
    if (m_icon != icon) {
        m_icon = icon;
        emit iconChanged();
    }
    if (!m_delegate) return;
    if (warning) {
        m_delegate->indicatorViewDidReceiveWarning(*this);
    } else {
        m_delegate->indicatorViewDidRemoveWarning(*this);
    }
}

std::shared_ptr<DraggableIndicatorView> IndicatorView::draggingView() const {
    return std::make_shared<DraggableIndicatorView>(m_icon, m_attribute,
                                                    m_detailView ? m_detailView->copy() : nullptr);
}

void IndicatorView::setUnitImage(Image image) {
    m_unitImage = std::move(image);
    emit unitChanged();
}

void IndicatorView::setIconImage(Image image) {
    m_iconImage = std::move(image);
    updateWarningIcons();
}

void IndicatorView::setWarningIconImage(Image image) {
    m_warningIconImage = std::move(image);
    updateWarningIcons();
}

QRectF IndicatorView::unitFrame() const {
    if (!m_attribute || !m_attribute->unit) return {};
    const auto found = std::find_if(unitWidths.begin(), unitWidths.end(),
                                    [&](const UnitWidth& row) { return row.unit == *m_attribute->unit; });
    if (found == unitWidths.end()) return {};
    return {textLeft, unitTop, found->width, unitHeight};
}

std::shared_ptr<IndicatorView> IndicatorView::copy() const {
    auto copy = makeReader<IndicatorView>(frame());
    copy->setAttribute(m_attribute);
    copy->setValue(m_value);
    copy->setIconImage(m_iconImage);
    copy->setWarningIconImage(m_warningIconImage);
    copy->setUnitImage(m_unitImage);
    copy->setDetailView(m_detailView ? m_detailView->copy() : nullptr);
    return copy;
}

}  // namespace torv

#include "moc_IndicatorView.cpp"
