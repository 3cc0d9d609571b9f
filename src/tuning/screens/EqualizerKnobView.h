#pragma once

#include <QtQmlIntegration/qqmlintegration.h>
#include <QList>
#include <QObject>
#include <QRectF>
#include <QString>

#include "attributes/TorvAttributeGroup.h"
#include "tuning/EqualizerScale.h"
#include "tuning/EqualizerSliderControl.h"

namespace torv {

/// A tick of an equalizer's scale, in points.
struct EqualizerTick {
    Q_GADGET
    QML_VALUE_TYPE(equalizerTick)
    Q_PROPERTY(QRectF frame MEMBER frame)
    Q_PROPERTY(bool highlighted MEMBER highlighted)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QRectF labelFrame MEMBER labelFrame)

public:
    QRectF frame;
    bool highlighted = false;
    QString label;
    QRectF labelFrame;
};

[[nodiscard]] QList<EqualizerTick> equalizerTicks(const EqualizerScale& scale, QSizeF size, bool isLabeled);

/// One band of an equalizer: a slider, and the record whose text it changes. Main thread. Lengths are points
/// from the band's top left corner; attribute and record are not owned.
class EqualizerKnobView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString value READ value NOTIFY changed)
    Q_PROPERTY(QRectF sliderFrame READ sliderFrame NOTIFY laidOut)
    Q_PROPERTY(QRectF scaleFrame READ scaleFrame NOTIFY laidOut)
    Q_PROPERTY(QList<torv::EqualizerTick> ticks READ ticks NOTIFY laidOut)
    Q_PROPERTY(double handleCenter READ handleCenter NOTIFY changed)
    Q_PROPERTY(QRectF upperRed READ upperRed NOTIFY laidOut)
    Q_PROPERTY(QRectF lowerRed READ lowerRed NOTIFY laidOut)
    Q_PROPERTY(QRectF green READ green NOTIFY laidOut)
    Q_PROPERTY(bool outOfRange READ outOfRange NOTIFY changed)
    Q_PROPERTY(bool sliderHandleSelected READ sliderHandleSelected NOTIFY changed)

public:
    static constexpr double width = 40;
    static constexpr double handleWidth = 20;
    static constexpr double handleHeight = 22;

    EqualizerKnobView();

    void configureForSettingInGroupWithValue(const TorvAttribute& attribute, const TorvAttributeGroup& group,
                                             AVFormatterData& record);
    void setHeight(double height);

    [[nodiscard]] QString name() const;
    [[nodiscard]] QString value() const;
    [[nodiscard]] QRectF sliderFrame() const;
    [[nodiscard]] QRectF scaleFrame() const;
    /// None on the first band, which has the screen's labelled scale beside it.
    [[nodiscard]] QList<EqualizerTick> ticks() const;
    [[nodiscard]] double handleCenter() const { return m_slider.handleCenter(); }
    [[nodiscard]] QRectF upperRed() const { return railPart(m_slider.sliderMaxOutOfRangeLine()); }
    [[nodiscard]] QRectF lowerRed() const { return railPart(m_slider.sliderMinOutOfRangeLine()); }
    [[nodiscard]] QRectF green() const { return railPart(m_slider.sliderRangeLine()); }
    [[nodiscard]] bool outOfRange() const;
    [[nodiscard]] bool sliderHandleSelected() const { return m_sliderHandleSelected; }
    [[nodiscard]] const EqualizerSliderControl& slider() const { return m_slider; }

    // A finger on the slider, in its own points. Only a touch near the handle takes it; the handle then jumps
    // to the finger, and follows it anywhere.
    Q_INVOKABLE bool beginTracking(double x, double y);
    Q_INVOKABLE void continueTracking(double y);
    Q_INVOKABLE void endTracking();
    /// The arrow keys: by one unit of the last digit that is shown.
    Q_INVOKABLE void step(int steps);
    Q_INVOKABLE void touchValue();

signals:
    void changed();
    void laidOut();
    void tuneRequested();

private:
    void didChangeSelectedValue(double value);
    [[nodiscard]] QRectF railPart(const EqualizerSliderControl::Layer& layer) const;

    const TorvAttribute* m_attribute = nullptr;
    AVFormatterData* m_formatterData = nullptr;
    EqualizerSliderControl m_slider;
    EqualizerScale m_scale{0, 100, 0};
    bool m_scaleHidden = false;
    bool m_sliderHandleSelected = false;
    double m_height = 0;
};

}  // namespace torv
