#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

#include "dashboards/DigitalDisplayView.h"
#include "dashboards/StatusWidget.h"
#include "screens/Image.h"
#include "session/iTorvFeeder.h"

namespace torv {

/// The power level as a bar and a number. Main thread, except for reading.
///
/// 228 is a level of its own, shown green as 0; from 128 on a level is a warning, shown without the 128. The
/// bar's full scale is the highest level of the active tuning, one number for all pages, 127 until it is
/// known; a new one counts from the next value on.
class PowerLevelView final : public torv::StatusWidget {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(torv::DigitalDisplayView* powerLevelNumber READ powerLevelNumberObject CONSTANT)
    Q_PROPERTY(QString bar READ bar NOTIFY barChanged)
    Q_PROPERTY(double shownBarWidth READ shownBarWidth NOTIFY barChanged)
    Q_PROPERTY(QSizeF barSize READ barSize CONSTANT)
    Q_PROPERTY(bool inWarning READ inWarning NOTIFY barChanged)
    Q_PROPERTY(QString overlay READ overlay CONSTANT)

public:
    PowerLevelView(QRectF frame, std::shared_ptr<iTorvFeeder> feeder);

    /// Asks the module for it: blocking, up to 21 attempts. The store counts whether or not it answered.
    void updateMaxLevels();
    [[nodiscard]] static float maximumLevel();
    static void setMaximumLevel(float level);

    [[nodiscard]] DigitalDisplayView& powerLevelNumber() const { return *m_powerLevelNumber; }
    [[nodiscard]] DigitalDisplayView* powerLevelNumberObject() const { return m_powerLevelNumber.get(); }
    [[nodiscard]] QString bar() const { return m_powerLevelIcon.source; }
    [[nodiscard]] bool inWarning() const { return m_powerLevelIcon.source == m_warning.source; }
    [[nodiscard]] QString overlay() const { return m_overlay.source; }
    [[nodiscard]] QSizeF barSize() const { return m_overlay.size; }
    /// Not guarded: a maximum of 0 makes it infinite or no number, and a negative one negative.
    [[nodiscard]] double barWidth() const { return m_barWidth; }
    /// What of it fits into the meter.
    [[nodiscard]] double shownBarWidth() const;

signals:
    void barChanged();

protected:
    [[nodiscard]] std::int32_t number(const AVFormatterData& data) const override;
    void show(std::int32_t level) override;

private:
    std::shared_ptr<iTorvFeeder> m_feeder;
    const Image m_normal;
    const Image m_green;
    const Image m_warning;
    const Image m_overlay;
    std::unique_ptr<DigitalDisplayView> m_powerLevelNumber;
    Image m_powerLevelIcon;
    double m_barWidth = 0;
    NotificationCenter::Observation m_tuningUpdated;
};

}  // namespace torv
