#include "dashboards/GearView.h"

#include "support/TextNumbers.h"

namespace torv {

GearView::GearView(QRectF frame)
    : StatusWidget(frame), m_currentGear(std::make_unique<DigitalDisplayView>(QRectF{{}, frame.size()})) {
    m_currentGear->setStyle(1);
    m_currentGear->setTextAlignment(1);
    m_currentGear->setUseSingleValue(true);
    m_currentGear->setValue(0);
}

std::int32_t GearView::number(const AVFormatterData& data) const {
    return intValue(data.value);
}

}  // namespace torv

#include "moc_GearView.cpp"
