#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

#include "dashboards/DigitalDisplayView.h"
#include "dashboards/StatusWidget.h"

namespace torv {

/// The gear as one sign: its number is a character code. Main thread, except for reading.
class GearView final : public torv::StatusWidget {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(torv::DigitalDisplayView* currentGear READ currentGearObject CONSTANT)

public:
    explicit GearView(QRectF frame);

    [[nodiscard]] DigitalDisplayView& currentGear() const { return *m_currentGear; }
    [[nodiscard]] DigitalDisplayView* currentGearObject() const { return m_currentGear.get(); }

protected:
    [[nodiscard]] std::int32_t number(const AVFormatterData& data) const override;
    void show(std::int32_t code) override { m_currentGear->setValue(code); }

private:
    std::unique_ptr<DigitalDisplayView> m_currentGear;
};

}  // namespace torv
