#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <array>
#include <memory>

#include "dashboards/GearView.h"
#include "dashboards/PowerLevelView.h"
#include "dashboards/SootView.h"
#include "dashboards/SoxView.h"
#include "dashboards/TorqueLockView.h"
#include "dashboards/View.h"
#include "dashboards/WarningView.h"
#include "session/ValueAger.h"
#include "vehicles/Vehicle.h"

namespace torv {

/// The row of lamps and small read-outs at the bottom of a page. Takes no touches. Main thread; points.
class ControlStrip final : public torv::View {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(torv::PowerLevelView* powerLevelView READ powerLevelObject CONSTANT)
    Q_PROPERTY(torv::WarningView* warningView READ warningObject CONSTANT)
    Q_PROPERTY(torv::LampView* torqueLockView READ torqueLockObject CONSTANT)
    Q_PROPERTY(torv::GearView* gearView READ gearObject CONSTANT)
    Q_PROPERTY(torv::LampView* sootView READ sootObject CONSTANT)
    Q_PROPERTY(torv::LampView* soxView READ soxObject CONSTANT)
    Q_PROPERTY(QString turbo READ turbo NOTIFY turboChanged)
    Q_PROPERTY(QRectF turboFrame READ turboFrame CONSTANT)

public:
    ControlStrip(QRectF frame, double powerLevelLeft, const std::shared_ptr<iTorvFeeder>& feeder);

    /// Gives each widget its attribute of this vehicle, and has it read.
    void loadControlViewIndicators(const Vehicle& vehicle, iTorvFeeder& feeder);
    void registerReaders(iTorvFeeder& feeder) const;
    void TurboOn() { setTurbo(true); }
    void TurboOff() { setTurbo(false); }
    void watchAge(ValueAger& ager) const;

    [[nodiscard]] PowerLevelView& powerLevelView() const { return *m_powerLevelView; }
    [[nodiscard]] WarningView& warningView() const { return *m_warningView; }
    [[nodiscard]] TorqueLockView& torqueLockView() const { return *m_torqueLockView; }
    [[nodiscard]] GearView& gearView() const { return *m_gearView; }
    [[nodiscard]] SootView& sootView() const { return *m_sootView; }
    [[nodiscard]] SoxView& soxView() const { return *m_soxView; }
    [[nodiscard]] PowerLevelView* powerLevelObject() const { return m_powerLevelView.get(); }
    [[nodiscard]] WarningView* warningObject() const { return m_warningView.get(); }
    [[nodiscard]] LampView* torqueLockObject() const { return m_torqueLockView.get(); }
    [[nodiscard]] GearView* gearObject() const { return m_gearView.get(); }
    [[nodiscard]] LampView* sootObject() const { return m_sootView.get(); }
    [[nodiscard]] LampView* soxObject() const { return m_soxView.get(); }
    [[nodiscard]] QString turbo() const { return m_turboind.source; }
    [[nodiscard]] QRectF turboFrame() const { return {QPointF{80, 0}, m_turboind.size}; }

signals:
    void turboChanged();

private:
    void setTurbo(bool on);
    [[nodiscard]] std::array<std::shared_ptr<StatusWidget>, 5> readers() const;

    Image m_turboind;
    std::shared_ptr<PowerLevelView> m_powerLevelView;
    std::unique_ptr<WarningView> m_warningView;
    std::shared_ptr<TorqueLockView> m_torqueLockView;
    std::shared_ptr<SootView> m_sootView;
    std::shared_ptr<SoxView> m_soxView;
    std::shared_ptr<GearView> m_gearView;
    NotificationCenter::Observation m_turboOn;
    NotificationCenter::Observation m_turboOff;
};

}  // namespace torv
