#pragma once

#include <QRectF>
#include <memory>
#include <vector>

#include "attributes/TorvAttributeGroup.h"
#include "screens/TextValueGetterViewController.h"
#include "tuning/screens/EqualizerKnobView.h"

namespace torv {

class EqualizerViewController;

/// Takes the values of an equalizer. Main thread.
class EqualizerViewControllerDelegate {
public:
    EqualizerViewControllerDelegate() = default;
    EqualizerViewControllerDelegate(const EqualizerViewControllerDelegate&) = delete;
    EqualizerViewControllerDelegate& operator=(const EqualizerViewControllerDelegate&) = delete;
    virtual ~EqualizerViewControllerDelegate() = default;

    /// Takes the values. It is the delegate that closes the screen.
    virtual void didRequestSaveValuesForEqualizer(EqualizerViewController& equalizer) = 0;
};

/// A group of tuning items as bands side by side, with one scale for all. Works on the records that it was
/// given and hands all of them back on Save; leaving it otherwise drops what was changed. Main thread. The
/// delegate is not owned; a screen that pushes this one outlives it. Lengths are points.
class EqualizerViewController final : public torv::ViewController,
                                      public TextValueGetterViewControllerDelegate {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the logic")
    Q_PROPERTY(QVariantList knobs READ knobObjects CONSTANT)
    Q_PROPERTY(QList<torv::EqualizerTick> ticks READ ticks NOTIFY laidOut)
    Q_PROPERTY(QRectF scaleFrame READ scaleFrame NOTIFY laidOut)
    Q_PROPERTY(QString maximum READ maximum CONSTANT)
    Q_PROPERTY(QString unit READ unit CONSTANT)

public:
    /// One record for each item; what is missing is empty.
    EqualizerViewController(TorvAttributeGroup group, std::vector<AVFormatterData> values);
    [[nodiscard]] static std::shared_ptr<EqualizerViewController> initForSettingGroupWithValues(
        const TorvAttributeGroup& group, const std::vector<AVFormatterData>& values) {
        return std::make_shared<EqualizerViewController>(group, values);
    }

    [[nodiscard]] QString look() const override { return QStringLiteral("tuning/EqualizerScreen.qml"); }
    [[nodiscard]] const std::vector<AVFormatterData>& values() const { return m_values; }
    [[nodiscard]] std::int32_t tag() const { return m_tag; }
    void setTag(std::int32_t tag) { m_tag = tag; }
    void setDelegate(EqualizerViewControllerDelegate* delegate) { m_delegate = delegate; }
    [[nodiscard]] const std::vector<std::unique_ptr<EqualizerKnobView>>& knobs() const { return m_knobs; }
    [[nodiscard]] QVariantList knobObjects() const;
    [[nodiscard]] QRectF scaleFrame() const;
    [[nodiscard]] QList<EqualizerTick> ticks() const;
    [[nodiscard]] QString maximum() const;
    [[nodiscard]] QString unit() const;

    void viewDidLoad() override;
    bool textValueGetterViewControllerShouldValidateValues(TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestTitleForValidationError(
        TextValueGetterViewController& screen) override;
    QString textValueGetterViewControllerDidRequestMessageForValidationError(
        TextValueGetterViewController& screen) override;
    void textValueGetterViewControllerDidGetValue(TextValueGetterViewController& screen) override;

    void didRequestSave();
    void didRequestTuneForKnob(std::size_t band);
    /// The room below the navigation bar.
    Q_INVOKABLE void setHeight(double height);

signals:
    void laidOut();

private:
    [[nodiscard]] const TorvAttribute& item(std::int32_t band) const {
        return m_group.items[static_cast<std::size_t>(band)];
    }

    const TorvAttributeGroup m_group;
    std::vector<AVFormatterData> m_values;
    std::vector<std::unique_ptr<EqualizerKnobView>> m_knobs;
    std::int32_t m_tag = 0;
    EqualizerViewControllerDelegate* m_delegate = nullptr;
    double m_height = 0;
};

}  // namespace torv
