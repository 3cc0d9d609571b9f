#include "dashboards/IndicatorViewFactory.h"

#include <utility>

#include "fonts/LcdFont.h"

namespace torv {
namespace {

constexpr double indicatorUnitSize = 12;
constexpr double gaugeUnitSize = 14.5;
// Characters of a unit. Downloaded profiles may have longer ones; a gauge has room for less than half.
constexpr int longestUnit = 40;
constexpr QRectF indicatorFrame{0, 0, 90, 40};
constexpr QRectF gaugeFrame{0, 0, 337, 334};
constexpr std::int64_t patternMinimumDegree = -20;
constexpr std::int64_t patternMaximumDegree = 160;

QString unitText(const TorvAttribute& attribute) {
    const auto key = QString::fromStdString(attribute.unit.value_or(std::string{})).toUpper();
    const auto text = TorvAttribute::shortUnitDescriptionForUnitKey(key.toStdString());
    return (text ? QString::fromStdString(*text) : key).left(longestUnit);
}

Image icon(AID aid, const char* form, bool warning) {
    const auto string = QString::fromLatin1(form);
    const auto warningString = warning ? QStringLiteral("_GLOW") : QString{};
    return IndicatorViewFactory::iconImageForAIDStringWarningStringDefaultImage(
        aid, string, warningString, QStringLiteral("00_%1%2.png").arg(string, warningString));
}

}  // namespace

std::shared_ptr<IndicatorView> IndicatorViewFactory::indicatorViewForTorvAttributeDelegate(
    std::shared_ptr<const TorvAttribute> attribute, IndicatorViewDelegate* delegate) {
    const AID aid = attribute->aid;
    const auto unit = unitText(*attribute);
    auto indicator = makeReader<IndicatorView>(indicatorFrame);
    indicator->setIconImage(icon(aid, "LIST", false));
    indicator->setWarningIconImage(icon(aid, "LIST", true));
    indicator->setValue(attribute->minValue);  // before there is anyone to be warned
    indicator->setAttribute(attribute);
    indicator->setDelegate(delegate);
    indicator->setUnitImage(lcdTextImage(unit, indicatorUnitSize));

    auto gauge = makeReader<GaugeView>(gaugeFrame);
    gauge->setSmallIconImages(icon(aid, "SIDE", false), icon(aid, "SIDE", true));
    gauge->setLargeIconImages(icon(aid, "CENTER", false), icon(aid, "CENTER", true));
    gauge->setActive(false);
    gauge->setMinimumDegree(patternMinimumDegree);
    gauge->setMaximumDegree(patternMaximumDegree);
    gauge->setUnitImage(lcdTextImage(unit, gaugeUnitSize));
    gauge->setAttribute(std::move(attribute));
    indicator->setDetailView(std::move(gauge));
    return indicator;
}

Image IndicatorViewFactory::iconImageForAIDStringWarningStringDefaultImage(AID aid, const QString& string,
                                                                           const QString& warningString,
                                                                           const QString& defaultImage) {
    const auto own = imageNamed(QStringLiteral("%1_%2%3.png").arg(aid).arg(string, warningString));
    return own ? own : imageNamed(defaultImage);
}

}  // namespace torv
