#pragma once

#include <QtQmlIntegration/qqmlintegration.h>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "dashboards/DraggableIndicatorView.h"
#include "dashboards/GaugeView.h"

namespace torv {

class IndicatorView;

/// Hears with each value that an indicator shows whether that value is in warning, also when nothing has
/// changed. Main thread.
class IndicatorViewDelegate {
public:
    IndicatorViewDelegate() = default;
    IndicatorViewDelegate(const IndicatorViewDelegate&) = delete;
    IndicatorViewDelegate& operator=(const IndicatorViewDelegate&) = delete;
    virtual ~IndicatorViewDelegate() = default;

    virtual void indicatorViewDidReceiveWarning(IndicatorView& indicator) = 0;
    virtual void indicatorViewDidRemoveWarning(IndicatorView& indicator) = 0;
};

/// One sensor in the strip: icon, number and unit. The permanent reader of its sensor, the source of a page's
/// warnings, the feed of the data log, and the pattern that a gauge is dragged from.
///
/// Main thread, except for `readAid`, on the reading thread. Each value decides anew whether it is in
/// warning.
class IndicatorView final : public torv::CarriedView,
                            public iTorvReader,
                            public AgingReadOut,
                            public DraggableViewProtocol,
                            public std::enable_shared_from_this<IndicatorView> {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString icon READ icon NOTIFY iconChanged)
    Q_PROPERTY(QRectF iconFrame READ iconFrame CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(torv::DigitalDisplayView* digitalDisplayView READ digitalDisplayViewObject CONSTANT)
    Q_PROPERTY(QString unit READ unit NOTIFY unitChanged)
    Q_PROPERTY(bool inWarning READ inWarning NOTIFY warningChanged)
    Q_PROPERTY(QRectF unitFrame READ unitFrame NOTIFY unitChanged)
    Q_PROPERTY(QSizeF unitSize READ unitSize NOTIFY unitChanged)
    Q_PROPERTY(bool old READ isOld NOTIFY oldChanged)

public:
    explicit IndicatorView(QRectF frame);

    void readAid(std::span<std::uint8_t> bytes, AID aid) override;
    [[nodiscard]] std::int32_t priority() const override { return m_priority; }
    void setPriority(std::int32_t priority) override { m_priority = priority; }

    /// Shows the number, and hands it to the sink. Nothing reads as 0.
    void updateValue(std::optional<float> number);
    [[nodiscard]] double value() const { return m_value; }
    void setValue(double value);
    /// True means in warning, also for a rule that looks for low values.
    [[nodiscard]] bool isValueAboveWarningMark(double value) const;
    void updateWarningIcons();

    [[nodiscard]] std::shared_ptr<DraggableIndicatorView> draggingView() const override;
    [[nodiscard]] const std::shared_ptr<const TorvAttribute>& attribute() const override {
        return m_attribute;
    }
    /// Before it is registered as a reader: `readAid` takes no lock.
    void setAttribute(std::shared_ptr<const TorvAttribute> attribute) { m_attribute = std::move(attribute); }
    [[nodiscard]] const std::shared_ptr<GaugeView>& detailView() const override { return m_detailView; }
    void setDetailView(std::shared_ptr<GaugeView> gauge) { m_detailView = std::move(gauge); }
    [[nodiscard]] AID tag() const { return m_tag; }
    void setTag(AID tag) { m_tag = tag; }
    /// Not owned. Null takes it away.
    void setDelegate(IndicatorViewDelegate* delegate) { m_delegate = delegate; }
    /// Takes each value that is shown; an indicator without one keeps them to itself.
    using SampleSink = std::function<void(AID aid, float value)>;
    void setSampleSink(SampleSink sink) { m_sampleSink = std::move(sink); }

    void setUnitImage(Image image);
    void setIconImage(Image image);
    void setWarningIconImage(Image image);
    /// Bears the sensor and a gauge of its own; reads nothing and talks to no page.
    [[nodiscard]] std::shared_ptr<IndicatorView> copy() const;

    [[nodiscard]] QString icon() const { return m_icon.source; }
    [[nodiscard]] QString name() const {
        return m_attribute ? QString::fromStdString(m_attribute->name.value_or(std::string{})) : QString{};
    }
    [[nodiscard]] QRectF iconFrame() const { return {2, 2, 30, 30}; }
    [[nodiscard]] DigitalDisplayView& digitalDisplayView() const { return *m_digitalDisplayView; }
    [[nodiscard]] DigitalDisplayView* digitalDisplayViewObject() const { return m_digitalDisplayView.get(); }
    [[nodiscard]] QString unit() const { return m_unitImage.source; }
    /// Of size zero for a unit that is not among those with a width of their own: such a unit does not show.
    [[nodiscard]] QRectF unitFrame() const;
    [[nodiscard]] QSizeF unitSize() const { return m_unitImage.size; }
    [[nodiscard]] bool inWarning() const { return m_inWarning; }
    [[nodiscard]] AID shownAID() const override {
        const auto& shown = attribute();
        return shown ? shown->aid : 0;
    }

signals:
    void warningChanged();
    void iconChanged();
    void unitChanged();
    void oldChanged();

private:
    void tellOld() override { emit oldChanged(); }

    std::unique_ptr<DigitalDisplayView> m_digitalDisplayView;
    std::shared_ptr<const TorvAttribute> m_attribute;
    Image m_icon;
    Image m_unitImage;
    std::shared_ptr<GaugeView> m_detailView;
    Image m_iconImage;
    Image m_warningIconImage;
    double m_value = 0;
    bool m_inWarning = false;  // for the look alone
    IndicatorViewDelegate* m_delegate = nullptr;
    std::atomic<std::int32_t> m_priority{0};
    SampleSink m_sampleSink;
    AID m_tag = 0;
};

}  // namespace torv
