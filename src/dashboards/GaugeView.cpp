#include "dashboards/GaugeView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/NotificationNames.h"
#include "support/TextNumbers.h"

namespace torv {
namespace {

constexpr AID slipAID = 40;  // shown as 0 while the converter is locked
// A dial of this width, the second page's main one, has a shorter needle.
constexpr double shortNeedleWidth = 350;
constexpr double shortNeedleHeight = 270;
constexpr double unitGap = 2;
constexpr QSizeF nameSize{95, 20};

/// Top left corner for an icon of this size beside a needle's centre.
QPointF iconPosition(GaugeStyle::IconPlace place, QPointF center, QSizeF icon) {
    const double width = icon.width();
    const double height = icon.height();
    switch (place) {
        case GaugeStyle::IconPlace::above:
            return {center.x() - std::ceil(width * 0.5), center.y() - 2 * height};
        case GaugeStyle::IconPlace::right:
            return {center.x() + width, center.y() - height};
        case GaugeStyle::IconPlace::left:
            return {center.x() - 2 * width, center.y() - height};
        case GaugeStyle::IconPlace::aside:
        case GaugeStyle::IconPlace::none:
            break;
    }
    return {center.x() - width - 20, center.y()};
}

}  // namespace

GaugeView::GaugeView(QRectF frame) : View(frame) {
    auto& center = Platform::current().notificationCenter();
    m_lock = center.addObserver(lockNotification, [this] { m_locked = true; });
    m_unlock = center.addObserver(unlockNotification, [this] { m_locked = false; });
    m_valueView = std::make_unique<DigitalDisplayView>(QRectF{});
    recalculatePreviousValue();
}

void GaugeView::readAid(std::span<std::uint8_t> bytes, AID aid) {
    const auto data = decoded(m_attribute, bytes, aid);
    auto number = data ? std::optional{floatValue(data->value)} : std::nullopt;
    if (m_locked && aid == slipAID) number = std::nullopt;
    updateOnMainThread(shared_from_this(), number);
}

void GaugeView::updateValue(std::optional<float> number) {
    if (m_active) showsValue();
    setValue(number.value_or(0));
}

void GaugeView::setValue(double value) {
    if (!m_active) return;
    m_value = value;
    m_valueView->setValue(value);
    updateWarningIcons();
    const double from = m_dial.degreesForValue(m_previousValue);
    const double to = m_dial.degreesForValue(value);
    if (from == to) return;
    m_needle.aim(to, Platform::current().runLoop().now());
    m_previousValue = value;
    emit needleAimed();
}

double GaugeView::needleAngle() const {
    return m_needle.angle(Platform::current().runLoop().now());
}

bool GaugeView::needleAtRest() const {
    return m_needle.atRest(Platform::current().runLoop().now());
}

void GaugeView::setAttribute(std::shared_ptr<const TorvAttribute> attribute) {
    m_attribute = std::move(attribute);
    m_dial.minimumValue = m_attribute ? longLongFromDouble(m_attribute->minValue) : 0;
    m_dial.maximumValue = m_attribute ? longLongFromDouble(m_attribute->maxValue) : 0;
    recalculatePreviousValue();
}

void GaugeView::setMinimumDegree(std::int64_t degree) {
    m_dial.minimumDegree = degree;
    recalculatePreviousValue();
}

void GaugeView::setMaximumDegree(std::int64_t degree) {
    m_dial.maximumDegree = degree;
    recalculatePreviousValue();
}

void GaugeView::recalculatePreviousValue() {
    m_previousValue = m_dial.neutralValue();
}

void GaugeView::setLargeIconImages(Image normal, Image warning) {
    m_largeIconImage = std::move(normal);
    m_largeWarningIconImage = std::move(warning);
}

void GaugeView::setSmallIconImages(Image normal, Image warning) {
    m_smallIconImage = std::move(normal);
    m_smallWarningIconImage = std::move(warning);
}

void GaugeView::setFrame(QRectF frame) {
    View::setFrame(frame);
    reloadView();
}

void GaugeView::reloadView() {
    const auto& face = gaugeStyle(m_style);
    m_pointer = imageNamed(m_style == mainGaugeStyle ? QStringLiteral("NEEDLE_LARGE.png")
                                                     : QStringLiteral("NEEDLE_SMALL.png"));
    auto needleSize = m_pointer.size;
    if (frame().width() == shortNeedleWidth) needleSize.setHeight(shortNeedleHeight);
    m_pointerFrame = {{}, needleSize};
    m_pointerFrame.moveCenter(center());
    m_needle.rest(0);

    const QPointF origin = face.tile ? QPointF{} : center();
    const auto readOut = face.readOut.translated(origin);
    // The look may still draw the one that goes.
    const auto leaving = std::exchange(m_valueView, std::make_unique<DigitalDisplayView>(readOut));
    m_valueView->setValue(m_previousValue);
    m_valueView->setStyle(face.displayStyle);
    m_valueView->setTextAlignment(face.textAlignment);
    m_valueView->setValue(0);

    auto unit = face.unit;
    if (face.unitSide == GaugeStyle::Side::left) unit = {readOut.left(), readOut.bottom() + unitGap};
    if (face.unitSide == GaugeStyle::Side::right)
        unit = {readOut.right() - m_unitImage.size.width(), readOut.bottom() + unitGap};
    m_unitFrame = {unit, m_unitImage.size};
    updateWarningIcons();
    emit faceChanged();
    emit needleAimed();
}

bool GaugeView::isValueAboveWarningMark(double value) const {
    return m_attribute && m_attribute->isInWarning(value);
}

void GaugeView::updateWarningIcons() {
    const bool warning = isValueAboveWarningMark(m_value);
    const bool main = m_style == mainGaugeStyle;
    const auto& normalIcon = main ? m_largeIconImage : m_smallIconImage;
    const auto& warningIcon = main ? m_largeWarningIconImage : m_smallWarningIconImage;
    const auto& icon = warning ? warningIcon : normalIcon;
    const auto place = gaugeStyle(m_style).icon;
    const auto frame = place == GaugeStyle::IconPlace::none
                           ? QRectF{}
                           : QRectF{iconPosition(place, m_pointerFrame.center(), icon.size), icon.size};
    if (warning == m_inWarning && icon == m_icon && frame == m_iconFrame) return;
    m_inWarning = warning;
    m_icon = icon;
    m_iconFrame = frame;
    emit iconChanged();
}

QString GaugeView::sensorName() const {
    return m_attribute ? QString::fromStdString(m_attribute->name.value_or(std::string{})) : QString{};
}

QString GaugeView::name() const {
    return isTile() ? sensorName() : QString{};
}

QRectF GaugeView::nameFrame() const {
    const double inset = gaugeStyle(m_style).nameInset;
    return {QPointF{inset, inset}, nameSize};
}

GaugeScale GaugeView::scale() const {
    const bool milesPerHour = m_attribute && m_attribute->unit == "MPH";
    return GaugeScale::make(m_dial, m_style, frame().size(), milesPerHour,
                            [this](double value) { return isValueAboveWarningMark(value); });
}

void GaugeView::setActive(bool active) {
    m_active = active;
    showsNone();
}

std::shared_ptr<GaugeView> GaugeView::copy() const {
    auto copy = makeReader<GaugeView>(frame());
    copy->setAttribute(m_attribute);
    copy->setMinimumDegree(m_dial.minimumDegree);
    copy->setMaximumDegree(m_dial.maximumDegree);
    copy->setValue(m_value);  // without effect, for a copy is inactive
    copy->setUnitImage(m_unitImage);
    copy->setLargeIconImages(m_largeIconImage, m_largeWarningIconImage);
    copy->setSmallIconImages(m_smallIconImage, m_smallWarningIconImage);
    return copy;
}

}  // namespace torv

#include "moc_GaugeView.cpp"
