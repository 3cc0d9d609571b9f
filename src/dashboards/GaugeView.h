#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <atomic>
#include <memory>
#include <optional>

#include "dashboards/DigitalDisplayView.h"
#include "dashboards/GaugeDial.h"
#include "dashboards/GaugeScale.h"
#include "dashboards/GaugeStyle.h"
#include "dashboards/NeedleMotion.h"
#include "dashboards/Reader.h"
#include "dashboards/View.h"
#include "screens/Image.h"
#include "session/AgingReadOut.h"
#include "session/iTorvReader.h"

namespace torv {

/// What a sensor becomes on a drop place: a dial with needle, scale, read-out, unit and icon, or a tile.
///
///   State     active  entered by                  values
///   Pattern   false   the factory, a copy         dropped
///   Showing   true    the page, on a drop         shown
///   Released  false   the page, on a release      dropped, though the feeder goes on handing them over
///
/// Main thread, except for `readAid`, on the reading thread, and `frame` and `scale`, which a thread that
/// draws may call while the main thread waits. While the torque lock is on, a gauge of AID 40 reads 0.
class GaugeView final : public torv::View,
                        public iTorvReader,
                        public AgingReadOut,
                        public std::enable_shared_from_this<GaugeView> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(int style READ style NOTIFY faceChanged)
    Q_PROPERTY(bool tile READ isTile NOTIFY faceChanged)
    Q_PROPERTY(QString needle READ needle NOTIFY faceChanged)
    Q_PROPERTY(QRectF needleFrame READ needleFrame NOTIFY faceChanged)
    Q_PROPERTY(torv::DigitalDisplayView* valueView READ valueViewObject NOTIFY faceChanged)
    Q_PROPERTY(QString unit READ unit NOTIFY faceChanged)
    Q_PROPERTY(QRectF unitFrame READ unitFrame NOTIFY faceChanged)
    Q_PROPERTY(QString name READ name NOTIFY faceChanged)
    Q_PROPERTY(QString sensorName READ sensorName NOTIFY faceChanged)
    Q_PROPERTY(QRectF nameFrame READ nameFrame NOTIFY faceChanged)
    Q_PROPERTY(QString icon READ icon NOTIFY iconChanged)
    Q_PROPERTY(QRectF iconFrame READ iconFrame NOTIFY iconChanged)
    Q_PROPERTY(bool inWarning READ inWarning NOTIFY iconChanged)
    Q_PROPERTY(bool old READ isOld NOTIFY oldChanged)

public:
    static constexpr std::chrono::duration<double> animationDuration{1.0};

    explicit GaugeView(QRectF frame);

    void readAid(std::span<std::uint8_t> bytes, AID aid) override;
    [[nodiscard]] std::int32_t priority() const override { return m_priority; }
    void setPriority(std::int32_t priority) override { m_priority = priority; }

    /// Nothing reads as 0.
    void updateValue(std::optional<float> number);
    [[nodiscard]] double value() const { return m_value; }
    /// The value that the needle last aimed at.
    [[nodiscard]] double previousValue() const { return m_previousValue; }
    /// An inactive gauge takes none.
    void setValue(double value);
    [[nodiscard]] bool isActive() const { return m_active; }
    void setActive(bool active);
    [[nodiscard]] bool isLocked() const { return m_locked; }

    [[nodiscard]] const std::shared_ptr<const TorvAttribute>& attribute() const { return m_attribute; }
    /// Before it is registered as a reader: `readAid` takes no lock.
    void setAttribute(std::shared_ptr<const TorvAttribute> attribute);
    [[nodiscard]] const GaugeDial& dial() const { return m_dial; }
    void setMinimumDegree(std::int64_t degree);
    void setMaximumDegree(std::int64_t degree);
    [[nodiscard]] std::int32_t style() const { return m_style; }
    /// Stored only; `reloadView` makes the new face.
    void setStyle(std::int32_t style) { m_style = style; }
    void setFrame(QRectF frame) override;
    void reloadView();
    void updateWarningIcons();
    [[nodiscard]] bool isValueAboveWarningMark(double value) const;

    void setUnitImage(Image image) { m_unitImage = std::move(image); }
    void setLargeIconImages(Image normal, Image warning);
    void setSmallIconImages(Image normal, Image warning);
    /// Inactive, of style 0, priority 0 and unlocked, whatever this one is.
    [[nodiscard]] std::shared_ptr<GaugeView> copy() const;

    [[nodiscard]] DigitalDisplayView& valueView() const { return *m_valueView; }
    [[nodiscard]] DigitalDisplayView* valueViewObject() const { return m_valueView.get(); }
    [[nodiscard]] bool isTile() const { return gaugeStyle(m_style).tile; }
    /// Empty on a tile, which has a needle that nobody sees.
    [[nodiscard]] QString needle() const { return isTile() ? QString{} : m_pointer.source; }
    [[nodiscard]] QRectF needleFrame() const { return m_pointerFrame; }
    [[nodiscard]] QString unit() const { return m_unitImage.source; }
    [[nodiscard]] QRectF unitFrame() const { return m_unitFrame; }
    [[nodiscard]] QString sensorName() const;
    /// The same on a tile; empty on a dial.
    [[nodiscard]] QString name() const;
    [[nodiscard]] QRectF nameFrame() const;
    [[nodiscard]] QString icon() const { return isTile() ? QString{} : m_icon.source; }
    [[nodiscard]] QRectF iconFrame() const { return m_iconFrame; }
    [[nodiscard]] bool inWarning() const { return m_inWarning; }
    [[nodiscard]] GaugeScale scale() const;
    [[nodiscard]] AID shownAID() const override {
        const auto& shown = attribute();
        return shown ? shown->aid : 0;
    }

    /// The needle's rotation now, and whether it stays there.
    Q_INVOKABLE double needleAngle() const;
    Q_INVOKABLE bool needleAtRest() const;

signals:
    void faceChanged();
    void iconChanged();
    void oldChanged();
    /// The needle has a new angle to go to.
    void needleAimed();

private:
    void tellOld() override { emit oldChanged(); }
    void recalculatePreviousValue();

    GaugeDial m_dial;
    double m_value = 0;
    double m_previousValue = 0;
    std::shared_ptr<const TorvAttribute> m_attribute;
    std::unique_ptr<DigitalDisplayView> m_valueView;
    Image m_pointer;
    QRectF m_pointerFrame;
    QRectF m_unitFrame;
    Image m_icon;
    QRectF m_iconFrame;
    bool m_inWarning = false;
    std::int32_t m_style = 0;
    Image m_unitImage;
    Image m_largeIconImage;
    Image m_largeWarningIconImage;
    Image m_smallIconImage;
    Image m_smallWarningIconImage;
    bool m_active = false;
    std::atomic<bool> m_locked{false};
    std::atomic<std::int32_t> m_priority{0};
    NeedleMotion m_needle{animationDuration};
    NotificationCenter::Observation m_lock;
    NotificationCenter::Observation m_unlock;
};

}  // namespace torv
