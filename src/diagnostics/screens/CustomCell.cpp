#include "diagnostics/screens/CustomCell.h"

#include <chrono>

#include "attributes/AVTimeFormatter.h"
#include "platform/Platform.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr std::chrono::milliseconds refreshInterval{500};

}  // namespace

std::string liveListText(const TorvAttribute& attribute, const AVFormatterData& data,
                         const std::string& unit) {
    if (attribute.unit == "tSEC") {
        if (std::dynamic_pointer_cast<AVTimeFormatter>(attribute.formatter)) return data.value;
        return hoursMinutesSeconds(intValue(data.value));
    }
    if (attribute.unit == "tMIN") return sixtiethsText(intValue(data.value));
    return unit.empty() ? data.value : data.value + " " + unit;
}

void CustomCell::initWithAttribute(const TorvAttribute& attribute) {
    m_theattribute = attribute;
    m_unit = unitText(attribute.unit);
    setText(QString::fromStdString(attribute.name.value_or(std::string{})));
    Platform::current().runLoop().scheduleTimer(refreshInterval, true,
                                                [weak = weak_from_this()](Timer& timer) {
                                                    if (const auto cell = weak.lock()) {
                                                        cell->UpdateList(timer);
                                                    } else {
                                                        timer.invalidate();
                                                    }
                                                });
}

void CustomCell::UpdateList(Timer&) {
    auto value = m_feeder->valueForAID(m_theattribute->aid);
    setDimmed(m_feeder->isOldValueForAID(m_theattribute->aid));
    const auto data = m_theattribute->dataFromAV(value);
    if (!data) return;
    setDetailText(QString::fromStdString(liveListText(*m_theattribute, *data, m_unit)));
    setAlarming(m_theattribute->isInWarning(static_cast<double>(floatValue(data->value))));
}

}  // namespace torv

#include "moc_CustomCell.cpp"
