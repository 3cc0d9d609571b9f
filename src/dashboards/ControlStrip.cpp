#include "dashboards/ControlStrip.h"

#include <array>
#include <string>
#include <utility>

#include "platform/NotificationNames.h"
#include "platform/StoredKeys.h"

namespace torv {
namespace {

constexpr double powerLevelWidth = 86;
constexpr double besidePowerLevel = 30;
constexpr QSizeF warningSize{28, 25};
constexpr double gearGap = 5;
constexpr QSizeF gearSize{12, 17};

// From the strip's right edge.
constexpr double torqueLockRight = 48;
constexpr double sootRight = 72;
constexpr double soxRight = 102;

template <class Lamp>
std::shared_ptr<Lamp> makeLamp(double left) {
    auto lamp = makeReader<Lamp>(QRectF{left, 0, 0, 0});
    lamp->setFrame({QPointF{left, 0}, lamp->imageSize()});
    return lamp;
}

}  // namespace

ControlStrip::ControlStrip(QRectF frame, double powerLevelLeft, const std::shared_ptr<iTorvFeeder>& feeder)
    : View(frame) {
    const double width = frame.width();
    m_powerLevelView =
        makeReader<PowerLevelView>(QRectF{powerLevelLeft, 0, powerLevelWidth, frame.height()}, feeder);
    m_powerLevelView->setPriority(1);
    setTurbo(Platform::current().userDefaults().objectForKey(turboSettingKey).boolValue());
    m_warningView =
        std::make_unique<WarningView>(QRectF{QPointF{powerLevelWidth + besidePowerLevel, 0}, warningSize});
    m_warningView->setWarning(false);
    m_torqueLockView = makeLamp<TorqueLockView>(width - torqueLockRight);
    m_torqueLockView->setLocked(false);
    m_torqueLockView->setPriority(1);
    m_sootView = makeLamp<SootView>(width - sootRight);
    m_sootView->setLocked(false);
    m_sootView->setPriority(1);  // the sox lamp keeps 0, which makes no difference to the feeder
    m_soxView = makeLamp<SoxView>(width - soxRight);
    m_soxView->setLocked(false);
    m_gearView =
        makeReader<GearView>(QRectF{QPointF{m_torqueLockView->frame().right() + gearGap, 0}, gearSize});
    m_gearView->setPriority(1);
    auto& center = Platform::current().notificationCenter();
    m_turboOn = center.addObserver(turboOnNotification, [this] { TurboOn(); });
    m_turboOff = center.addObserver(turboOffNotification, [this] { TurboOff(); });
}

void ControlStrip::setTurbo(bool on) {
    m_turboind = imageNamed(on ? QStringLiteral("1_SIDE_GLOW.png") : QStringLiteral("blank.png"));
    emit turboChanged();
}

std::array<std::shared_ptr<StatusWidget>, 5> ControlStrip::readers() const {
    return {m_powerLevelView, m_torqueLockView, m_gearView, m_sootView, m_soxView};
}

void ControlStrip::loadControlViewIndicators(const Vehicle& vehicle, iTorvFeeder& feeder) {
    const std::array attributes{vehicle.powerLevelAttribute(), vehicle.torqueLockAttribute(),
                                vehicle.currentGearAttribute(), vehicle.sootAttribute(),
                                vehicle.soxAttribute()};
    const auto widgets = readers();
    for (std::size_t i = 0; i < widgets.size(); ++i)
        widgets[i]->setAttribute(std::make_shared<const TorvAttribute>(attributes[i]));
    registerReaders(feeder);
}

void ControlStrip::registerReaders(iTorvFeeder& feeder) const {
    for (const auto& widget : readers())
        feeder.addReaderForKey(widget, std::to_string(widget->attribute()->aid));
}

void ControlStrip::watchAge(ValueAger& ager) const {
    for (const auto& widget : readers())
        ager.watch(widget);
}

}  // namespace torv

#include "moc_ControlStrip.cpp"
#include "moc_LampView.cpp"
#include "moc_SootView.cpp"
#include "moc_SoxView.cpp"
#include "moc_StatusWidget.cpp"
#include "moc_TorqueLockView.cpp"
#include "moc_View.cpp"
#include "moc_WarningView.cpp"
